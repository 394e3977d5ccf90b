// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/web/ArtworkUrls.h"

#include <QCryptographicHash>

ArtworkUrls::ArtworkUrls(int capacity)
    : m_byDigest(capacity)
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
    m_byDigest.insert(
        QCryptographicHash::hash(bytes, QCryptographicHash::Sha256), new QByteArray(bytes));
}

QByteArray ArtworkUrls::find(const QByteArray &hexDigest) const
{
    // fromHex() skips what is no digit, so the length is checked before.
    if (hexDigest.size() != 64)
        return {};
    const QByteArray *url = m_byDigest.object(QByteArray::fromHex(hexDigest));
    return url ? *url : QByteArray();
}
