// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QSocketNotifier>

#include <memory>

class Channel;

/// Receives what comes over a channel on the thread of an event loop, in the place of the channel's
/// own: as long as the loop waits for events, which is when whoever wants what comes would have to
/// be woken by the other thread. Once the loop has had something else to do for a while, the
/// channel's thread receives, as it does what is long.
///
/// Lives on the loop's thread and goes before the channel.
class LoopReceiver {
public:
    /// For the calling thread's event loop. Null when that is not GLib's, which alone tells when it
    /// waits; then the channel's thread goes on receiving everything.
    static std::unique_ptr<LoopReceiver> create(Channel *channel);
    LoopReceiver(const LoopReceiver &) = delete;
    LoopReceiver &operator=(const LoopReceiver &) = delete;
    ~LoopReceiver();

private:
    class Loop;

    explicit LoopReceiver(Channel *channel);
    void loopWaits();
    void loopRuns();
    void receive();

    Channel *const m_channel;
    QSocketNotifier m_notifier;
    const std::shared_ptr<Loop> m_loop;
};
