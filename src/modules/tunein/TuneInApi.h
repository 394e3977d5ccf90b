// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMError.h"
#include "api/web/VeskUrl.h"

#include <QString>

class TuneInSettings;

/// \file
/// What all calls of TuneIn's web API (OPML, JSON answers) have in common.

namespace TuneInApi {

/// The URL of \a path, which may hold a query, at the API over plain HTTP.
VeskUrl url(const QString &path);
/// The same over HTTPS: for account calls, which carry credentials.
VeskUrl secureUrl(const QString &path);

/// Whether the call changes or reads what TuneIn knows of this listener. Much of the API does both
/// by GET; such calls must reach TuneIn each time and never be answered from a cache.
bool isPersonal(const VeskUrl &url);

/// Adds "partnerId" and "serial", each only if it is not empty.
void addDevice(VeskUrl &url, const TuneInSettings &settings);

/// From the directory's kbit/s. A text that is no positive number, or too large, is 0: unknown.
int bitsPerSecond(const QString &kilobits);

/// An error with the default name and title whose message is \a text, in translation context
/// "TuneIn".
CMError error(const char *text);

} // namespace TuneInApi
