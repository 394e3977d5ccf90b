// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

/// Tells systemd, if it has started the host as a service of the type "notify", how the host is
/// (sd_notify(3)): that it is ready, what it does, that it ends; and, if the unit has a watchdog,
/// from the main loop that it is alive. Does nothing otherwise. Main thread.
class ServiceManager : public QObject {
    Q_OBJECT

public:
    explicit ServiceManager(QObject *parent = nullptr);

    /// Everything is up.
    void ready();
    /// What `systemctl status` shows: one line, in English.
    void setStatus(const QString &status);
    void stopping();

private:
    QTimer m_watchdog;
    QString m_status;
};
