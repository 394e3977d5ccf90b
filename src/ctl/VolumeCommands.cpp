// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"

#include <QRegularExpression>

#include <optional>

namespace {

constexpr int MaxVolume = 100;

/// The parameters of player.volume for what was typed; nothing when it is no volume.
std::optional<QVariantHash> volumeParams(const QString &level)
{
    if (level.isEmpty())
        return QVariantHash();
    const bool mutes = level == QLatin1String("mute");
    if (mutes || level == QLatin1String("unmute"))
        return QVariantHash {{QStringLiteral("mute"), mutes}};
    static const QRegularExpression form(QStringLiteral("\\A([+-]?)([0-9]{1,3})%?\\z"));
    const auto match = form.match(level);
    const int number = match.captured(2).toInt();
    if (!match.hasMatch() || number > MaxVolume)
        return std::nullopt;
    const QString sign = match.captured(1);
    if (sign.isEmpty())
        return QVariantHash {{QStringLiteral("volume"), number}};
    return QVariantHash {{QStringLiteral("change"), sign == QLatin1String("-") ? -number : number}};
}

CtlResult<> callAndTell(HostSession &session, const QString &method, const QVariantHash &params)
{
    const auto result = session.call(method, params);
    if (!result)
        return failure(result.error());
    const int volume = result->value(QStringLiteral("volume")).toInt();
    const bool muted = result->value(QStringLiteral("mute")).toBool();
    session.tell((muted ? ctlText("%1, muted") : QStringLiteral("%1")).arg(QString::number(volume)),
        *result);
    return {};
}

CtlResult<> volume(HostSession &session)
{
    const QString &level = session.options().level;
    const auto params = volumeParams(level);
    if (!params) {
        return session.fail(CtlStatus::BadUsage,
            ctlText("\"%1\" is no volume: that is 0 to 100, +5, -5, mute or unmute").arg(level));
    }
    return callAndTell(session, QStringLiteral("player.volume"), *params);
}

} // namespace

void addVolumeCommands(Command app, CtlCommandLine &line)
{
    addCommand(app, "volume", "Tell the volume, or change it", line, &volume)
        .addOption("LEVEL", line.options.level, "0 to 100, +5, -5, mute or unmute");
    const auto addMute = [&](const char *name, const char *description, bool mute) {
        addCommand(app, name, description, line, [mute](HostSession &session) {
            return callAndTell(
                session, QStringLiteral("player.mute"), {{QStringLiteral("mute"), mute}});
        });
    };
    addMute("mute", "Silence what plays", true);
    addMute("unmute", "Let it be heard again", false);
}
