// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMError.h"
#include "api/web/VeskUrl.h"

#include <curl/curl.h>

/// Errors for exchanges that failed below the level of an answer. Pure functions, any thread.
class VESK_API CMErrorHelper {
public:
    /// The error for libcurl's \a code while \a service (a name for the user; empty stands for the
    /// host of \a url) was asked for \a url, which itself does not become part of the error: it may
    /// hold secrets. Its name is the default
    /// name, ":curl-" and the code; its hash holds the code as "curlCode".
    static CMError create(CURLcode code, const VeskUrl &url, const QString &service);
};
