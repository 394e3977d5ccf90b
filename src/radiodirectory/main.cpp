// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "radiodirectory/RadioDirectory.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <glib-unix.h>
#include <libsoup/soup.h>
#include <stdexcept>

namespace {

using radiodirectory::Answer;
using radiodirectory::RadioDirectory;

constexpr int BadArguments = 2;

struct Options {
    unsigned port = 0;
    std::string data;
    std::string streams = "http://127.0.0.1:8074";
    std::size_t stations = 0;
    std::string requestLog;
};

struct Server {
    RadioDirectory directory;
    std::ofstream log;
};

int complain(const char *message)
{
    std::fprintf(stderr, "radiobrowser-directory: %s\n", message);
    return BadArguments;
}

std::string defaultDataFile()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / "share/vesk/radiobrowser-stations.json").string();
}

void onRequest(
    SoupServer *, SoupServerMessage *message, const char *path, GHashTable *items, gpointer data)
{
    auto *const server = static_cast<Server *>(data);
    const char *const query = g_uri_get_query(soup_server_message_get_uri(message));
    if (server->log.is_open()) {
        server->log << soup_server_message_get_method(message) << ' ' << path << (query ? "?" : "")
                    << (query ? query : "") << std::endl;
    }
    radiodirectory::Query parameters;
    const auto add = [](gpointer name, gpointer value, gpointer into) {
        (*static_cast<radiodirectory::Query *>(into))[static_cast<char *>(name)]
            = static_cast<char *>(value);
    };
    if (items)
        g_hash_table_foreach(items, add, &parameters);
    const Answer answer = server->directory.answer(path, parameters);
    const std::string body = answer.body.dump();
    soup_server_message_set_status(message, answer.status, nullptr);
    soup_server_message_set_response(
        message, "application/json", SOUP_MEMORY_COPY, body.data(), body.size());
}

gboolean quit(gpointer loop)
{
    g_main_loop_quit(static_cast<GMainLoop *>(loop));
    return G_SOURCE_CONTINUE;
}

/// This machine's own programs alone reach it.
void serve(const Options &options)
{
    Server server {{options.data, options.streams}, {}};
    if (options.stations > 0)
        server.directory.invent(options.stations);
    if (!options.requestLog.empty()) {
        server.log.open(options.requestLog, std::ios::app);
        if (!server.log)
            throw std::runtime_error(options.requestLog + ": cannot be written");
    }
    const std::unique_ptr<SoupServer, decltype(&g_object_unref)> soup(
        soup_server_new(nullptr, nullptr), g_object_unref);
    soup_server_add_handler(soup.get(), nullptr, onRequest, &server, nullptr);
    GError *error = nullptr;
    if (!soup_server_listen_local(soup.get(), options.port, SOUP_SERVER_LISTEN_IPV4_ONLY, &error)) {
        const std::string text = error->message;
        g_error_free(error);
        throw std::runtime_error(text);
    }
    const std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> loop(
        g_main_loop_new(nullptr, FALSE), g_main_loop_unref);
    g_unix_signal_add(SIGTERM, quit, loop.get());
    g_unix_signal_add(SIGINT, quit, loop.get());

    GSList *const addresses = soup_server_get_uris(soup.get());
    std::printf("radiobrowser-directory: ready at http://127.0.0.1:%d/\n",
        g_uri_get_port(static_cast<GUri *>(addresses->data)));
    std::fflush(stdout);
    g_slist_free_full(addresses, [](gpointer uri) { g_uri_unref(static_cast<GUri *>(uri)); });
    g_main_loop_run(loop.get());
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    options.data = defaultDataFile();
    CLI::App app("A local server that speaks Radio Browser's web API.", "radiobrowser-directory");
    app.add_option("--port", options.port, "where to serve HTTP on 127.0.0.1; 0 picks a free one")
        ->check(CLI::Range(0, 65535));
    app.add_option("--data", options.data, "its stations, JSON with the API's fields");
    app.add_option("--streams", options.streams, "where addresses are that begin with \"/\"");
    app.add_option("--stations", options.stations, "invent so many stations instead")
        ->check(CLI::Range(1, 1000000));
    app.add_option("--request-log", options.requestLog, "append a line per request");
    try {
        app.parse(argc, argv);
        serve(options);
        return 0;
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : BadArguments;
    } catch (const std::exception &error) {
        return complain(error.what());
    }
}
