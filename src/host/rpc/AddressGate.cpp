// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/AddressGate.h"

#include "api/core/ThreadCheck.h"
#include "api/core/TrString.h"
#include "api/core/log.h"
#include "api/values/VeskRoles.h"
#include "api/values/variants.h"

#include <algorithm>

VESK_LOGGER("Host.Rpc")

namespace {

constexpr int MostOffered = 20000;

/// Roles that hold another screen's roles.
bool holdsRoles(const QString &role)
{
    return role == VeskRoles::Context() || role == VeskRoles::Search();
}

} // namespace

AddressGate::AddressGate(QObject *parent)
    : QObject(parent)
    , m_toAnyone(MostOffered)
{
}

AddressGate::~AddressGate() = default;

void AddressGate::declare(const CMPath &root, const QVector<ChangingAddresses> &changing)
{
    VESK_ASSERT_OWN_THREAD();
    if (!changing.isEmpty())
        m_declared.append({root, changing});
}

bool AddressGate::isChanging(const CMPath &path) const
{
    return std::any_of(m_declared.begin(), m_declared.end(), [&path](const Declaration &each) {
        return changesSomething(each.changing, each.root, path);
    });
}

bool AddressGate::mayOpen(const CMPath &path, const MessagePeer *peer) const
{
    VESK_ASSERT_OWN_THREAD();
    if (!isChanging(path))
        return true;
    const auto own = m_toPeers.find(peer);
    const bool isOffered
        = peer ? own != m_toPeers.end() && own->second.contains(path) : m_toAnyone.contains(path);
    if (!isOffered)
        VESK_WARN("not opened, because no list offered it: " << path);
    return isOffered;
}

JsonRpcError AddressGate::refusal()
{
    static const TrString message("Host",
        QT_TRANSLATE_NOOP("Host",
            "This address changes something. It can only be opened from a list that offers it."));
    return {JsonRpcError::NotOffered, message.toString(),
        {{QStringLiteral("name"), QStringLiteral("notOffered")}}};
}

void AddressGate::offerRows(const QStringList &roles, const QVariantList &rows, MessagePeer *peer)
{
    VESK_ASSERT_OWN_THREAD();
    const int path = roles.indexOf(VeskRoles::Path());
    for (const QVariant &row : rows) {
        const QVariantList values = veskListIn(row);
        if (path >= 0)
            offer(CMPath::fromVariant(values.value(path)), peer);
        offerData(roles, values, peer);
    }
}

void AddressGate::offerData(const QStringList &roles, const QVariantList &values, MessagePeer *peer)
{
    VESK_ASSERT_OWN_THREAD();
    for (int i = 0; i < roles.size() && i < values.size(); ++i)
        offerValue(roles.at(i), values.at(i), peer);
}

void AddressGate::offerValue(const QString &role, const QVariant &value, MessagePeer *peer)
{
    if (role == VeskRoles::QueryPath())
        offer(CMPath::fromVariant(value), peer);
    else if (holdsRoles(role))
        offer(CMPath::fromVariant(value.toHash().value(VeskRoles::Path())), peer);
}

void AddressGate::offer(const CMPath &path, MessagePeer *peer)
{
    if (!isChanging(path))
        return;
    m_toAnyone.add(path);
    if (!peer)
        return;
    auto own = m_toPeers.find(peer);
    if (own == m_toPeers.end()) {
        own = m_toPeers.try_emplace(peer).first;
        connect(peer, &QObject::destroyed, this, [this, peer] { m_toPeers.erase(peer); });
    }
    own->second.add(path);
}
