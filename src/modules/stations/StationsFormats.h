// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "modules/stations/StationsData.h"

#include <QByteArray>

/// \file
/// Lists of stations in the formats that players exchange. Bytes to values and back: pure
/// functions, any thread.
///
/// What is written and read again is the same list, folders included. Where a format has no place
/// for something, it goes where other players look past it: in M3U behind "#EXTGRP:" (the folders
/// from the outside in, with " / " between them) and "#EXTDESC:", in PLS to the members "FolderN",
/// "PictureN" and "DescriptionN", in XSPF to a <meta>. Folders of the same name in one folder
/// become one.

enum class StationsFormat { M3u, Pls, Xspf, Opml };

/// "m3u", "pls", "xspf" or "opml"; M3u for all else.
StationsFormat stationsFormat(const QString &name);
/// The end of a file's name, and the name above.
QString stationsFormatName(StationsFormat format);

/// Reads a file in any of the formats, which its content tells, in UTF-8 or else in Latin-1, XML
/// also in what it declares. \a bytes are hostile: see StationsLimits. Definitions of entities are
/// never expanded, such a file is an error.
StationsFile readStations(const QByteArray &bytes);

/// \a entries with the title \a title of the whole list, in UTF-8.
QByteArray writeStations(
    StationsFormat format, const QString &title, const std::vector<StationsEntry> &entries);
