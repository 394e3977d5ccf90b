// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/Secrets.h"

#include "api/core/vesk.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <openssl/crypto.h>
#include <openssl/rand.h>

QByteArray randomBytes(int count)
{
    QByteArray bytes(count, '\0');
    VESK_ASSERT(RAND_bytes(reinterpret_cast<unsigned char *>(bytes.data()), bytes.size()) == 1);
    return bytes;
}

QByteArray makeAccessToken()
{
    return randomBytes(32).toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

QByteArray accessTokenDigest(const QByteArray &token)
{
    return QCryptographicHash::hash(token, QCryptographicHash::Sha256);
}

QByteArray makePairingCode()
{
    constexpr quint32 Codes = 1000000;
    // Numbers above the last multiple would make some codes likelier.
    constexpr quint32 Limit = (0xffffffff / Codes) * Codes;
    quint32 number = Limit;
    while (number >= Limit)
        number = qFromLittleEndian<quint32>(randomBytes(sizeof number).constData());
    return QByteArray::number(number % Codes).rightJustified(PairingCodeLength, '0');
}

bool isSameSecret(const QByteArray &a, const QByteArray &b)
{
    return a.size() == b.size()
        && CRYPTO_memcmp(a.constData(), b.constData(), static_cast<std::size_t>(a.size())) == 0;
}
