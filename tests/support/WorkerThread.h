// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QThread>

#include <functional>
#include <memory>

/// A thread with an event loop that creates an object, owns it, and deletes it as the last thing it
/// does: how a host treats a plug-in's worker.
class WorkerThread : public QThread {
public:
    /// Starts the thread and returns when \a create has returned there.
    explicit WorkerThread(std::function<QObject *()> create);
    /// Deletes the object on its thread and waits for the thread.
    ~WorkerThread() override;

    QObject *object() const { return m_object; }
    /// Runs \a function on the thread and waits for it. Any thread, this one included. A failed
    /// assertion when the thread's event loop has already ended.
    void call(const std::function<void()> &function);

protected:
    void run() override;

private:
    class Inbox;

    std::function<QObject *()> m_create;
    QObject *m_object = nullptr;
    std::unique_ptr<Inbox> m_inbox;
};

/// Runs the calling thread's event loop until \a condition holds; false after \a milliseconds.
bool spinUntil(const std::function<bool()> &condition, int milliseconds = 10000);
