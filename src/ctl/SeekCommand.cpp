// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/TimeText.h"

#include <optional>

namespace {

/// The parameters of player.seek for what was typed; nothing when it is no place in time.
std::optional<QVariantHash> seekParams(const QString &position)
{
    if (position == QLatin1String("live"))
        return QVariantHash {{QStringLiteral("live"), true}};
    const bool isBack = position.startsWith(QLatin1Char('-'));
    const bool isOffset = isBack || position.startsWith(QLatin1Char('+'));
    const auto seconds = parseDuration(isOffset ? position.mid(1) : position);
    if (!seconds)
        return std::nullopt;
    if (isOffset)
        return QVariantHash {{QStringLiteral("offset"), isBack ? -*seconds : *seconds}};
    return QVariantHash {{QStringLiteral("position"), *seconds}};
}

CtlResult<> seek(HostSession &session)
{
    const QString &position = session.options().position;
    const auto params = seekParams(position);
    if (!params) {
        return session.fail(CtlStatus::BadUsage,
            ctlText("\"%1\" is no place to go to: that is +30, -1:30, 1:20:00, 90s or live")
                .arg(position));
    }
    const auto result = session.call(QStringLiteral("player.seek"), *params);
    if (!result)
        return failure(result.error());
    const QVariant now = result->value(QStringLiteral("position"));
    const QString behind = behindText(result->value(QStringLiteral("behind")));
    QStringList parts;
    if (!now.isNull())
        parts.append(durationText(wholeSeconds(now)));
    if (!behind.isEmpty())
        parts.append(behind);
    session.tell(parts.isEmpty() ? ctlText("live") : parts.join(QLatin1String(", ")), *result);
    return {};
}

} // namespace

void addSeekCommand(Command app, CtlCommandLine &line)
{
    addCommand(app, "seek", "Go to another place in what plays", line, &seek)
        .addOption("POSITION", line.options.position,
            "+30 or -1:30 from here, 1:20:00 from the beginning, or live")
        .required();
}
