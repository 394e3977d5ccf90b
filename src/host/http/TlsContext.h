// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "host/http/TlsIdentity.h"

#include <QString>

#include <memory>

struct ssl_ctx_st;

struct FreeTlsContext {
    void operator()(ssl_ctx_st *context) const;
};
using TlsContext = std::unique_ptr<ssl_ctx_st, FreeTlsContext>;

/// What a server needs for TLS with its clients: version 1.2 with forward secrecy and authenticated
/// encryption, or 1.3; HTTP/1.1 by ALPN (RFC 7301). Says why \a identity cannot be used.
Result<TlsContext, QString> makeTlsContext(const TlsIdentity &identity);
