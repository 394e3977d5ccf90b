// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <curl/curl.h>

/// Applies the AddressPolicy of the process to one libcurl handle: checks each address just before
/// the connection is made, after name resolution and after each redirect. Switches proxies off, as
/// they would resolve names themselves. Lives on the handle's thread and as long as the handle uses
/// it.
class VESK_API ConnectionGuard {
public:
    ConnectionGuard() = default;
    ConnectionGuard(const ConnectionGuard &) = delete;
    ConnectionGuard &operator=(const ConnectionGuard &) = delete;

    /// Sets \a easy up, after setUpHttpHandle(). Resets hasRefused().
    void guard(CURL *easy);
    /// Whether an address was refused; an exchange that failed without another reason
    /// (CURLE_COULDNT_CONNECT) failed for that one.
    bool hasRefused() const { return m_refused; }

private:
    static curl_socket_t open(void *self, curlsocktype, curl_sockaddr *address);

    bool m_refused = false;
};

/// Opens close-on-exec sockets, for setUpHttpHandle(): child processes must not inherit them.
VESK_API curl_socket_t openHttpSocket(void *, curlsocktype, curl_sockaddr *address);
