// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "modules/stations/StationsData.h"

#include <QByteArray>

/// The parsers behind readStations(), each for the bytes of one kind of file.
StationsFile readStationsM3u(const QByteArray &bytes);
StationsFile readStationsPls(const QByteArray &bytes);
/// XSPF or OPML.
StationsFile readStationsXml(const QByteArray &bytes);

/// The relations of XSPF's <meta> in which folders are kept.
inline QString stationsFolderRelation()
{
    return QStringLiteral("urn:vesk:folder");
}
