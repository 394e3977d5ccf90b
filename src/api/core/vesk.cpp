// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/vesk.h"

#include "api/core/log.h"
#include "api/core/version.h"

#include <QThread>

#include <log4cplus/appender.h>

#include <pthread.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>

VESK_LOGGER("Vesk")

static_assert(VESK_API_MAJOR == VESK_PROJECT_MAJOR && VESK_API_MINOR == VESK_PROJECT_MINOR,
    "the header's version is the project's");

namespace {

bool hasAppender(log4cplus::Logger logger)
{
    return !logger.getAllAppenders().empty()
        || !log4cplus::Logger::getRoot().getAllAppenders().empty();
}

/// Blocks every thread but the first whose assertion fails, so that none aborts while the first is
/// writing its record. Returns false for a nested failure, when writing the record itself failed an
/// assertion.
bool enterFailure()
{
    static thread_local bool failing = false;
    // Deliberately never unlocked, as the process aborts; a VeskMutex cannot be left locked. Never
    // destroyed either, as other threads may be blocked on it.
    static std::mutex *const first = new std::mutex;
    if (failing)
        return false;
    failing = true;
    first->lock();
    return true;
}

bool isQueued(const QObject *sender, const QObject *receiver, Qt::ConnectionType type)
{
    const int kind = type & ~Qt::UniqueConnection;
    return kind == Qt::QueuedConnection
        || (kind == Qt::AutoConnection && sender->thread() != receiver->thread());
}

/// Why Qt cannot queue a parameter of \a signal that is no pointer; null when it can.
const char *obstacle(const QMetaMethod &signal, int parameter)
{
    if (signal.parameterType(parameter) == QMetaType::UnknownType)
        return "is no registered meta-type";
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    // Qt 5 registers only what can be copied, Qt 6 every complete type by itself.
    if (!signal.parameterMetaType(parameter).isCopyConstructible())
        return "cannot be copied";
#endif
    return nullptr;
}

} // namespace

void veskAssertionFailed(const char *condition, const char *file, int line)
{
    if (enterFailure()) {
        const std::string text = std::string("Assertion failed: ") + condition + ", file " + file
            + ", line " + std::to_string(line);
        if (hasAppender(veskLogger()))
            veskWriteLog(veskLogger(), log4cplus::FATAL_LOG_LEVEL, text, file, line, "");
        else
            fprintf(stderr, "%s\n", text.c_str());
        log4cplus::Logger::shutdown();
    }
    std::abort();
}

void veskSetThreadName(const QString &name)
{
    constexpr int MaxBytes = 15;
    QByteArray bytes = name.toUtf8();
    if (bytes.size() > MaxBytes) {
        int size = MaxBytes;
        // Do not cut inside a UTF-8 sequence.
        while (size > 0 && (static_cast<unsigned char>(bytes.at(size)) & 0xC0) == 0x80)
            --size;
        bytes.truncate(size);
    }
    pthread_setname_np(pthread_self(), bytes.constData());
}

bool verifyConnectionSignalParameters(const QObject *sender, const QMetaMethod &signal,
    const QObject *receiver, Qt::ConnectionType type)
{
    if (!isQueued(sender, receiver, type))
        return true;
    bool ok = true;
    const QList<QByteArray> names = signal.parameterTypes();
    for (int i = 0; i < names.size(); ++i) {
        const char *const reason = names.at(i).endsWith('*') ? nullptr : obstacle(signal, i);
        if (!reason)
            continue;
        VESK_ERROR("Cannot queue signal " << sender->metaObject()->className()
                                          << "::" << signal.methodSignature() << ": parameter type "
                                          << names.at(i) << ' ' << reason);
        ok = false;
    }
    return ok;
}
