// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"
#include "base/Result.h"
#include "host/http/HttpServer.h"
#include "host/player/AudioOutputSpec.h"
#include "host/settings/HostValues.h"
#include "plugin/supervision/PluginDescriptor.h"

#include <QPair>
#include <QString>
#include <QStringList>
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

/// What a start of the host was asked for, by command line and configuration file. docs/host.md
/// describes both.
struct HostOptions {
    /// Those that were asked for, or else all that are installed.
    QVector<PluginOptions> plugins;
    /// What there is to be said in the log of how they were found.
    QStringList pluginNotes;
    /// The host's values, with the settings of these plug-ins.
    HostValues values;
    ListenAddress listen;
    /// Values that are set at start and stay as they are; the last one of a path counts.
    QVector<QPair<CMPath, VeskValue>> pinned;
    QStringList connectTo;
    QString caFile;
    AudioOutputSpec audio;
    /// Plug-ins run in this process, not each in one of its own.
    bool inProcess = false;
    /// The longest wait before a plug-in's process that ended is started again.
    std::chrono::milliseconds restartWait = std::chrono::seconds(30);
    /// How long the main loop may stand still before the process is ended; 0: forever.
    std::chrono::milliseconds watchdog = std::chrono::seconds(10);
    /// Empty: the default one.
    QString stateFolder;
    QString logLevel = QStringLiteral("info");
    /// Empty: standard error.
    QString logFile;
    /// Bytes that the log's file may hold before another one is begun; 0: no limit.
    qint64 logSize = 10 * 1024 * 1024;
};

/// One option, as the command line and the configuration file have it.
struct HostOption {
    enum Kind {
        Single,
        Flag, ///< true or false in the file
        Repeated, ///< a list in the file
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
    Set set;
};

/// Reads what the plug-ins of \a options say of themselves. Without plug-ins, takes those that are
/// installed.
void readPlugins(HostOptions &options);

/// All options but --config.
const QVector<HostOption> &hostOptions();
