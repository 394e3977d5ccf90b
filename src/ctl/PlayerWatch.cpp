// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/PlayerWatch.h"

#include <csignal>
#include <glib-unix.h>

#include <vector>

namespace {

constexpr guint RetrySeconds = 1;

/// A write to a pipe without a reader fails instead of ending the process.
class BrokenPipes {
public:
    BrokenPipes()
    {
        struct sigaction ignore = {};
        ignore.sa_handler = SIG_IGN;
        ::sigaction(SIGPIPE, &ignore, &m_former);
    }
    ~BrokenPipes() { ::sigaction(SIGPIPE, &m_former, nullptr); }

    BrokenPipes(const BrokenPipes &) = delete;
    BrokenPipes &operator=(const BrokenPipes &) = delete;

private:
    struct sigaction m_former = {};
};

} // namespace

/// Sources of the main context that end a watch.
struct PlayerWatch::Sources {
    explicit Sources(PlayerWatch *watch, int output)
    {
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            signals.push_back(g_unix_signal_add(signal, &Sources::signalCame, watch));
        if (output >= 0) {
            reader = g_unix_fd_add(output, static_cast<GIOCondition>(G_IO_ERR | G_IO_HUP),
                &Sources::readerGone, watch);
        }
    }
    ~Sources()
    {
        for (const guint source : signals)
            g_source_remove(source);
        if (reader)
            g_source_remove(reader);
    }

    Sources(const Sources &) = delete;
    Sources &operator=(const Sources &) = delete;

    static gboolean signalCame(gpointer data)
    {
        static_cast<PlayerWatch *>(data)->end();
        return G_SOURCE_CONTINUE;
    }

    static gboolean readerGone(gint, GIOCondition, gpointer data)
    {
        auto *watch = static_cast<PlayerWatch *>(data);
        watch->m_sources->reader = 0;
        watch->end();
        return G_SOURCE_REMOVE;
    }

    static gboolean retryNow(gpointer data)
    {
        *static_cast<bool *>(data) = true;
        return G_SOURCE_REMOVE;
    }

    std::vector<guint> signals;
    /// 0 for none.
    guint reader = 0;
};

PlayerWatch::PlayerWatch(HostSession &session, Show show)
    : m_session(session)
    , m_show(std::move(show))
    , m_sources(std::make_unique<Sources>(this, session.terminal().output))
{
    m_session.client().setNotified([this](const QString &method, const QVariantHash &params) {
        if (method == QLatin1String("player.changed"))
            take(params);
    });
}

PlayerWatch::~PlayerWatch()
{
    m_session.client().setNotified({});
}

CtlResult<> PlayerWatch::run()
{
    const BrokenPipes broken;
    bool wasThere = false;
    bool isThere = false;
    while (!m_ended) {
        const RpcAnswer answer = m_session.answer(QStringLiteral("player.state"));
        if (m_ended)
            break;
        if (answer.kind == RpcAnswer::Error || (answer.kind == RpcAnswer::NoHost && !wasThere))
            return m_session.report(answer);
        if (answer.kind == RpcAnswer::Result) {
            wasThere = true;
            isThere = true;
            take(answer.result.toHash());
            m_session.client().waitUntil([this] { return m_ended; });
        }
        if (!m_ended && isThere)
            m_session.note(ctlText("the host is gone; waiting until it is back"));
        isThere = false;
        waitToRetry();
    }
    return {};
}

void PlayerWatch::take(const QVariantHash &state)
{
    if (!m_ended && !m_show(state))
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
    const guint timer = g_timeout_add_seconds(RetrySeconds, &Sources::retryNow, &now);
    while (!now && !m_ended)
        g_main_context_iteration(nullptr, TRUE);
    if (!now)
        g_source_remove(timer);
}
