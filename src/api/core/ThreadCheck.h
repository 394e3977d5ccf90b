// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/vesk.h"

#include <QObject>
#include <QThread>

/// \file
/// "Main thread" and "its own thread" as checks that stay on in release builds. They cost a few
/// nanoseconds; what is called millions of times goes without.

/// At the beginning of a QObject's function: the process ends when the caller is on another thread
/// than the object.
#define VESK_ASSERT_OWN_THREAD()                                                                   \
    VESK_ASSERT_TEXT(QThread::currentThread() == this->thread(), "called on the object's thread")

/// Remembers the thread that it is made on, for classes that are no QObject.
class VeskThreadCheck {
public:
    bool isCurrent() const { return QThread::currentThread() == m_thread; }

private:
    const QThread *m_thread = QThread::currentThread();
};

/// At the beginning of a function: the process ends when the caller is on another thread than \a
/// check, a VeskThreadCheck, was made on.
#define VESK_ASSERT_THREAD(check)                                                                  \
    VESK_ASSERT_TEXT((check).isCurrent(), "called on the thread that it was made on")
