// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Interruption.h"

#include <glib-unix.h>

Interruption::Interruption(int output, std::function<void()> interrupted)
    : m_interrupted(std::move(interrupted))
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        m_signals.push_back(g_unix_signal_add(signal, &Interruption::signalCame, this));
    if (output >= 0) {
        const auto gone
            = [](gint, GIOCondition, gpointer data) -> gboolean { return readerGone(data); };
        m_reader
            = g_unix_fd_add(output, static_cast<GIOCondition>(G_IO_ERR | G_IO_HUP), gone, this);
    }
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignore, &m_formerPipe);
}

Interruption::~Interruption()
{
    ::sigaction(SIGPIPE, &m_formerPipe, nullptr);
    for (const guint source : m_signals)
        g_source_remove(source);
    if (m_reader)
        g_source_remove(m_reader);
}

int Interruption::signalCame(void *interruption)
{
    static_cast<Interruption *>(interruption)->m_interrupted();
    return G_SOURCE_CONTINUE;
}

int Interruption::readerGone(void *interruption)
{
    auto *self = static_cast<Interruption *>(interruption);
    self->m_reader = 0;
    self->m_interrupted();
    return G_SOURCE_REMOVE;
}
