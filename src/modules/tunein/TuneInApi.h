#pragma once

#include "api/values/CMError.h"
#include "api/web/VeskUrl.h"

#include <QString>

class TuneInSettings;

/// \file
/// What all calls of TuneIn's web API (OPML, JSON answers) have in common.

namespace TuneInApi {

/// The URL of \a path, which may hold a query, at the API over plain HTTP. Account calls go to the
/// HTTPS form instead.
VeskUrl url(const QString &path);

/// Adds "partnerId" and "serial", each only if it is not empty.
void addDevice(VeskUrl &url, const TuneInSettings &settings);

/// An error with the default name and title whose message is \a text, in translation context
/// "TuneIn".
CMError error(const char *text);

} // namespace TuneInApi
