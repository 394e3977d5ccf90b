// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/RunningServer.h"

#include "directory/HttpServer.h"
#include "tests/directory/Fetch.h"
#include "tests/directory/TestDirectory.h"

#include <future>

namespace directory::test {

class Ready {
public:
    std::promise<void> promise;
};

RunningServer::RunningServer(std::string requestLog, unsigned idleSeconds)
    : m_context(g_main_context_new())
    , m_loop(g_main_loop_new(m_context, FALSE))
{
    Ready ready;
    std::future<void> started = ready.promise.get_future();
    m_thread = std::thread([&, requestLog] { run(requestLog, idleSeconds, ready); });
    try {
        started.get();
    } catch (...) {
        m_thread.join();
        throw;
    }
}

RunningServer::~RunningServer()
{
    g_main_context_invoke(
        m_context,
        [](gpointer loop) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop *>(loop));
            return G_SOURCE_REMOVE;
        },
        m_loop);
    m_thread.join();
    g_main_loop_unref(m_loop);
    g_main_context_unref(m_context);
}

void RunningServer::run(const std::string &requestLog, unsigned idleSeconds, Ready &ready)
{
    g_main_context_push_thread_default(m_context);
    try {
        Directory directory(shippedCatalog(), [] { return MondayMorning; });
        Faults faults;
        std::unique_ptr<RequestLog> log;
        if (!requestLog.empty())
            log = std::make_unique<RequestLog>(requestLog);
        HttpServer server(directory, faults, log.get(), idleSeconds);
        m_address = server.listen("127.0.0.1:0");
        m_secureAddress = server.listenTls("127.0.0.1:0", TEST_CERTIFICATE, TEST_KEY);
        ready.promise.set_value();
        g_main_loop_run(m_loop);
    } catch (...) {
        ready.promise.set_exception(std::current_exception());
    }
    // The destroyed server leaves pending sources, such as the closing of idle connections.
    while (g_main_context_iteration(m_context, FALSE)) { }
    g_main_context_pop_thread_default(m_context);
}

int RunningServer::port() const
{
    return parseNumber(m_address.substr(m_address.rfind(':') + 1));
}

int RunningServer::securePort() const
{
    return parseNumber(m_secureAddress.substr(m_secureAddress.rfind(':') + 1));
}

void RunningServer::fail(const std::string &fault) const
{
    FetchOptions options;
    options.method = "POST";
    options.body = fault;
    const Fetched answer = fetch(url("/_faults"), options);
    ASSERT_EQ(answer.status, 200) << answer.body;
}

} // namespace directory::test
