// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "plugin/supervision/PluginDescriptor.h"
#include "tests/modules/tunein/SentPage.h"

#include <cstdlib>

// Addresses that links lead to: none that makes the plug-in ask for a page that changes or reports
// something may pass for one that reads. Then descriptors, which are files of others.

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QStringList pages {
        QStringLiteral("preset"), QStringLiteral("report"), QStringLiteral("account")};
    static const CMPath root = CMPath::fromEncoded(QStringLiteral("TuneIn:"));
    static const PluginDescriptor descriptor = [] {
        QString error;
        const PluginDescriptor read
            = PluginDescriptor::read(QStringLiteral(TUNEIN_DESCRIPTOR), error);
        FUZZ_REQUIRE(!read.changing.isEmpty());
        return read;
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
    QString error;
    const PluginDescriptor made = PluginDescriptor::fromJson(bytes, error);
    FUZZ_REQUIRE(error.isEmpty() || made.changing.isEmpty());
    changesSomething(made.changing, root, CMPath::fromEncoded(text));
    return 0;
}
