// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QMetaMethod>
#include <QObject>
#include <QString>

/// \file
/// What every part of the system leans on: assertions that stay on in release builds, a checked
/// QObject::connect and names for threads.

/// Stops the process when \a condition does not hold: logs FATAL with the literal condition, file
/// and line, flushes the log and aborts. For broken preconditions, never for bad input.
#define VESK_ASSERT(condition)                                                                     \
    ((condition) ? static_cast<void>(0) : veskAssertionFailed(#condition, __FILE__, __LINE__))

/// The same with a \a text of its own in place of the condition's.
#define VESK_ASSERT_TEXT(condition, text)                                                          \
    ((condition) ? static_cast<void>(0) : veskAssertionFailed(text, __FILE__, __LINE__))

/// Logs the failed \a condition at FATAL and aborts. Any thread.
[[noreturn]] VESK_API void veskAssertionFailed(const char *condition, const char *file, int line);

/// Names the calling operating-system thread, cut to the 15 bytes that Linux keeps.
VESK_API void veskSetThreadName(const QString &name);

/// Tells whether a connection's arguments can be queued: when the call will be (a queued
/// connection, or an automatic one between objects on different threads), every parameter of \a
/// signal that is no pointer must be a registered meta-type. A parameter that is not is logged.
VESK_API bool verifyConnectionSignalParameters(const QObject *sender, const QMetaMethod &signal,
    const QObject *receiver, Qt::ConnectionType type);

/// QObject::connect that stops the process instead of leaving a connection unmade.
/// \a slot is a member function of \a receiver.
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
