// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/SleepMethods.h"

#include "api/core/vesk.h"
#include "host/alarm/AlarmClock.h"
#include "host/alarm/AlarmParams.h"
#include "host/alarm/SleepTimer.h"

#include <utility>

SleepMethods::SleepMethods(
    JsonRpcDispatcher *dispatcher, SleepTimer *timer, AlarmClock *clock, QObject *parent)
    : QObject(parent)
    , m_timer(timer)
    , m_clock(clock)
{
    dispatcher->addMethod(
        QStringLiteral("sleep.start"), [this](const JsonRpcCallPtr &call) { start(call); });
    dispatcher->addMethod(QStringLiteral("sleep.stop"), [this](const JsonRpcCallPtr &call) {
        m_timer->stop([call](const Result<void, QString> &result) {
            if (result)
                call->finish(QVariantHash());
            else
                call->fail(notSaved(result.error()));
        });
    });
    dispatcher->addMethod(QStringLiteral("sleep.state"),
        [this](const JsonRpcCallPtr &call) { call->finish(state()); });
    veskConnect(timer, &SleepTimer::changed, this, &SleepMethods::announce);
}

void SleepMethods::start(const JsonRpcCallPtr &call)
{
    const int longest = static_cast<int>(SleepTimer::Longest.count());
    const int longestFade = static_cast<int>(SleepTimer::LongestFade.count());
    const auto minutes = wholeNumber(call->params().value(QStringLiteral("minutes")), 1, longest);
    if (!minutes)
        return call->fail(wrongParams(
            QStringLiteral("\"minutes\" is a whole number from 1 to %1.").arg(longest)));
    const QVariant given = call->params().value(QStringLiteral("fade"));
    const auto fade
        = given.isNull() ? std::optional(DefaultFade) : wholeNumber(given, 0, longestFade);
    if (!fade)
        return call->fail(
            wrongParams(QStringLiteral("\"fade\" is a whole number of seconds from 0 to %1.")
                            .arg(longestFade)));
    m_timer->start(std::chrono::minutes(*minutes), std::chrono::seconds(*fade),
        [this, call](const Result<void, QString> &result) {
            if (!result)
                return call->fail(notSaved(result.error()));
            call->finish(
                QVariantHash {{QStringLiteral("ends"), state().value(QStringLiteral("ends"))}});
        });
}

QVariantHash SleepMethods::state() const
{
    const auto ends = m_timer->ends();
    return {{QStringLiteral("ends"), ends ? isoText(*ends, m_clock->zone()) : QVariant()},
        {QStringLiteral("left"), qlonglong(m_timer->left().count())}};
}

void SleepMethods::announce()
{
    if (std::exchange(m_isAnnounced, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isAnnounced = false;
            Q_EMIT notification(QStringLiteral("sleep.changed"), state());
        },
        Qt::QueuedConnection);
}
