// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/ConnectionGuard.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/web/AddressPolicy.h"

#include <sys/socket.h>

VESK_LOGGER("Vesk.Http")

namespace {

bool isAllowed(const sockaddr *address)
{
    const AddressReach reach = AddressPolicy::current();
    // With reach Machine the machine's own addresses make no difference: do not ask the system for
    // them.
    const AddressKind kind = reach == AddressReach::Machine
        ? addressKind(address)
        : addressKind(address, OwnAddresses::present());
    return AddressPolicy::allows(reach, kind);
}

} // namespace

void ConnectionGuard::guard(CURL *easy)
{
    m_refused = false;
    const auto set = [easy](CURLoption option, auto value) {
        VESK_ASSERT(curl_easy_setopt(easy, option, value) == CURLE_OK);
    };
    set(CURLOPT_OPENSOCKETFUNCTION, &ConnectionGuard::open);
    set(CURLOPT_OPENSOCKETDATA, static_cast<void *>(this));
    set(CURLOPT_NOPROXY, "*");
}

curl_socket_t ConnectionGuard::open(void *self, curlsocktype purpose, curl_sockaddr *address)
{
    if (isAllowed(&address->addr))
        return openHttpSocket(nullptr, purpose, address);
    VESK_DEBUG("not connected: the address is not for services to name");
    static_cast<ConnectionGuard *>(self)->m_refused = true;
    return CURL_SOCKET_BAD;
}

curl_socket_t openHttpSocket(void *, curlsocktype, curl_sockaddr *address)
{
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}
