// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/HttpClient.h"

#include "api/web/HttpSettings.h"
#include "api/web/private/HttpClientEngine.h"

#include <QFile>

#include <algorithm>
#include <limits>
#include <ostream>

namespace {

/// Certificate files are a few kilobytes; the system's whole collection is 200.
constexpr qint64 MaxCaFileBytes = qint64(4) * 1024 * 1024;

/// Whether \a der is one ASN.1 sequence and nothing else, as every certificate is.
bool isSequence(const QByteArray &der)
{
    const auto byte = [&der](int i) { return int(static_cast<uchar>(der.at(i))); };
    if (der.size() < 4 || byte(0) != 0x30)
        return false;
    if (byte(1) < 0x80)
        return der.size() == 2 + byte(1);
    const int lengthBytes = byte(1) & 0x7F;
    if (lengthBytes < 1 || lengthBytes > 3 || der.size() < 2 + lengthBytes)
        return false;
    int length = 0;
    for (int i = 0; i < lengthBytes; ++i)
        length = length << 8 | byte(2 + i);
    return der.size() == 2 + lengthBytes + length;
}

/// The certificates in \a pem, without other blocks and text.
QByteArray certificatesIn(const QByteArray &pem)
{
    static const QByteArray begin = QByteArrayLiteral("-----BEGIN CERTIFICATE-----");
    static const QByteArray end = QByteArrayLiteral("-----END CERTIFICATE-----");
    QByteArray certificates;
    for (int from = pem.indexOf(begin); from >= 0; from = pem.indexOf(begin, from + 1)) {
        const int to = pem.indexOf(end, from);
        if (to < 0)
            break;
        QByteArray base64 = pem.mid(from + begin.size(), to - from - begin.size());
        base64 = base64.simplified().replace(' ', QByteArray());
        const auto decoded
            = QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
        if (decoded && isSequence(*decoded))
            certificates += pem.mid(from, to - from) + end + '\n';
    }
    return certificates;
}

} // namespace

std::ostream &operator<<(std::ostream &out, HttpClientStatus status)
{
    static constexpr const char *Names[]
        = {"Success", "InvalidRequest", "ResolveFailed", "ConnectFailed", "TimedOut", "TooLarge",
            "TlsFailed", "TooManyRedirects", "Broken", "Cancelled"};
    const auto index = static_cast<std::size_t>(status);
    if (index < std::size(Names))
        return out << Names[index];
    return out << static_cast<int>(status);
}

HttpClient::HttpClient(QObject *parent, HttpVersion version, bool followRedirects)
    : QObject(parent)
    , m_engine(std::make_unique<HttpClientEngine>(this, version, followRedirects))
{
}

HttpClient::~HttpClient()
{
    m_engine->close();
}

void HttpClient::setCacheSize(unsigned long bytes)
{
    constexpr unsigned long Most = std::numeric_limits<int>::max();
    m_engine->setCacheSize(static_cast<qint64>(std::min(bytes, Most)));
}

void HttpClient::get(const VeskUrl &url, const HttpClientOptions &options, Function done)
{
    m_engine->get(url, options, std::move(done));
}

void HttpClient::post(
    const VeskUrl &url, const QByteArray &body, const HttpClientOptions &options, Function done)
{
    m_engine->post(url, body, options, std::move(done));
}

void HttpClient::setConnectTo(const QStringList &entries)
{
    HttpSettings::setConnectTo(entries);
}

bool HttpClient::setCaFile(const QString &file)
{
    QByteArray certificates;
    if (!file.isEmpty()) {
        QFile pem(file);
        if (!pem.open(QIODevice::ReadOnly))
            return false;
        certificates = certificatesIn(pem.read(MaxCaFileBytes));
        if (certificates.isEmpty())
            return false;
    }
    HttpSettings::setCertificates(certificates);
    return true;
}

void HttpClient::abandonReading(bool abandon)
{
    HttpClientEngine::abandonReading(abandon);
}

void HttpClient::setActivityListener(std::function<void()> listener)
{
    HttpClientEngine::setActivityListener(std::move(listener));
}

void HttpClient::setExchangeListener(ExchangeListener listener)
{
    HttpClientEngine::setExchangeListener(std::move(listener));
}

void HttpClient::shutDownAll()
{
    HttpClientEngine::shutDownAll();
}
