// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QCache>
#include <QString>

/// The most recent addresses of pictures that services named, by the SHA-256 of the address in
/// UTF-8. No other address is fetched for a client. Main thread.
class ArtworkUrls {
public:
    static constexpr int DefaultCapacity = 20000;
    /// In bytes; longer addresses are not kept.
    static constexpr int MaxLength = 2048;

    explicit ArtworkUrls(int capacity = DefaultCapacity);

    /// Keeps \a url if it is one of http or https.
    void remember(const QString &url);
    /// The address with that digest, in hexadecimal; empty when there is none.
    QByteArray find(const QByteArray &hexDigest) const;
    int size() const { return m_byDigest.count(); }

private:
    QCache<QByteArray, QByteArray> m_byDigest;
};
