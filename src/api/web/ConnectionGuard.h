// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <curl/curl.h>

/// Holds the exchanges of one libcurl handle to the AddressPolicy of the process, each address just
/// before it is connected to: whatever a name resolved to, and after each redirect. Does without
/// proxies, which resolve names where nobody judges the addresses. Lives on the handle's thread
/// and as long as the handle uses it.
class VESK_API ConnectionGuard {
public:
    ConnectionGuard() = default;
    ConnectionGuard(const ConnectionGuard &) = delete;
    ConnectionGuard &operator=(const ConnectionGuard &) = delete;

    /// Sets \a easy up, after setUpHttpHandle(). Forgets what was refused.
    void guard(CURL *easy);
    /// Whether an address was refused; an exchange that failed without another reason
    /// (CURLE_COULDNT_CONNECT) failed for that one.
    bool hasRefused() const { return m_refused; }

private:
    static curl_socket_t open(void *self, curlsocktype, curl_sockaddr *address);

    bool m_refused = false;
};

/// The function of setUpHttpHandle() for sockets: not for the programs that the process starts.
VESK_API curl_socket_t openHttpSocket(void *, curlsocktype, curl_sockaddr *address);
