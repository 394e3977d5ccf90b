// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInApi.h"

#include "modules/tunein/TuneInSettings.h"

#include <limits>

VeskUrl TuneInApi::url(const QString &path)
{
    return VeskUrl(QStringLiteral("http://opml.radiotime.com") + path);
}

VeskUrl TuneInApi::secureUrl(const QString &path)
{
    return VeskUrl(QStringLiteral("https://opml.radiotime.com") + path);
}

bool TuneInApi::isPersonal(const VeskUrl &url)
{
    const QString path = url.path();
    if (path == QLatin1String("/Preset.ashx") || path == QLatin1String("/Report.ashx")
        || path == QLatin1String("/Account.ashx"))
        return true;
    // The description of an item says whether it is a favorite. Lists, such as the genres, do not.
    if (path == QLatin1String("/Describe.ashx"))
        return url.hasQueryItem(QStringLiteral("id"));
    return path == QLatin1String("/Browse.ashx")
        && url.queryItemValue(QStringLiteral("c")) == QLatin1String("presets");
}

void TuneInApi::addDevice(VeskUrl &url, const TuneInSettings &settings)
{
    if (!settings.partnerId().isEmpty())
        url.addQueryItem(QStringLiteral("partnerId"), settings.partnerId());
    if (!settings.serial().isEmpty())
        url.addQueryItem(QStringLiteral("serial"), settings.serial());
}

int TuneInApi::bitsPerSecond(const QString &kilobits)
{
    constexpr int PerKilobit = 1000;
    const int rate = kilobits.toInt();
    return rate > 0 && rate <= std::numeric_limits<int>::max() / PerKilobit ? rate * PerKilobit : 0;
}

CMError TuneInApi::error(const char *text)
{
    return CMError(TrString("TuneIn", text));
}
