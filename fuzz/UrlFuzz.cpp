// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskUrl.h"
#include "fuzz/fuzzing.h"

#include <QByteArray>

#include <sstream>

// Links in responses and URLs of streams: changing one component leaves the others unchanged.

namespace {

/// The components of a URL as its accessors return them.
struct Parts {
    explicit Parts(const VeskUrl &url)
        : scheme(url.scheme())
        , authority(url.authority())
        , path(url.path())
        , items(url.queryItems())
    {
    }
    bool operator==(const Parts &other) const
    {
        return scheme == other.scheme && authority == other.authority && path == other.path
            && items == other.items;
    }

    QString scheme;
    QString authority;
    QString path;
    VeskUrl::QueryItems items;
};

void requireSound(const VeskUrl &url)
{
    const QByteArray encoded = url.toEncoded();
    for (const char c : encoded)
        FUZZ_REQUIRE(c > 0x20 && c < 0x7F);
    FUZZ_REQUIRE(VeskUrl::fromEncoded(encoded) == url);
    FUZZ_REQUIRE(Parts(VeskUrl(url.toString())) == Parts(url));
    FUZZ_REQUIRE(url.authority().contains(url.host()));
    std::ostringstream out;
    out << url;
    FUZZ_REQUIRE(out.str().empty() == url.isEmpty());
}

void addItem(VeskUrl url, const QString &key, const QString &value)
{
    const Parts before(url);
    url.addQueryItem(key, value);
    requireSound(url);
    const Parts after(url);
    FUZZ_REQUIRE(after.items.size() == before.items.size() + 1);
    FUZZ_REQUIRE(after.items.last() == qMakePair(key, value));
    FUZZ_REQUIRE(after.items.mid(0, before.items.size()) == before.items);
    FUZZ_REQUIRE(after.path == before.path && after.authority == before.authority);
    FUZZ_REQUIRE(url.hasQueryItem(key));
    url.removeQueryItem(key);
    requireSound(url);
    FUZZ_REQUIRE(url.queryItems().size() == before.items.size());
}

void setParts(VeskUrl url, const QString &text)
{
    const Parts before(url);
    url.setPath(text);
    requireSound(url);
    FUZZ_REQUIRE(url.path() == text || url.path() == QLatin1Char('/') + text);
    FUZZ_REQUIRE(url.queryItems() == before.items && url.authority() == before.authority);
    url.setScheme(QStringLiteral("https"));
    requireSound(url);
    url.setScheme(QString());
    requireSound(url);
    FUZZ_REQUIRE(url.scheme().isEmpty() && url.queryItems() == before.items);
    url.setQueryItems({{text, text}, {QString(), QString()}});
    requireSound(url);
    FUZZ_REQUIRE(url.queryItemValue(text) == text && url.queryItems().size() == 2);
    url.setQueryItems(before.items);
    FUZZ_REQUIRE(url.queryItems() == before.items);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    requireSound(VeskUrl::fromEncoded(bytes));
    const QList<QByteArray> pieces = bytes.split('\n');
    const VeskUrl url(QString::fromUtf8(pieces.value(0)));
    requireSound(url);
    addItem(url, QString::fromUtf8(pieces.value(1)), QString::fromUtf8(pieces.value(2)));
    setParts(url, QString::fromUtf8(pieces.value(1)));
    return 0;
}
