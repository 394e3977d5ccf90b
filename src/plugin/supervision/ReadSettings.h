// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <chrono>

/// The settings that a plug-in has read for keeps, and whether it has to be started anew for their
/// sake: when one of them is another one now, has been so for a while, and does not go on changing.
/// What a plug-in says counts only for settings that changed since it was started, so that it can
/// have itself started anew no more often than that. Main thread, with an event loop.
class ReadSettings : public QObject {
    Q_OBJECT

public:
    /// More than there are settings.
    static constexpr int MaxKept = 1000;

    struct Times {
        /// So long after the last change it is settled,
        std::chrono::milliseconds settle {300};
        /// but no longer after the first one.
        std::chrono::milliseconds longest {2000};
    };

    explicit ReadSettings(QObject *parent = nullptr);

    void setTimes(const Times &times) { m_times = times; }
    const Times &times() const { return m_times; }

    /// A plug-in is started, which has read nothing yet.
    void begin();
    /// The plug-in keeps the setting with this value.
    void noteKept(const CMPath &setting, const VeskValue &value);
    /// The plug-in follows the setting by itself.
    void noteFollowed(const CMPath &setting);
    /// The setting has this value now.
    void noteChanged(const CMPath &setting, const VeskValue &value);

    /// It cannot be started anew just now: settled() is to come once more.
    void settleAgain();

    /// Whether the plug-in works with a value that is no more.
    bool isOutdated() const { return m_isOutdated; }

Q_SIGNALS:
    /// Some value is another one than the plug-in knows; then, unless all are as it knows them
    /// again, it is settled.
    void outdated();
    void upToDate();
    void settled();

private:
    void judge(bool isNews);

    Times m_times;
    QHash<CMPath, VeskValue> m_kept;
    QHash<CMPath, VeskValue> m_changed; ///< since begin()
    bool m_isOutdated = false;
    QElapsedTimer m_since; ///< the first change
    QTimer m_settle;
};
