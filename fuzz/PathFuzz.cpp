// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPath.h"
#include "fuzz/fuzzing.h"

#include <QByteArray>
#include <QList>

#include <sstream>

// The text form of a path, which web pages and links supply: encoding and parsing round-trip.

namespace {

void requireRoundTrip(const CMPath &path)
{
    const QString text = path.toEncoded();
    const CMPath again = CMPath::fromEncoded(text);
    FUZZ_REQUIRE(again == path);
    FUZZ_REQUIRE(again.toEncoded() == text);
    FUZZ_REQUIRE(path.startsWith(again));
    std::ostringstream out;
    out << path;
    FUZZ_REQUIRE(!out.str().empty());
}

/// A path from the lines of the input: prefix, base, then keys and values.
CMPath pathOf(const QByteArray &bytes)
{
    const QList<QByteArray> pieces = bytes.split('\n');
    CMPath path(QString::fromUtf8(pieces.value(0)), QString::fromUtf8(pieces.value(1)));
    for (int i = 2; i + 1 < pieces.size(); i += 2)
        path.addParam(QString::fromUtf8(pieces.at(i)), QString::fromUtf8(pieces.at(i + 1)));
    return path;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const CMPath read = CMPath::fromEncoded(QString::fromUtf8(bytes));
    if (!read.isEmpty())
        requireRoundTrip(read);
    // The text form of a longer path may exceed the limit of fromEncoded().
    const CMPath made = pathOf(bytes);
    if (!made.isEmpty() && size < 4096)
        requireRoundTrip(made);
    return 0;
}
