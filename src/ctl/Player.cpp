// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Player.h"

#include "api/values/VeskPlayLogicData.h"
#include "ctl/PlayerWatch.h"
#include "ctl/RowText.h"

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

std::string playerLine(const QVariantHash &state, int width, const TerminalStyle &style)
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
    const QString trouble = troubleOf(state);
    if (!trouble.isEmpty())
        parts.append({trouble, trouble.toStdString()});
    return inLines(parts, width);
}

CtlResult<> Player::play(const Spot &spot)
{
    QVariantHash params {
        {QStringLiteral("screen"), spot.screen.toEncoded()}, {QStringLiteral("row"), spot.row}};
    if (!spot.path.isEmpty())
        params.insert(QStringLiteral("path"), spot.path.toEncoded());
    const RpcAnswer answer = m_session.answer(QStringLiteral("player.play"), params);
    if (answer.kind == RpcAnswer::Error && answer.code == RpcAnswer::EntryGone)
        return Places(m_session).reportGone(spot.screen, answer);
    if (answer.kind != RpcAnswer::Result)
        return m_session.report(answer);
    if (m_session.options().wait)
        return waitUntilHeard(answer.result.toHash().value(QStringLiteral("playId")).toHash());
    const auto state = m_session.call(QStringLiteral("player.state"));
    if (!state)
        return failure(state.error());
    print(*state);
    return outcomeOf(*state);
}

CtlResult<> Player::waitUntilHeard(const QVariantHash &playId)
{
    QVariantHash now;
    const auto take = [&](const QVariantHash &state) {
        now = state;
        if (!m_session.options().json)
            print(state);
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
    const auto state = m_session.call(QStringLiteral("player.state"));
    if (!state)
        return failure(state.error());
    print(*state);
    return {};
}

CtlResult<> Player::watch()
{
    const CtlTerminal &terminal = m_session.terminal();
    PlayerWatch watch(m_session, [&](const QVariantHash &state) {
        print(state);
        return terminal.out.good();
    });
    return watch.run();
}

void Player::print(const QVariantHash &state)
{
    const CtlTerminal &terminal = m_session.terminal();
    if (m_session.options().json) {
        m_session.printJson(state);
    } else {
        const std::string line = playerLine(state, terminal.width, m_session.style());
        if (line != m_printed)
            terminal.out << line << '\n';
        m_printed = line;
    }
    terminal.out.flush();
}
