// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/CatalogLoader.h"
#include "directory/HttpServer.h"
#include "directory/Options.h"

#include <csignal>
#include <cstdio>
#include <ctime>
#include <glib-unix.h>
#include <stdexcept>

namespace {

using namespace directory;

constexpr int InUse = 1;
constexpr int BadArguments = 2;

int complain(const std::string &message)
{
    std::fprintf(stderr, "tunein-directory: %s\n", message.c_str());
    return BadArguments;
}

gboolean quit(gpointer loop)
{
    g_main_loop_quit(static_cast<GMainLoop *>(loop));
    return G_SOURCE_CONTINUE;
}

/// Blocks or unblocks SIGTERM and SIGINT.
void maskSignals(int how)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    ::pthread_sigmask(how, &signals, nullptr);
}

/// Returns the program's status.
int serve(const Options &options, Catalog catalog)
{
    std::unique_ptr<AccountsFile> accounts;
    MembersContent members;
    if (!options.accounts.empty()) {
        auto opened = AccountsFile::open(options.accounts, complain);
        if (!opened) {
            complain(opened.error().text);
            return opened.error().inUse ? InUse : BadArguments;
        }
        accounts = *std::move(opened);
        auto read = accounts->read();
        if (!read)
            return complain(read.error());
        members = *std::move(read);
    }
    Directory directory(
        std::move(catalog), [] { return static_cast<std::int64_t>(std::time(nullptr)); },
        std::move(accounts), std::move(members));
    Faults faults;
    for (const Fault &fault : options.faults)
        faults.add(fault);
    std::unique_ptr<RequestLog> log;
    if (!options.requestLog.empty())
        log = std::make_unique<RequestLog>(options.requestLog);
    HttpServer server(directory, faults, log.get());

    const std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> loop(
        g_main_loop_new(nullptr, FALSE), g_main_loop_unref);
    g_unix_signal_add(SIGTERM, quit, loop.get());
    g_unix_signal_add(SIGINT, quit, loop.get());
    maskSignals(SIG_UNBLOCK);

    const std::string address = server.listen(options.listen);
    if (!options.tlsListen.empty()) {
        const std::string secure
            = server.listenTls(options.tlsListen, options.certificate, options.key);
        std::fprintf(stderr, "tunein-directory: TLS at https://%s/\n", secure.c_str());
    }
    std::printf("tunein-directory: ready at http://%s/\n", address.c_str());
    std::fflush(stdout);
    g_main_loop_run(loop.get());
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    maskSignals(
        SIG_BLOCK); // until the loop handles them: a signal before that ends the program as well
    std::signal(SIGXFSZ, SIG_IGN); // write() fails with EFBIG instead
    try {
        const auto options = parseOptions(argc, argv);
        if (!options)
            return complain(options.error());
        if (!options->help.empty()) {
            std::fputs(options->help.c_str(), stdout);
            return 0;
        }
        const std::string file = options->data.empty() ? defaultDataFile() : options->data;
        auto catalog = loadCatalog(file);
        if (!catalog) {
            const int line = catalog.error().line();
            return complain(file + (line > 0 ? ':' + std::to_string(line) : std::string()) + ": "
                + catalog.error().what());
        }
        if (options->listsHosts) {
            for (const OtherServer &server : catalog->otherServers)
                std::printf("%s\n", server.host.c_str());
            return 0;
        }
        if (options->titleSeconds > 0)
            catalog->songSeconds = options->titleSeconds;
        return serve(*options, *std::move(catalog));
    } catch (const std::exception &error) {
        return complain(error.what());
    }
}
