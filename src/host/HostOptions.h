// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"
#include "base/Result.h"
#include "host/http/HttpServer.h"
#include "host/settings/HostValues.h"
#include "host/sound/AudioOutputSpec.h"
#include "plugin/supervision/PluginDescriptor.h"

#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <chrono>

/// One plug-in to load.
struct PluginOptions {
    QString file;
    /// Under which the host knows the plug-in's service; empty: after the file's name.
    QString serviceId;
    /// From the file beside it.
    PluginDescriptor descriptor;
    /// Why nothing of it is executed; empty when it may be.
    QString problem;

    /// serviceId, or NAME of "libvesk_cb_NAME.so", or a file's name without its ending.
    QString effectiveServiceId() const;
};

/// What was said of an option or a value, and where.
struct HostGiven {
    /// As they were written, in their order: several for an option that can be repeated.
    QVariantList values;
    /// The file of the last of them, and the line, counted from 1; empty for the command line, 0
    /// where it is not known.
    QString file;
    int line = 0;
};

/// What a start of the host was asked for, by command line and configuration file. docs/host.md
/// describes both.
struct HostOptions {
    /// Those that were asked for, or else all that are installed.
    QVector<PluginOptions> plugins;
    /// What there is to be said in the log of how they were found.
    QStringList pluginNotes;
    /// The host's values, with the settings of these plug-ins.
    HostValues values;
    /// Where to serve clients, as it was asked for; see listenAddresses().
    QVector<ListenAddress> listen;
    /// By which names other machines may know this one.
    HttpNames names;
    /// Other machines may come without TLS.
    bool plainHttp = false;
    /// PEM files; empty: the host makes a certificate for itself when it needs one.
    QString certificateFile;
    QString keyFile;
    /// How many clients may be connected.
    int connections = 64;
    /// Values that are set at start and stay as they are; the last one of a path counts.
    QVector<QPair<CMPath, VeskValue>> pinned;
    QStringList connectTo;
    QString caFile;
    AudioOutputSpec audio;
    /// Whether it was asked for; the setting counts otherwise.
    bool isAudioGiven = false;
    /// Plug-ins run in this process, not each in one of its own.
    bool inProcess = false;
    /// The longest wait before a plug-in's process that ended is started again.
    std::chrono::milliseconds restartWait = std::chrono::seconds(30);
    /// How long the main loop may stand still before the process is ended; 0: forever.
    std::chrono::milliseconds watchdog = std::chrono::seconds(10);
    /// Empty: the default one, see stateFolderInUse().
    QString stateFolder;
    QString logLevel = QStringLiteral("info");
    /// Empty: standard error.
    QString logFile;
    /// Bytes that the log's file may hold before another one is begun; 0: no limit.
    qint64 logSize = 10 * 1024 * 1024;

    /// The configuration file that was read; empty without one.
    QString configFile;
    /// By the keys of options and the paths of values: what was said of them.
    QMap<QString, HostGiven> given;

    /// Where to serve clients. Always on the loopback interface too, from where devices are paired.
    QVector<ListenAddress> listenAddresses() const;
    bool isBeyondLoopback() const;
    /// Empty when there is no place for one.
    QString stateFolderInUse() const;
};

/// One option, as the command line and the configuration file have it.
struct HostOption {
    enum Kind {
        Single,
        Flag, ///< true or false in the file
        Repeated, ///< a list in the file
        OneOrMore, ///< a value or a list in the file
        /// Repeated: PATH=VALUE; an object in the file. Set after all others, when the plug-ins and
        /// thus the values are known.
        Assignment,
    };
    /// Puts one value into \a options, or says what is wrong with it. An assignment of the file is
    /// a hash with one entry. Relative file names are taken as relative to \a folder; with an empty
    /// one they stay as they are.
    using Set = Result<void, QString> (*)(
        HostOptions &options, const QVariant &value, const QString &folder);

    Kind kind;
    const char *name; ///< "--ca-file"
    const char *key; ///< "caFile", of the configuration file
    const char *valueName; ///< for the help; null for a flag
    const char *description; ///< the same
    /// What holds without it, as the file has it; null when that is no value of its own.
    const char *fallback;
    Set set;
    /// Forgets those of the file when the command line has others; null: they add up.
    void (*clear)(HostOptions &options) = nullptr;
    /// Whether it can change while the host runs.
    bool isLive = false;
};

/// Whether the value at \a path is to be shown and logged as "***": a password, a token, an id by
/// which a service knows its partner.
bool isSecretValue(const CMPath &path);

/// Reads what the plug-ins of \a options say of themselves. Without plug-ins, takes those that are
/// installed.
void readPlugins(HostOptions &options);

/// All options but --config.
const QVector<HostOption> &hostOptions();
