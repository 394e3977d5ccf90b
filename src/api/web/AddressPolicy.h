// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QStringList>

#include <vector>

#include <sys/socket.h>

/// \file
/// Which addresses the host connects to when a service's response names them, for images and
/// streams. Responses are untrusted, and servers on the machine or in the local network often trust
/// every client that can reach them (server-side request forgery). The policy applies to the
/// address of the connection, not to the host name, so that neither redirects nor DNS rebinding
/// bypass it. Any thread.

/// Where an address is, as seen from this machine.
enum class AddressKind {
    Internet,
    LocalNetwork, ///< Private, shared or on a network of this machine.
    Machine, ///< Loopback, or an address of this machine.
    /// Never connected to: link-local addresses and others of clouds' metadata services, multicast,
    /// broadcast, unspecified and reserved ones.
    Never,
};

/// Which addresses a service may name; each value includes those before it.
enum class AddressReach { Internet, LocalNetwork, Machine };

/// The addresses of this machine's interfaces, with their networks.
class VESK_API OwnAddresses {
public:
    struct Entry {
        sockaddr_storage address;
        int prefix; ///< the network's prefix length in bits; full length: this address alone
    };

    OwnAddresses() = default;
    explicit OwnAddresses(std::vector<Entry> entries);
    /// The current ones, queried from the system without blocking; empty on failure.
    static OwnAddresses present();

    const std::vector<Entry> &entries() const & { return m_entries; }
    const std::vector<Entry> &entries() && = delete; // would dangle

private:
    std::vector<Entry> m_entries;
};

/// The kind of an IPv4 or IPv6 address by the special-purpose address registries (RFC 6890) alone;
/// for an IPv6 address with an embedded IPv4 address, the kind of the latter. Every other family is
/// Never. A pure function.
VESK_API AddressKind addressKind(const sockaddr *address);
/// The same, but Machine for an address in \a own and LocalNetwork for a neighbour on an IPv6
/// network in \a own, because home networks have public IPv6 addresses. A pure function.
VESK_API AddressKind addressKind(const sockaddr *address, const OwnAddresses &own);

namespace AddressPolicy {

VESK_API bool allows(AddressReach reach, AddressKind kind);
/// The reach that services need when \a connectTo, entries of HttpClient::setConnectTo(), redirects
/// them: an administrator who runs a service locally wants its local addresses to be used. Names
/// are judged by their form and not resolved. A pure function.
VESK_API AddressReach ofConnectTo(const QStringList &connectTo);

/// The reach of this process; Machine until setCurrent() is called.
VESK_API AddressReach current();
VESK_API void setCurrent(AddressReach reach);

} // namespace AddressPolicy
