// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInClock.h"

#include <QDateTime>
#include <QElapsedTimer>

namespace {

qint64 monotonicNow()
{
    QElapsedTimer timer;
    timer.start();
    return timer.msecsSinceReference();
}

} // namespace

TuneInClock &TuneInClock::instance()
{
    static TuneInClock clock {monotonicNow, QDateTime::currentMSecsSinceEpoch};
    return clock;
}
