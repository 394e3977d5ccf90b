// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/web/VeskUrl.h"

#include <QString>

class CMPath;
class TuneInSettings;

/// \file
/// From a path of the browser to the web API's URL for that screen.
///
/// Three forms of paths: "browse" is the root menu; "browse/uri" with a URL path and its query
/// items as parameters is any screen; "browse" with "veskTuneInMethod" ("tune", "search", "wizard")
/// names a method and its arguments. Parameters that start with "vesk" are never sent.

namespace TuneInScreenUrl {

/// Why a path has no screen.
struct Fault {
    bool isEmpty() const { return !message; }

    QString log;
    /// For the user, in translation context "TuneIn"; null when there is no fault.
    const char *message = nullptr;
};

bool isRoot(const CMPath &path);

/// The URL of the screen \a path, without the common items. Sets \a fault when the path has no
/// screen.
VeskUrl ofPath(const CMPath &path, Fault &fault);

/// Adds the items that every request for a screen has, each unless \a url already has it: links in
/// TuneIn's answers repeat all of them but "render".
void addCommonItems(VeskUrl &url, const TuneInSettings &settings);

} // namespace TuneInScreenUrl
