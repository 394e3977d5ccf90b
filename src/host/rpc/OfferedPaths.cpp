// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/OfferedPaths.h"

#include "api/values/CMPath.h"

#include <QCryptographicHash>

namespace {

QByteArray digestOf(const CMPath &path)
{
    return QCryptographicHash::hash(path.toEncoded().toUtf8(), QCryptographicHash::Sha256);
}

} // namespace

OfferedPaths::OfferedPaths(int capacity)
    : m_capacity(capacity)
{
}

void OfferedPaths::add(const CMPath &path)
{
    const QByteArray digest = digestOf(path);
    const auto known = m_byDigest.constFind(digest);
    if (known != m_byDigest.constEnd()) {
        m_digests.splice(m_digests.begin(), m_digests, known.value());
        return;
    }
    m_digests.push_front(digest);
    m_byDigest.insert(digest, m_digests.begin());
    if (m_byDigest.size() > m_capacity) {
        m_byDigest.remove(m_digests.back());
        m_digests.pop_back();
    }
}

bool OfferedPaths::contains(const CMPath &path) const
{
    return m_byDigest.contains(digestOf(path));
}
