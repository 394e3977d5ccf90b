// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInScreenUrl.h"

#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskValue.h"
#include "api/values/VeskValuePaths.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInParams.h"
#include "modules/tunein/TuneInSettings.h"

using TuneInScreenUrl::Fault;
namespace Param = TuneInParams;

namespace {

const QString &browseBase()
{
    static const QString base = QStringLiteral("browse");
    return base;
}

/// A fault with the same text for the log and the user.
Fault missing(const char *message)
{
    return {QString::fromLatin1(message), message};
}

void setUriForm(const CMPath &path, QString rest, VeskUrl &url)
{
    url.setPath(rest.remove(QStringLiteral("/uri")));
    VeskUrl::QueryItems items;
    for (const auto &param : path.paramList()) {
        if (!param.first.startsWith(QLatin1String("vesk")))
            items.append(param);
    }
    if (!items.isEmpty())
        url.setQueryItems(items);
}

Fault setTuneMethod(const CMPath &path, VeskUrl &url)
{
    url.setPath(QStringLiteral("/Tune.ashx"));
    if (!path.hasParam(Param::guideId()))
        return missing(QT_TRANSLATE_NOOP("TuneIn", "Missing guideId parameter"));
    QString id = path.param(Param::guideId());
    const QString stationId = path.param(Param::stationId());
    // A single stream's id ("e...") does not work alone everywhere: its station's does, which
    // answers give with or without its letter.
    if (id.startsWith(QLatin1Char('e')) && !stationId.isEmpty())
        id = stationId.at(0).isDigit() ? QLatin1Char('s') + stationId : stationId;
    url.addQueryItem(QStringLiteral("id"), id);
    if (path.hasParam(Param::c()))
        url.addQueryItem(QStringLiteral("c"), path.param(Param::c()));
    return {};
}

Fault setSearchMethod(const CMPath &path, VeskUrl &url)
{
    url.setPath(QStringLiteral("/Search.ashx"));
    if (!path.hasParam(Param::query()))
        return missing(QT_TRANSLATE_NOOP("TuneIn", "Missing query parameter"));
    url.addQueryItem(QStringLiteral("query"), path.param(Param::query()));
    return {};
}

Fault setWizardMethod(const CMPath &path, VeskUrl &url)
{
    url.setPath(QStringLiteral("/Report.ashx"));
    url.addQueryItem(QStringLiteral("c"), QStringLiteral("wizard"));
    if (!path.hasParam(Param::guideId()))
        return missing(QT_TRANSLATE_NOOP("TuneIn", "Missing guideId parameter"));
    url.addQueryItem(QStringLiteral("id"), path.param(Param::guideId()));
    return {};
}

Fault setMethodForm(const CMPath &path, const QString &method, VeskUrl &url)
{
    if (method == QLatin1String("tune"))
        return setTuneMethod(path, url);
    if (method == QLatin1String("search"))
        return setSearchMethod(path, url);
    if (method == QLatin1String("wizard"))
        return setWizardMethod(path, url);
    return {QStringLiteral("Unsupported method: ") + method,
        QT_TRANSLATE_NOOP("TuneIn", "Unsupported method!")};
}

Fault setRootForm(const CMPath &path, VeskUrl &url)
{
    if (!TuneInScreenUrl::isRoot(path)) {
        return {QStringLiteral("Unspecified browse method!"),
            QT_TRANSLATE_NOOP("TuneIn", "Unspecified method!")};
    }
    url.setPath(QStringLiteral("/Browse.ashx"));
    return {};
}

} // namespace

bool TuneInScreenUrl::isRoot(const CMPath &path)
{
    return path.base() == browseBase() && !path.hasParams();
}

VeskUrl TuneInScreenUrl::ofPath(const CMPath &path, Fault &fault)
{
    VeskUrl url = TuneInApi::url(QString());
    QString rest = path.base();
    rest.remove(browseBase());
    const QString method = path.param(Param::veskTuneInMethod());
    if (rest.startsWith(QLatin1String("/uri/")))
        setUriForm(path, rest, url);
    else
        fault = method.isEmpty() ? setRootForm(path, url) : setMethodForm(path, method, url);
    return url;
}

void TuneInScreenUrl::addCommonItems(VeskUrl &url, const TuneInSettings &settings)
{
    const auto addOnce = [&url](const QString &key, const QString &value) {
        if (!url.hasQueryItem(key))
            url.addQueryItem(key, value);
    };
    // Never removes anything: the test is inverted. Private items do not get this far, so it stays.
    if (!url.hasQueryItem(Param::veskNavigation()))
        url.removeQueryItem(Param::veskNavigation());
    addOnce(QStringLiteral("render"), QStringLiteral("json"));
    if (!settings.supportedStreams().isEmpty())
        addOnce(QStringLiteral("formats"), settings.supportedStreams());
    addOnce(QStringLiteral("partnerId"), settings.partnerId());
    addOnce(QStringLiteral("serial"), settings.serial());
    const VeskHash language(CMRoot()->getValue(VeskUILanguagePath()).toHash());
    addOnce(QStringLiteral("locale"), VeskValue(language).string_());
}
