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
    : m_digests(capacity)
{
}

void OfferedPaths::add(const CMPath &path)
{
    m_digests.insert(digestOf(path), new Nothing);
}

bool OfferedPaths::contains(const CMPath &path) const
{
    return m_digests.contains(digestOf(path));
}
