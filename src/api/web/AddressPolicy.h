// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QStringList>

#include <vector>

#include <sys/socket.h>

/// \file
/// Which addresses the host connects to when a service names them: pictures, streams. A service's
/// answers are untrusted, and servers on the machine or in the local network often trust every
/// client that reaches them (server-side request forgery). The policy applies to the address of the
/// connection, not to the host's name, so that neither a redirect nor a name that changes its
/// address (DNS rebinding) gets around it. Any thread.

/// Where an address lies, seen from this machine.
enum class AddressKind {
    Internet,
    LocalNetwork, ///< Private, shared or on a network that the machine is in.
    Machine, ///< Loopback, or one of the machine's own.
    /// Never used for streams: link-local addresses and others with a cloud's metadata service,
    /// multicast, broadcast, unspecified, reserved.
    Never,
};

/// Which addresses a service may name; each includes the ones before.
enum class AddressReach { Internet, LocalNetwork, Machine };

/// The addresses of this machine's interfaces, with their networks.
class VESK_API OwnAddresses {
public:
    struct Entry {
        sockaddr_storage address;
        int prefix; ///< bits of the network; all of them: the address alone
    };

    OwnAddresses() = default;
    explicit OwnAddresses(std::vector<Entry> entries);
    /// As they are now; asks the system, without blocking.
    static OwnAddresses present();

    const std::vector<Entry> &entries() const & { return m_entries; }
    const std::vector<Entry> &entries() && = delete; // which would not outlive the expression

private:
    std::vector<Entry> m_entries;
};

/// By the registries of special addresses (RFC 6890) alone, for IPv4 and IPv6; the IPv4 address
/// inside an IPv6 one counts. Every other family is Never. A pure function.
VESK_API AddressKind addressKind(const sockaddr *address);
/// The same, and Machine for one of \a own, LocalNetwork for a neighbour on an IPv6 network of
/// \a own: homes have public addresses there. A pure function.
VESK_API AddressKind addressKind(const sockaddr *address, const OwnAddresses &own);

namespace AddressPolicy {

VESK_API bool allows(AddressReach reach, AddressKind kind);
/// The reach that services need which \a connectTo, entries of HttpClient::setConnectTo(),
/// redirects: an administrator who runs a service inside wants its addresses used. Names count by
/// their form, nothing is resolved. A pure function.
VESK_API AddressReach ofConnectTo(const QStringList &connectTo);

/// The policy of this process; until it is set, everything but Never.
VESK_API AddressReach current();
VESK_API void setCurrent(AddressReach reach);

} // namespace AddressPolicy
