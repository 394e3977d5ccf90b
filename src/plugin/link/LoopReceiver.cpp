// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/LoopReceiver.h"

#include "plugin/link/Channel.h"

#include <QAbstractEventDispatcher>

#include <algorithm>
#include <glib.h>
#include <vector>

/// The event loop of a thread, which tells its receivers when it waits.
class LoopReceiver::Loop {
public:
    static std::shared_ptr<Loop> current()
    {
        std::shared_ptr<Loop> loop = s_current.lock();
        if (!loop) {
            loop = std::make_shared<Loop>();
            s_current = loop;
        }
        return loop;
    }

    Loop()
        : m_context(g_main_context_ref_thread_default())
        , m_poll(g_main_context_get_poll_func(m_context))
    {
        g_main_context_set_poll_func(m_context, &Loop::poll);
    }
    Loop(const Loop &) = delete;
    Loop &operator=(const Loop &) = delete;
    ~Loop()
    {
        g_main_context_set_poll_func(m_context, m_poll);
        g_main_context_unref(m_context);
    }

    /// Has it look again what it waits for. Any thread.
    void wake() { g_main_context_wakeup(m_context); }
    void add(LoopReceiver *receiver) { m_receivers.push_back(receiver); }
    void remove(LoopReceiver *receiver)
    {
        m_receivers.erase(
            std::remove(m_receivers.begin(), m_receivers.end(), receiver), m_receivers.end());
    }

private:
    /// In the place of the context's own function.
    static gint poll(GPollFD *descriptors, guint count, gint timeout)
    {
        const std::shared_ptr<Loop> loop = s_current.lock();
        if (!loop)
            return g_poll(descriptors, count, timeout);
        const bool waits = timeout != 0;
        if (!waits)
            return loop->m_poll(descriptors, count, timeout);
        for (LoopReceiver *receiver : loop->m_receivers)
            receiver->loopWaits();
        const gint ready = loop->m_poll(descriptors, count, timeout);
        for (LoopReceiver *receiver : loop->m_receivers)
            receiver->loopRuns();
        return ready;
    }

    static thread_local std::weak_ptr<Loop> s_current;

    GMainContext *const m_context;
    const GPollFunc m_poll;
    std::vector<LoopReceiver *> m_receivers;
};

thread_local std::weak_ptr<LoopReceiver::Loop> LoopReceiver::Loop::s_current;

std::unique_ptr<LoopReceiver> LoopReceiver::create(Channel *channel)
{
    const QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher || !dispatcher->inherits("QEventDispatcherGlib"))
        return nullptr;
    return std::unique_ptr<LoopReceiver>(new LoopReceiver(channel));
}

LoopReceiver::LoopReceiver(Channel *channel)
    : m_channel(channel)
    , m_notifier(channel->socket(), QSocketNotifier::Read)
    , m_loop(Loop::current())
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { receive(); });
    m_channel->whenCanLend([this] { m_loop->wake(); });
    m_loop->add(this);
}

LoopReceiver::~LoopReceiver()
{
    m_loop->remove(this);
    m_channel->whenCanLend(nullptr);
    m_channel->recall();
}

void LoopReceiver::loopWaits()
{
    if (!m_channel->canLend())
        return;
    if (m_notifier.isEnabled())
        m_channel->lend();
    else
        m_notifier.setEnabled(true); // from the next time on: the loop knows what it waits for now
}

void LoopReceiver::loopRuns()
{
    m_channel->recallSoon();
}

void LoopReceiver::receive()
{
    if (m_channel->receiveNow())
        return;
    m_notifier.setEnabled(false);
    m_channel->recall();
}
