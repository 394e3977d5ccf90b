// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

/// Where the session bus is, as a D-Bus address: DBUS_SESSION_BUS_ADDRESS, or the socket `bus` in
/// XDG_RUNTIME_DIR, whether it is there yet or not. Empty: there is none. Never one that would have
/// to be started.
QByteArray sessionBusAddress();

/// The file of an address's socket; empty if it is no file.
QString busSocketOf(const QByteArray &address);
