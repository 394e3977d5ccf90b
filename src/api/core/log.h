// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <log4cplus/logger.h>

#include <ostream>
#include <sstream>

/// \file
/// Logging through log4cplus. A record carries the source path after "src/" without extension, the
/// line and the function. A statement whose level is disabled costs one test: its text is not
/// built. Loggers are thread-safe; each source file defines one:
///
///     VESK_LOGGER("CB_TuneIn")
///     ...
///     VESK_DEBUG("parsing data: size: " << data.size());

/// Defines this source file's logger; files that use the same name share it.
#define VESK_LOGGER(name)                                                                          \
    namespace {                                                                                    \
    const log4cplus::Logger &veskLogger()                                                          \
    {                                                                                              \
        static const log4cplus::Logger logger                                                      \
            = log4cplus::Logger::getInstance(LOG4CPLUS_TEXT(name));                                \
        return logger;                                                                             \
    }                                                                                              \
    }

#define VESK_LOG(level, text)                                                                      \
    do {                                                                                           \
        if (veskLogger().isEnabledFor(level)) {                                                    \
            std::ostringstream veskLogText;                                                        \
            veskLogText << text; /* NOLINT(bugprone-macro-parentheses): a chain of "<<" */         \
            veskWriteLog(                                                                          \
                veskLogger(), level, veskLogText.str(), __FILE__, __LINE__, __PRETTY_FUNCTION__);  \
        }                                                                                          \
    } while (false)

#define VESK_TRACE(text) VESK_LOG(log4cplus::TRACE_LOG_LEVEL, text)
#define VESK_DEBUG(text) VESK_LOG(log4cplus::DEBUG_LOG_LEVEL, text)
#define VESK_INFO(text) VESK_LOG(log4cplus::INFO_LOG_LEVEL, text)
#define VESK_WARN(text) VESK_LOG(log4cplus::WARN_LOG_LEVEL, text)
#define VESK_ERROR(text) VESK_LOG(log4cplus::ERROR_LOG_LEVEL, text)
#define VESK_FATAL(text) VESK_LOG(log4cplus::FATAL_LOG_LEVEL, text)

/// Writes one record to \a logger without checking again that \a level is enabled. \a file is
/// __FILE__.
VESK_API void veskWriteLog(const log4cplus::Logger &logger, log4cplus::LogLevel level,
    const std::string &text, const char *file, int line, const char *function);

/// While an object of this class exists, errors that its thread logs are expected and logged at
/// DEBUG. Scopes may be nested.
class VESK_API VeskExpectedErrors {
public:
    VeskExpectedErrors();
    ~VeskExpectedErrors();
    Q_DISABLE_COPY(VeskExpectedErrors)
};

/// "src/modules/tunein/cb_tunein.cpp" becomes "modules/tunein/cb_tunein".
VESK_API std::string veskLogSourceName(const char *file);

/// The text that denotes a function in the log: its \a signature, unchanged. \a loggerName is the
/// name of the logger that the text is for.
VESK_API QString dbglog_scopedFunction(const char *signature, const char *loggerName);

/// Text is written as UTF-8 with control characters escaped ("\n", "\x1b"), so that it cannot forge
/// a log record. Containers print their contents, hashes in key order and with passwords and
/// session ids as "***".
VESK_API std::ostream &operator<<(std::ostream &out, const QString &text);
VESK_API std::ostream &operator<<(std::ostream &out, const QByteArray &bytes);
VESK_API std::ostream &operator<<(std::ostream &out, const QVariant &value);
VESK_API std::ostream &operator<<(std::ostream &out, const QVariantHash &hash);
/// "QMap(" then "(key, value)" for each entry in key order, then ")".
VESK_API std::ostream &operator<<(std::ostream &out, const QMap<QString, QString> &map);

/// The printed form of a QVariant that holds another type: register a converter
/// (QMetaType::registerConverter) from that type to this one.
struct VeskLogText {
    std::string text;
};
Q_DECLARE_METATYPE(VeskLogText)

/// Whether a hash entry or query item of this name is a secret that must not be logged; the case of
/// \a key does not matter.
VESK_API bool veskIsSecretKey(const QString &key);
