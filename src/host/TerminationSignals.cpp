// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/TerminationSignals.h"

#include <csignal>
#include <glib-unix.h>

namespace {

gboolean signalCame(gpointer data)
{
    Q_EMIT static_cast<TerminationSignals *>(data)->requested();
    return G_SOURCE_CONTINUE;
}

gboolean hangUpCame(gpointer data)
{
    Q_EMIT static_cast<TerminationSignals *>(data)->hungUp();
    return G_SOURCE_CONTINUE;
}

void maskSignals(int how)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGHUP);
    ::pthread_sigmask(how, &signals, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
    , m_sources {g_unix_signal_add(SIGTERM, &signalCame, this),
          g_unix_signal_add(SIGINT, &signalCame, this),
          g_unix_signal_add(SIGHUP, &hangUpCame, this)}
{
    maskSignals(SIG_UNBLOCK);
}

TerminationSignals::~TerminationSignals()
{
    for (const unsigned source : m_sources)
        g_source_remove(source);
}

void TerminationSignals::hold()
{
    maskSignals(SIG_BLOCK);
}
