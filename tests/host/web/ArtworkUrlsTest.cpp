// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/web/ArtworkUrls.h"

#include <QCryptographicHash>

#include <gmock/gmock.h>

namespace {

QByteArray digestOf(const QByteArray &url)
{
    return QCryptographicHash::hash(url, QCryptographicHash::Sha256).toHex();
}

TEST(ArtworkUrlsTest, FindsAnAddressByItsDigest)
{
    ArtworkUrls urls;
    urls.remember(QStringLiteral("http://example.org/a.png"));
    urls.remember(QStringLiteral("HTTPS://example.org/ü.png"));
    EXPECT_EQ(urls.find(digestOf("http://example.org/a.png")), "http://example.org/a.png");
    EXPECT_EQ(urls.find(digestOf("HTTPS://example.org/\xc3\xbc.png")),
        "HTTPS://example.org/\xc3\xbc.png");
}

TEST(ArtworkUrlsTest, KeepsOnlyHttpAndHttps)
{
    ArtworkUrls urls;
    const QStringList others {QString(), QStringLiteral("icon:radio/local"),
        QStringLiteral("file:///etc/passwd"), QStringLiteral("javascript:alert(1)"),
        QStringLiteral("//example.org/a.png"), QStringLiteral(" http://example.org/a.png")};
    for (const QString &other : others)
        urls.remember(other);
    EXPECT_EQ(urls.size(), 0);
}

TEST(ArtworkUrlsTest, KeepsNoAddressThatIsTooLong)
{
    ArtworkUrls urls;
    const QString longest
        = QStringLiteral("http://e/").leftJustified(ArtworkUrls::MaxLength, QLatin1Char('a'));
    urls.remember(longest);
    urls.remember(longest + QLatin1Char('a'));
    // The limit counts UTF-8 bytes.
    urls.remember(QStringLiteral("http://e/").leftJustified(ArtworkUrls::MaxLength, QChar(0xe4)));
    EXPECT_EQ(urls.size(), 1);
    EXPECT_EQ(urls.find(digestOf(longest.toUtf8())), longest.toUtf8());
}

TEST(ArtworkUrlsTest, ForgetsTheLeastRecentAddress)
{
    ArtworkUrls urls(2);
    urls.remember(QStringLiteral("http://e/1"));
    urls.remember(QStringLiteral("http://e/2"));
    urls.remember(QStringLiteral("http://e/1"));
    urls.remember(QStringLiteral("http://e/3"));
    EXPECT_EQ(urls.size(), 2);
    EXPECT_EQ(urls.find(digestOf("http://e/1")), "http://e/1");
    EXPECT_EQ(urls.find(digestOf("http://e/2")), "");
    EXPECT_EQ(urls.find(digestOf("http://e/3")), "http://e/3");
}

TEST(ArtworkUrlsTest, RefusesOtherFormsOfADigest)
{
    ArtworkUrls urls;
    urls.remember(QStringLiteral("http://e/1"));
    const QByteArray digest = digestOf("http://e/1");
    EXPECT_EQ(urls.find(digest.toUpper()), "http://e/1");
    for (const QByteArray &other : {QByteArray(), digest.left(63), digest + "0", "x" + digest,
             digest.left(32) + "/" + digest.mid(32), QByteArray("http://e/1")})
        EXPECT_EQ(urls.find(other), "") << other.constData();
}

} // namespace
