// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Player.h"

#include "api/values/VeskPlayLogicData.h"
#include "ctl/PlayerWatch.h"
#include "ctl/RowText.h"
#include "ctl/TimeText.h"

namespace {

constexpr int Gap = 2;

int stateOf(const QVariantHash &state)
{
    return state.value(QStringLiteral("state")).toInt();
}

QString textOf(const QVariantHash &state, const char *name)
{
    return printableText(state.value(QLatin1String(name)).toString());
}

QString bitRateOf(const QVariantHash &state)
{
    constexpr int BitsPerKilobit = 1000;
    const int bitRate = state.value(QStringLiteral("bitrate")).toInt();
    if (bitRate < BitsPerKilobit)
        return {};
    return QStringLiteral("%1 kbit/s").arg(bitRate / BitsPerKilobit);
}

/// What is being done about a fault, and what went wrong.
QString troubleOf(const QVariantHash &state)
{
    const QString error = textOf(state, "error");
    const QString problem = textOf(state, "problem");
    return error.isEmpty() ? problem : ctlText("error: %1").arg(error);
}

/// Of a file how far it is; of a station nothing.
QString positionOf(const QVariantHash &state)
{
    const QVariant position = state.value(QStringLiteral("position"));
    const QVariant duration = state.value(QStringLiteral("duration"));
    if (position.isNull())
        return {};
    const QString now = durationText(wholeSeconds(position));
    return duration.isNull()
        ? now
        : QStringLiteral("%1 / %2").arg(now, durationText(wholeSeconds(duration)));
}

/// Why nothing is heard though it plays.
QString mutedText(const QVariantHash &state)
{
    return state.value(QStringLiteral("mute")).toBool() ? ctlText("muted") : QString();
}

QString volumeOf(const QVariantHash &state)
{
    const QVariant volume = state.value(QStringLiteral("volume"));
    return volume.isNull() ? QString() : ctlText("volume %1").arg(QString::number(volume.toInt()));
}

QString sleepOf(const QVariantHash &state)
{
    const QString ends = clockText(
        state.value(QStringLiteral("sleep")).toHash().value(QStringLiteral("ends")).toString(),
        false);
    return ends.isEmpty() ? ends : ctlText("stops at %1").arg(ends);
}

/// That an alarm rings, which were missed, and when the next one will.
QStringList alarmsOf(const QVariantHash &state)
{
    QStringList texts;
    if (state.contains(QStringLiteral("ringing")))
        texts.append(ctlText("the alarm rings"));
    const QVariantList missed = state.value(QStringLiteral("missed")).toList();
    if (!missed.isEmpty()) {
        const QString at = missed.last().toHash().value(QStringLiteral("at")).toString();
        texts.append(ctlText("missed alarm: %1").arg(clockText(at, true)));
    }
    const QString next = clockText(
        state.value(QStringLiteral("alarm")).toHash().value(QStringLiteral("next")).toString(),
        true);
    if (!next.isEmpty())
        texts.append(ctlText("alarm %1").arg(next));
    return texts;
}

/// What there is to tell beside what plays; of a host that does not know it, nothing.
QStringList detailsOf(const QVariantHash &state)
{
    QStringList texts {positionOf(state), behindText(state.value(QStringLiteral("behind"))),
        volumeOf(state), mutedText(state), sleepOf(state)};
    texts += alarmsOf(state);
    texts.append(textOf(state, "outputProblem"));
    return texts;
}

struct Part {
    QString text;
    std::string shown;
};

/// The parts beside each other, on the next line where they do not fit.
std::string inLines(const QList<Part> &parts, int width)
{
    std::string lines;
    int columns = 0;
    for (const Part &part : parts) {
        const int wanted = textWidth(part.text);
        if (width > 0 && columns > 0 && columns + Gap + wanted > width) {
            lines += '\n';
            columns = 0;
        }
        // What follows a break is indented as well.
        const int gap = lines.empty() ? 0 : Gap;
        lines += std::string(static_cast<size_t>(gap), ' ') + part.shown;
        columns += gap + wanted;
    }
    return lines;
}

bool hasFailed(const QVariantHash &state)
{
    return !state.value(QStringLiteral("error")).toString().isEmpty();
}

/// A play that failed is a failure of veskctl's; \a state has said so already.
CtlResult<> outcomeOf(const QVariantHash &state)
{
    if (hasFailed(state))
        return failure(CtlStatus::Failed);
    return {};
}

} // namespace

std::string playerLine(
    const QVariantHash &state, Details details, int width, const TerminalStyle &style)
{
    const QString word = playerWord(stateOf(state));
    QList<Part> parts {{word, style.bold(word)}};
    const auto add = [&](const QString &text, int room) {
        const QString fitting = width > 0 ? elided(text, qMax(1, room)) : text;
        if (!fitting.isEmpty())
            parts.append({fitting, fitting.toStdString()});
    };
    add(textOf(state, "title"), width - Gap - textWidth(word));
    add(textOf(state, "streamTitle"), width - Gap);
    const QString bitRate = bitRateOf(state);
    if (!bitRate.isEmpty())
        parts.append({bitRate, style.dim(bitRate)});
    const QStringList more
        = details == Details::All ? detailsOf(state) : QStringList {mutedText(state)};
    for (const QString &text : more)
        add(text, width - Gap);
    const QString trouble = troubleOf(state);
    if (!trouble.isEmpty())
        parts.append({trouble, trouble.toStdString()});
    return inLines(parts, width);
}

CtlResult<> Player::play(const Spot &spot)
{
    const RpcAnswer answer = m_session.answer(QStringLiteral("player.play"), spot.params());
    if (answer.kind == RpcAnswer::Error && answer.code == RpcAnswer::EntryGone)
        return Places(m_session).reportGone(spot.screen, answer);
    return tellPlay(answer);
}

CtlResult<> Player::play(const QString &method, const QVariantHash &params)
{
    return tellPlay(m_session.answer(method, params));
}

CtlResult<> Player::tellPlay(const RpcAnswer &answer)
{
    if (answer.kind != RpcAnswer::Result)
        return m_session.report(answer);
    if (m_session.options().wait)
        return waitUntilHeard(answer.result.toHash().value(QStringLiteral("playId")).toHash());
    const auto state = m_session.call(QStringLiteral("player.state"));
    if (!state)
        return failure(state.error());
    print(*state, Details::Few);
    return outcomeOf(*state);
}

CtlResult<> Player::waitUntilHeard(const QVariantHash &playId)
{
    QVariantHash now;
    const auto take = [&](const QVariantHash &state) {
        now = state;
        if (!m_session.options().json)
            print(state, Details::Few);
    };
    m_session.client().setNotified([&](const QString &method, const QVariantHash &params) {
        if (method == QLatin1String("player.changed"))
            take(params);
    });
    const auto isOurs = [&] { return now.value(QStringLiteral("playId")).toHash() == playId; };
    const auto isDecided = [&] {
        return !isOurs() || stateOf(now) == VeskPlayLogicState::playing
            || stateOf(now) == VeskPlayLogicState::stopped;
    };
    const RpcAnswer answer = m_session.answer(QStringLiteral("player.state"));
    if (answer.kind == RpcAnswer::Result)
        take(answer.result.toHash());
    const bool isThere
        = answer.kind == RpcAnswer::Result && m_session.client().waitUntil(isDecided);
    m_session.client().setNotified({});
    if (answer.kind != RpcAnswer::Result)
        return m_session.report(answer);
    if (!isThere)
        return m_session.fail(CtlStatus::NoHost, ctlText("the host is gone"));
    if (isOurs() && (stateOf(now) == VeskPlayLogicState::playing || hasFailed(now))) {
        if (m_session.options().json)
            m_session.printJson(now);
        return outcomeOf(now);
    }
    return m_session.fail(CtlStatus::Failed,
        ctlText("it was stopped, or something else played, before it was heard"));
}

CtlResult<> Player::act(const QString &method)
{
    const auto result = m_session.call(method);
    if (!result)
        return failure(result.error());
    if (m_session.options().json)
        m_session.printJson(*result);
    return {};
}

CtlResult<> Player::status()
{
    HostStatus status(m_session);
    const RpcAnswer answer = status.read();
    if (answer.kind != RpcAnswer::Result)
        return m_session.report(answer);
    print(status.all(), Details::All);
    return {};
}

CtlResult<> Player::watch()
{
    const CtlTerminal &terminal = m_session.terminal();
    PlayerWatch watch(m_session, [&](const QVariantHash &state) {
        print(state, Details::All);
        return terminal.out.good();
    });
    return watch.run();
}

void Player::print(const QVariantHash &state, Details details)
{
    const CtlTerminal &terminal = m_session.terminal();
    if (m_session.options().json) {
        m_session.printJson(state);
    } else {
        const std::string line = playerLine(state, details, terminal.width, m_session.style());
        if (line != m_printed)
            terminal.out << line << '\n';
        m_printed = line;
    }
    terminal.out.flush();
}
