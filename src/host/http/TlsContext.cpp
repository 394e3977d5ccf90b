// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/TlsContext.h"

#include "host/http/OpenSslHandles.h"

#include <algorithm>
#include <openssl/err.h>
#include <openssl/ssl.h>

namespace {

/// Of TLS 1.2; those of 1.3 are all good ones.
constexpr char Ciphers[] = "ECDHE+AESGCM:ECDHE+CHACHA20";
constexpr unsigned char Http11[] = {8, 'h', 't', 't', 'p', '/', '1', '.', '1'};

QString lastError()
{
    char words[256];
    ERR_error_string_n(ERR_get_error(), words, sizeof words);
    return QString::fromUtf8(words);
}

bool useIdentity(SSL_CTX *context, const TlsIdentity &identity)
{
    const std::vector<X509Handle> certificates = certificatesIn(identity.certificates);
    const PrivateKey key = privateKeyIn(identity.key);
    if (certificates.empty() || !key.key
        || SSL_CTX_use_certificate(context, certificates.front().get()) != 1)
        return false;
    const bool areAdded = std::all_of(certificates.begin() + 1, certificates.end(),
        [&](const X509Handle &next) { return SSL_CTX_add1_chain_cert(context, next.get()) == 1; });
    return areAdded && SSL_CTX_use_PrivateKey(context, key.key.get()) == 1
        && SSL_CTX_check_private_key(context) == 1;
}

/// Clients that speak something else only are refused (RFC 7301, section 3.2).
int chooseProtocol(SSL *, const unsigned char **chosen, unsigned char *chosenSize,
    const unsigned char *offered, unsigned int offeredSize, void *)
{
    unsigned char *found = nullptr;
    if (SSL_select_next_proto(&found, chosenSize, Http11, sizeof Http11, offered, offeredSize)
        != OPENSSL_NPN_NEGOTIATED)
        return SSL_TLSEXT_ERR_ALERT_FATAL;
    *chosen = found;
    return SSL_TLSEXT_ERR_OK;
}

} // namespace

void FreeTlsContext::operator()(ssl_ctx_st *context) const
{
    SSL_CTX_free(context);
}

Result<TlsContext, QString> makeTlsContext(const TlsIdentity &identity)
{
    TlsContext context(SSL_CTX_new(TLS_server_method()));
    if (!context)
        return failure(lastError());
    SSL_CTX *const made = context.get();
    SSL_CTX_set_min_proto_version(made, TLS1_2_VERSION);
    SSL_CTX_set_options(made,
        SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION | SSL_OP_CIPHER_SERVER_PREFERENCE
            | SSL_OP_IGNORE_UNEXPECTED_EOF);
    SSL_CTX_set_mode(made,
        SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER
            | SSL_MODE_RELEASE_BUFFERS);
    // Sessions are resumed by tickets, which the client keeps; one is enough.
    SSL_CTX_set_session_cache_mode(made, SSL_SESS_CACHE_OFF);
    SSL_CTX_set_num_tickets(made, 1);
    SSL_CTX_set_alpn_select_cb(made, &chooseProtocol, nullptr);
    if (SSL_CTX_set_cipher_list(made, Ciphers) != 1 || !useIdentity(made, identity))
        return failure(lastError());
    return context;
}
