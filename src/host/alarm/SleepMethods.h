// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/rpc/JsonRpcDispatcher.h"

#include <QObject>

class AlarmClock;
class SleepTimer;

/// The methods of the sleep timer: sleep.start, .stop and .state; and the notification
/// sleep.changed. docs/rpc.md describes them for clients. Main thread; what it is made with
/// outlives it.
class SleepMethods : public QObject {
    Q_OBJECT

public:
    /// Initial value of what sleep.start leaves out.
    static constexpr int DefaultFade = 30;

    SleepMethods(JsonRpcDispatcher *dispatcher, SleepTimer *timer, AlarmClock *clock,
        QObject *parent = nullptr);

Q_SIGNALS:
    /// sleep.changed, for every client with a WebSocket. Changes that come together are one.
    void notification(const QString &method, const QVariant &params);

private:
    void start(const JsonRpcCallPtr &call);
    QVariantHash state() const;
    void announce();

    SleepTimer *const m_timer;
    AlarmClock *const m_clock;
    bool m_isAnnounced = false;
};
