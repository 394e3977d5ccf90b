// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QTemporaryDir>

/// A message bus of the test's own, which is the system bus for this process while it lives, or the
/// one that another variable leads to.
class PrivateBus {
public:
    explicit PrivateBus(const char *variable = "DBUS_SYSTEM_BUS_ADDRESS");
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    bool isRunning() const { return !m_address.isEmpty(); }
    QByteArray address() const { return m_address; }
    void signal(int number);
    /// Ends the bus.
    void end();
    /// Begins it again at the same place.
    void start();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_address;
    const char *const m_variable;
};
