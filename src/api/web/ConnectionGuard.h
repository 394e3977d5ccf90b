// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <curl/curl.h>

/// Applies the AddressPolicy of the process to one libcurl handle: checks each address just before
/// the connection is made, after name resolution and after each redirect. Disables proxies, which
/// would resolve names themselves. Used on the handle's thread; must live as long as the handle
/// uses it.
class VESK_API ConnectionGuard {
public:
    ConnectionGuard() = default;
    ConnectionGuard(const ConnectionGuard &) = delete;
    ConnectionGuard &operator=(const ConnectionGuard &) = delete;

    /// Sets up \a easy; call it after setUpHttpHandle(), which sets another socket function. Resets
    /// hasRefused().
    void guard(CURL *easy);
    /// Whether an address was refused; if so, that is why an exchange failed with
    /// CURLE_COULDNT_CONNECT.
    bool hasRefused() const { return m_refused; }

private:
    static curl_socket_t open(void *self, curlsocktype, curl_sockaddr *address);

    bool m_refused = false;
};

/// The CURLOPT_OPENSOCKETFUNCTION of setUpHttpHandle(): opens close-on-exec sockets, which child
/// processes do not inherit.
VESK_API curl_socket_t openHttpSocket(void *, curlsocktype, curl_sockaddr *address);
