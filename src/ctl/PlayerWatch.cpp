// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/PlayerWatch.h"

#include <glib.h>

namespace {

constexpr guint RetrySeconds = 1;
/// How often a volume that is being turned is told: a slider sends dozens of changes in a second.
constexpr guint VolumeMs = 500;

/// Without what alone is told later.
QVariantHash withoutVolume(QVariantHash state)
{
    state.remove(QStringLiteral("volume"));
    // A change of the volume has the position of that moment.
    state.remove(QStringLiteral("position"));
    return state;
}

gboolean retryNow(gpointer data)
{
    *static_cast<bool *>(data) = true;
    return G_SOURCE_REMOVE;
}

} // namespace

PlayerWatch::PlayerWatch(HostSession &session, Show show)
    : m_session(session)
    , m_show(std::move(show))
    , m_status(session)
    , m_interruption(session.terminal().output, [this] { end(); })
{
    m_session.client().setNotified([this](const QString &method, const QVariantHash &params) {
        // Changed alarms are read first, which cannot be done from here.
        if (m_status.take(method, params) && !m_status.isOutdated())
            takeChange();
    });
}

PlayerWatch::~PlayerWatch()
{
    m_session.client().setNotified({});
    if (m_volumeTimer != 0)
        g_source_remove(m_volumeTimer);
}

CtlResult<> PlayerWatch::run()
{
    bool wasThere = false;
    bool isThere = false;
    while (!m_ended) {
        const RpcAnswer answer = m_status.read();
        if (m_ended)
            break;
        // A host that lets this device in no more will not do so by itself again.
        if (answer.kind == RpcAnswer::Error || answer.kind == RpcAnswer::Refused
            || (answer.kind == RpcAnswer::NoHost && !wasThere))
            return m_session.report(answer);
        if (answer.kind == RpcAnswer::Result) {
            wasThere = true;
            isThere = true;
            tell();
            follow();
        }
        if (!m_ended && isThere)
            m_session.note(ctlText("the host is gone; waiting until it is back"));
        isThere = false;
        waitToRetry();
    }
    return {};
}

/// Returns when the connection is lost, or the watch has ended.
void PlayerWatch::follow()
{
    RpcClient &client = m_session.client();
    // Another connection would have a state of its own.
    while (client.waitUntil([this] { return m_ended || m_status.isOutdated(); })
        && client.isConnected()) {
        m_status.readAlarms();
        tell();
    }
}

void PlayerWatch::takeChange()
{
    if (withoutVolume(m_status.all()) != m_told)
        tell();
    else if (m_volumeTimer == 0)
        m_volumeTimer = g_timeout_add(VolumeMs, &PlayerWatch::tellVolume, this);
}

int PlayerWatch::tellVolume(void *watch)
{
    auto *self = static_cast<PlayerWatch *>(watch);
    self->m_volumeTimer = 0;
    self->tell();
    return G_SOURCE_REMOVE;
}

void PlayerWatch::tell()
{
    m_told = withoutVolume(m_status.all());
    if (!m_ended && !m_show(m_status.all()))
        end();
}

void PlayerWatch::end()
{
    m_ended = true;
    // Ends a call or a wait that is under way.
    m_session.client().close();
}

void PlayerWatch::waitToRetry()
{
    bool now = false;
    const guint timer = g_timeout_add_seconds(RetrySeconds, &retryNow, &now);
    while (!now && !m_ended)
        g_main_context_iteration(nullptr, TRUE);
    if (!now)
        g_source_remove(timer);
}
