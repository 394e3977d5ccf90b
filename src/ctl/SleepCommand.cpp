// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/TimeText.h"

#include <optional>

namespace {

constexpr int SecondsPerMinute = 60;
constexpr int MaxMinutes = 24 * 60;

/// Minutes: a number of them, or "1h30m".
std::optional<int> sleepMinutes(const QString &text)
{
    // Whether "1:30" is an hour and a half or 90 seconds, nobody knows.
    const int seconds = text.contains(QLatin1Char(':')) ? 0 : parseDuration(text).value_or(0);
    const int whole = seconds % SecondsPerMinute == 0 ? seconds / SecondsPerMinute : 0;
    const int minutes = parseNumber(text).value_or(whole);
    return minutes >= 1 && minutes <= MaxMinutes ? std::optional(minutes) : std::nullopt;
}

void tellTimer(HostSession &session, const QVariantHash &timer)
{
    const QString ends = timer.value(QStringLiteral("ends")).toString();
    const QVariant left = timer.value(QStringLiteral("left"));
    QString text = ctlText("no sleep timer");
    if (!ends.isEmpty())
        text = ctlText("the sound stops at %1").arg(clockText(ends, false));
    if (!ends.isEmpty() && !left.isNull())
        text = ctlText("%1, in %2").arg(text, durationText(wholeSeconds(left)));
    session.tell(text, timer);
}

CtlResult<> sleep(HostSession &session)
{
    const CtlOptions &options = session.options();
    const bool isOff = options.sleep == QLatin1String("off");
    if (options.sleep.isEmpty() || isOff) {
        if (isOff) {
            const auto stopped = session.call(QStringLiteral("sleep.stop"));
            if (!stopped)
                return failure(stopped.error());
        }
        const auto state = session.call(QStringLiteral("sleep.state"));
        if (!state)
            return failure(state.error());
        tellTimer(session, *state);
        return {};
    }
    const auto minutes = sleepMinutes(options.sleep);
    if (!minutes) {
        return session.fail(CtlStatus::BadUsage,
            ctlText("\"%1\" is no time to sleep for: that is 1 to 1440 minutes, 1h30m or off")
                .arg(options.sleep));
    }
    QVariantHash params {{QStringLiteral("minutes"), *minutes}};
    if (options.fade >= 0)
        params.insert(QStringLiteral("fade"), options.fade);
    const auto started = session.call(QStringLiteral("sleep.start"), params);
    if (!started)
        return failure(started.error());
    tellTimer(session, *started);
    return {};
}

} // namespace

void addSleepCommand(Command app, CtlCommandLine &line)
{
    constexpr int MaxFade = 600;
    CtlOptions &options = line.options;
    Command command
        = addCommand(app, "sleep", "Stop the sound later, fading out, or tell when", line, &sleep);
    command.addOption("MINUTES", options.sleep, "30, 1h30m or off; without it, what is set");
    command.addOption("--fade", options.fade, "How long it fades out, in seconds (30)")
        .valueName("SECONDS")
        .between(0, MaxFade);
}
