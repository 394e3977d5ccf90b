// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/web/ArtworkUrls.h"

#include <QCryptographicHash>

ArtworkUrls::ArtworkUrls(int capacity)
    : m_capacity(capacity)
{
}

void ArtworkUrls::remember(const QString &url)
{
    if (url.size() > MaxLength
        || !(url.startsWith(QLatin1String("http://"), Qt::CaseInsensitive)
            || url.startsWith(QLatin1String("https://"), Qt::CaseInsensitive)))
        return;
    const QByteArray bytes = url.toUtf8();
    if (bytes.size() > MaxLength)
        return;
    const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
    const auto known = m_byDigest.constFind(digest);
    if (known != m_byDigest.constEnd()) {
        m_entries.splice(m_entries.begin(), m_entries, known.value());
        return;
    }
    m_entries.push_front({digest, bytes});
    m_byDigest.insert(digest, m_entries.begin());
    if (m_byDigest.size() > m_capacity) {
        m_byDigest.remove(m_entries.back().digest);
        m_entries.pop_back();
    }
}

QByteArray ArtworkUrls::find(const QByteArray &hexDigest) const
{
    // fromHex() skips what is no digit, so the length is checked before.
    if (hexDigest.size() != 64)
        return {};
    const auto entry = m_byDigest.constFind(QByteArray::fromHex(hexDigest));
    return entry == m_byDigest.constEnd() ? QByteArray() : entry.value()->url;
}
