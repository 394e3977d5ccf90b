// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/VeskJson.h"
#include "fuzz/fuzzing.h"
#include "modules/tunein/TuneInBrowseNode.h"
#include "modules/tunein/cb_tunein.h"

#include <QCoreApplication>

#include <log4cplus/initializer.h>
#include <log4cplus/nullappender.h>

#include <memory>

// A directory's response converted to rows, as the root, as any screen, by navigation, as the
// choice of a stream and as the test search: each row has one value per role.

namespace {

class Plugin {
public:
    Plugin()
        : m_application(m_argc, m_argv)
    {
        // Formats every log record, and writes none.
        log4cplus::Logger::getRoot().addAppender(
            log4cplus::SharedAppenderPtr(new log4cplus::NullAppender));
        log4cplus::Logger::getRoot().setLogLevel(log4cplus::TRACE_LOG_LEVEL);
        m_root.addWorker(QStringLiteral("settings"), &m_values);
        m_values.define(VeskChildElementsInSingleListPath(), VeskValue::fromBool(true));
        QVariantHash config;
        m_worker.reset(static_cast<CMTuneInWorker *>(worker_create("fuzz", &config)));
    }

    TuneInBrowseNode *node() const
    {
        return static_cast<TuneInBrowseNode *>(
            m_worker->nodes()->find(CMPath::fromEncoded(QStringLiteral("TuneIn:browse"))));
    }

private:
    int m_argc = 1;
    char m_name[5] = "fuzz";
    char *m_argv[2] = {m_name, nullptr};
    log4cplus::Initializer m_logging;
    QCoreApplication m_application;
    CMRootWorker m_root;
    CMValuesWorker m_values;
    std::unique_ptr<CMTuneInWorker> m_worker;
};

/// Section keys with "_" or "~" fail an assertion by design.
bool hasForbiddenKey(const VeskList<VeskTuneInBodyElement> &elements)
{
    return elements.contains([](const VeskTuneInBodyElement &element) {
        return element.key().contains(QLatin1Char('_')) || element.key().contains(QLatin1Char('~'))
            || hasForbiddenKey(element.children());
    });
}

void fill(
    TuneInBrowseNode *node, const QByteArray &data, const char *screen, const char *navigation)
{
    const auto answer = std::make_shared<CMReplyData<QVariant>>();
    const CMGetRowsRequest request(CMPath::fromEncoded(QString::fromLatin1(screen)),
        VeskRoles::all(), 0, 99, CMReply<QVariant>(answer));
    const QVariantList rows = node->parseData(request, data,
        VeskUrl(QStringLiteral("http://opml.radiotime.com/Browse.ashx?c=x")),
        QString::fromLatin1(navigation));
    FUZZ_REQUIRE(answer->error().isEmpty() || rows.isEmpty());
    for (const QVariant &row : rows)
        FUZZ_REQUIRE(row.toList().size() == VeskRoles::all().size());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const Plugin plugin;
    const QByteArray json(reinterpret_cast<const char *>(data), static_cast<int>(size));
    VeskError error;
    if (hasForbiddenKey(VeskTuneInResponse(VeskJson::parse(json, error).toHash()).body()))
        return 0;
    TuneInBrowseNode *const node = plugin.node();
    fill(node, json, "TuneIn:browse", "");
    fill(node, json, "TuneIn:browse/uri/Browse.ashx?c=x", "");
    fill(node, json, "TuneIn:browse/uri/Browse.ashx?c=x", "~0_stations");
    fill(node, json,
        "TuneIn:browse?c=ebrowse&guideId=s1&veskMatchingPath=TuneIn%3Abrowse&veskTuneInMethod=tune",
        "");
    fill(node, json, "TuneIn:browse/uri/Search.ashx?query=aa2", "");
    return 0;
}
