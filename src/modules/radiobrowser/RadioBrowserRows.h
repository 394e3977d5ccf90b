// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRequest.h"
#include "api/values/VeskMediaData.h"
#include "api/values/VeskRoles.h"
#include "modules/radiobrowser/RadioBrowserData.h"

#include <QList>

/// \file
/// What the screens' answers are made of.

/// The rows of stations, which are the same in every list.
class RadioBrowserStationRows {
public:
    /// \a media is what the media data of all stations begins with, \a menu where a station's
    /// context menu is: empty when there is none.
    RadioBrowserStationRows(const VeskMetaData &media, const CMPath &menu);

    /// Empty, which is shown as no row, for a station that cannot be played: were it left out, the
    /// rows behind it would have other places here than in the directory.
    VeskRoles row(const CMPath &screen, const RadioBrowserStation &station) const;

    /// The id of the station that a row's path stands for, in its usual form; empty for another
    /// path.
    static QString stationOf(const CMPath &path);
    /// The same of a path of its menu; empty when it names none.
    static QString stationOfMenu(const CMPath &path);

private:
    const VeskMetaData m_media;
    const CMPath m_menu;
};

/// An invalid range is answered with an error.
bool isRadioBrowserRange(const CMGetRowsRequest &request);
/// Answers with \a rows, those of the request's range, of a \a screen that has \a count in all.
void answerRadioBrowserRows(
    const CMGetRowsRequest &request, VeskRoles screen, const QList<VeskRoles> &rows, int count);
