// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "plugin/supervision/PluginDescriptor.h"
#include "tests/modules/tunein/SentPage.h"

#include <cstdlib>

// Paths that links lead to: a path that makes the plug-in request a page that changes or reports
// something must not be taken for one that only reads. Then plug-in descriptors, which are
// third-party files.

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QStringList pages {
        QStringLiteral("preset"), QStringLiteral("report"), QStringLiteral("account")};
    static const CMPath root = CMPath::fromEncoded(QStringLiteral("TuneIn:"));
    static const PluginDescriptor descriptor = [] {
        const auto read = PluginDescriptor::read(QStringLiteral(TUNEIN_DESCRIPTOR));
        FUZZ_REQUIRE(read && !read->changing.isEmpty());
        return *read;
    }();

    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QString text = QString::fromUtf8(bytes);
    for (const CMPath &path : {CMPath::fromEncoded(QStringLiteral("TuneIn:browse") + text),
             CMPath(QStringLiteral("TuneIn"), QStringLiteral("browse/uri/") + text)}) {
        const bool changes = changesSomething(descriptor.changing, root, path);
        if (path.startsWith(CMPath(QStringLiteral("TuneIn"), QStringLiteral("browse")))
            && mayBeOneOf(path, pages))
            FUZZ_REQUIRE(changes);
    }
    if (const auto made = PluginDescriptor::fromJson(bytes))
        changesSomething(made->changing, root, CMPath::fromEncoded(text));
    return 0;
}
