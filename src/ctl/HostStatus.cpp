// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/HostStatus.h"

#include <QDateTime>

namespace {

/// The alarm that goes off next; empty for none.
QVariantHash nextIn(const QVariantList &alarms)
{
    QVariantHash next;
    QDateTime least;
    for (const QVariant &value : alarms) {
        const QVariantHash alarm = value.toHash();
        const QDateTime at
            = QDateTime::fromString(alarm.value(QStringLiteral("next")).toString(), Qt::ISODate);
        if (!at.isValid() || (least.isValid() && least <= at))
            continue;
        least = at;
        next = alarm;
    }
    return next;
}

} // namespace

/// A host without that method has nothing to tell.
void HostStatus::ask(const QString &method, QVariantHash &into)
{
    m_session.send(method, {}, [&into](const RpcAnswer &answer) {
        if (answer.kind == RpcAnswer::Result)
            into = answer.result.toHash();
        else if (answer.kind == RpcAnswer::Error)
            into.clear();
    });
}

/// Everything over one connection: notifications about it are newer, and stay queued.
RpcAnswer HostStatus::read()
{
    RpcAnswer player;
    m_isOutdated = false;
    m_session.send(QStringLiteral("player.state"), {},
        [&player](const RpcAnswer &answer) { player = answer; });
    if (m_session.client().isConnected()) {
        ask(QStringLiteral("sleep.state"), m_sleep);
        ask(QStringLiteral("alarms.list"), m_alarms);
    }
    m_session.client().waitForAnswers();
    m_player = player.result.toHash();
    return player;
}

void HostStatus::readAlarms()
{
    m_isOutdated = false;
    ask(QStringLiteral("alarms.list"), m_alarms);
    m_session.client().waitForAnswers();
}

bool HostStatus::take(const QString &method, const QVariantHash &params)
{
    if (method == QLatin1String("player.changed"))
        m_player = params;
    else if (method == QLatin1String("sleep.changed"))
        m_sleep = params;
    else if (method == QLatin1String("alarms.changed"))
        m_isOutdated = true;
    else
        return false;
    return true;
}

QVariantHash HostStatus::all() const
{
    QVariantHash all = m_player;
    if (!m_sleep.value(QStringLiteral("ends")).isNull())
        all.insert(QStringLiteral("sleep"), m_sleep);
    const QVariantHash next = nextIn(m_alarms.value(QStringLiteral("alarms")).toList());
    if (!next.isEmpty())
        all.insert(QStringLiteral("alarm"), next);
    if (!m_alarms.value(QStringLiteral("ringing")).isNull())
        all.insert(QStringLiteral("ringing"), m_alarms.value(QStringLiteral("ringing")));
    if (!m_alarms.value(QStringLiteral("missed")).toList().isEmpty())
        all.insert(QStringLiteral("missed"), m_alarms.value(QStringLiteral("missed")));
    return all;
}
