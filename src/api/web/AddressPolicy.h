// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QStringList>

#include <vector>

#include <sys/socket.h>

/// \file
/// Which addresses the host connects to when a service names them: pictures, streams. A service's
/// answers are foreign text, and what answers inside the machine or the local network often trusts
/// everybody who reaches it. Judged is the address that a connection goes to, not the name that
/// stands for it, so that neither a redirect nor a name that changes its address leads inside.
/// Any thread.

/// Where an address lies, seen from this machine.
enum class AddressKind {
    Internet,
    LocalNetwork, ///< Private, shared or on a network that the machine is in.
    Machine, ///< Loopback, or one of the machine's own.
    /// Nobody streams from there: link-local ones, where clouds keep their machines' secrets, the
    /// other addresses known for that, multicast, broadcast, unspecified, reserved.
    Never,
};

/// How far inside a service may lead; each includes the one before.
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
    /// As they are now; asks the system, without waiting.
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
/// How far inside the addresses are that \a connectTo, entries of HttpClient::setConnectTo(), leads
/// services to: whoever runs a service there trusts it so far. A name counts by its form: nothing
/// is resolved. A pure function.
VESK_API AddressReach ofConnectTo(const QStringList &connectTo);

/// What holds in this process: everything but Never until it is set.
VESK_API AddressReach current();
VESK_API void setCurrent(AddressReach reach);

} // namespace AddressPolicy
