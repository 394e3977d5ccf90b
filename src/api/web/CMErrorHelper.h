// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMError.h"
#include "api/web/VeskUrl.h"

#include <curl/curl.h>

/// Errors for exchanges that failed without a response. Pure functions, any thread.
class VESK_API CMErrorHelper {
public:
    /// The error for a request to \a url that failed with libcurl's \a code. \a service is the name
    /// of the service for the user; if empty, the host of \a url is used. The URL itself is not
    /// part of the error, as it may contain secrets. The error's name is the default name followed
    /// by ":curl-" and the code, which is also its entry "curlCode".
    static CMError create(CURLcode code, const VeskUrl &url, const QString &service);
};
