// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QMetaMethod>
#include <QObject>
#include <QString>

/// \file
/// Basics for all parts of the system: assertions that stay enabled in release builds, a checked
/// QObject::connect() and thread names.

/// Aborts the process when \a condition is false, after logging the literal condition, file and
/// line at FATAL and flushing the log. For violated preconditions, never for invalid input.
#define VESK_ASSERT(condition)                                                                     \
    ((condition) ? static_cast<void>(0) : veskAssertionFailed(#condition, __FILE__, __LINE__))

/// The same, but logs \a text instead of the condition.
#define VESK_ASSERT_TEXT(condition, text)                                                          \
    ((condition) ? static_cast<void>(0) : veskAssertionFailed(text, __FILE__, __LINE__))

/// Logs the failed \a condition at FATAL and aborts. Any thread.
[[noreturn]] VESK_API void veskAssertionFailed(const char *condition, const char *file, int line);

/// Sets the name of the calling operating-system thread, cut to the 15 bytes that Linux stores.
VESK_API void veskSetThreadName(const QString &name);

/// Whether a connection's arguments can be queued: if its calls are queued (a queued connection, or
/// an automatic one between objects on different threads), every parameter of \a signal except
/// pointers must be a registered meta-type. Each one that is not is logged.
VESK_API bool verifyConnectionSignalParameters(const QObject *sender, const QMetaMethod &signal,
    const QObject *receiver, Qt::ConnectionType type);

/// QObject::connect() that aborts the process when the connection fails or its arguments cannot be
/// queued. \a slot is a member function of \a receiver.
template <class Sender, class Signal, class Receiver, class Slot>
QMetaObject::Connection veskConnect(const Sender *sender, Signal senderSignal,
    const Receiver *receiver, Slot slot, Qt::ConnectionType type = Qt::AutoConnection)
{
    const QMetaMethod signal = QMetaMethod::fromSignal(senderSignal);
    VESK_ASSERT(verifyConnectionSignalParameters(sender, signal, receiver, type));
    QMetaObject::Connection connection
        = QObject::connect(sender, senderSignal, receiver, slot, type);
    VESK_ASSERT(connection);
    return connection;
}
