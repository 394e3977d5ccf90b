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

/// The settings that a plug-in has read and keeps, and whether it has to be restarted: when one of
/// them has another value now and has not changed for a while. A plug-in's reports count only for
/// settings that have changed since it was started, so it cannot have itself restarted more often
/// than settings change. Main thread, with an event loop.
class ReadSettings : public QObject {
    Q_OBJECT

public:
    /// More than there are settings.
    static constexpr int MaxKept = 1000;

    struct Times {
        /// Settled so long after the last change,
        std::chrono::milliseconds settle {300};
        /// but no later than this after the first one.
        std::chrono::milliseconds longest {2000};
    };

    explicit ReadSettings(QObject *parent = nullptr);

    void setTimes(const Times &times) { m_times = times; }
    const Times &times() const { return m_times; }

    /// Whatever the plug-in reads, it has to be restarted when \a setting, which has \a value now,
    /// changes.
    void restartFor(const CMPath &setting, const VeskValue &value);
    /// A plug-in starts, which has read nothing yet.
    void begin();
    /// The plug-in keeps the setting with this value.
    void noteKept(const CMPath &setting, const VeskValue &value);
    /// The plug-in is subscribed to the setting and follows it by itself.
    void noteFollowed(const CMPath &setting);
    /// The setting has this value now.
    void noteChanged(const CMPath &setting, const VeskValue &value);

    /// It cannot be restarted just now: emits settled() once more.
    void settleAgain();

    /// Whether the plug-in keeps a value that the setting has not any more.
    bool isOutdated() const { return m_isOutdated; }

Q_SIGNALS:
    /// Some setting differs from the value that the plug-in keeps. Followed by upToDate() when none
    /// does any more, or by settled() when it is time to restart the plug-in.
    void outdated();
    void upToDate();
    void settled();

private:
    void update(bool hasChanged);

    Times m_times;
    QHash<CMPath, VeskValue> m_restarting; ///< the present values of those of restartFor()
    QHash<CMPath, VeskValue> m_kept;
    QHash<CMPath, VeskValue> m_changed; ///< since begin()
    bool m_isOutdated = false;
    QElapsedTimer m_since; ///< the first change
    QTimer m_settle;
};
