// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskRowsRoles.h"
#include "api/web/VeskJson.h"
#include "bench/Answers.h"
#include "bench/Latency.h"
#include "bench/Plugin.h"
#include "host/rpc/RpcMethods.h"
#include "tests/support/WorkerThread.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int ScreenRows = 10000;
constexpr int PageRows = 100;

class Client : public MessagePeer {
public:
    void send(const QByteArray &) override { }
};

/// A client of the host's JSON-RPC, with the plug-in in a process of its own. Measurements end with
/// the bytes of the response.
class ScreenReader {
public:
    /// The JSON-RPC response with rows \a first to \a last, inclusive.
    QByteArray read(int first, int last)
    {
        const QByteArray message
            = VeskJson::write(QVariantHash {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
                {QStringLiteral("id"), 1}, {QStringLiteral("method"), QStringLiteral("getRows")},
                {QStringLiteral("params"),
                    QVariantHash {{QStringLiteral("path"),
                                      QStringLiteral("TuneIn:browse/uri/Browse.ashx?id=g2")},
                        {QStringLiteral("roles"), pageRoles()}, {QStringLiteral("first"), first},
                        {QStringLiteral("last"), last}}}});
        QByteArray answer;
        m_rpc.handle(message, {&m_client, &m_client, {}},
            [&answer](const QByteArray &bytes) { answer = bytes; });
        spinUntil([&answer] { return !answer.isEmpty(); });
        return answer;
    }

    /// The number of the HTTP exchange that brought the rows of \a answer, with which their names
    /// begin; 0 unless there are \a count rows.
    static int exchangeOf(const QByteArray &answer, int count)
    {
        VeskError error;
        const VeskRowsRoles rows(
            VeskJson::parse(answer, error).toHash().value(QStringLiteral("result")).toHash());
        const QString title = rows.rows().value(0).toList().value(0).toString();
        return rows.rows().size() == count ? title.section(QLatin1Char(' '), 0, 0).toInt() : 0;
    }

private:
    PluginInProcess m_plugin;
    JsonRpcDispatcher m_rpc;
    RpcMethods m_methods {&m_rpc};
    Client m_client;
};

void readScreenAtOnce(benchmark::State &state)
{
    ScreenReader reader;
    QByteArray answer;
    measureLatency(state, [&] { answer = reader.read(0, ScreenRows - 1); });
    if (ScreenReader::exchangeOf(answer, ScreenRows) == 0)
        state.SkipWithError("the screen is not there");
}

void readScreenByPages(benchmark::State &state)
{
    ScreenReader reader;
    QByteArray first;
    QByteArray last;
    const auto readPages = [&] {
        first = reader.read(0, PageRows - 1);
        for (int row = PageRows; row < ScreenRows; row += PageRows)
            last = reader.read(row, row + PageRows - 1);
    };
    readPages();
    const int before = ScreenReader::exchangeOf(last, PageRows);
    measureLatency(state, readPages);
    const int begun = ScreenReader::exchangeOf(first, PageRows);
    const int ended = ScreenReader::exchangeOf(last, PageRows);
    // All pages of an iteration must come from the same HTTP exchange.
    if (before == 0 || begun == 0 || begun != ended)
        state.SkipWithError("the pages are not of one list");
    state.counters["exchanges"] = double(ended - before) / double(state.iterations());
}

BENCHMARK(readScreenAtOnce)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(readScreenByPages)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
