// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Options.h"

#include <CLI/CLI.hpp>
#include <filesystem>

namespace directory {

namespace {

constexpr char Description[] = "A local server that speaks the TuneIn web API.";
constexpr char Program[] = "tunein-directory";

std::string firstLine(const std::string &text)
{
    return text.substr(0, text.find('\n'));
}

void addOptions(CLI::App &app, Options &options, std::vector<std::string> &faults)
{
    app.add_option("--listen", options.listen,
           "Where to serve HTTP (127.0.0.1:8074); port 0 picks a free one")
        ->type_name("ADDRESS:PORT");
    auto *tls = app.add_option("--tls-listen", options.tlsListen, "Where to serve HTTPS as well")
                    ->type_name("ADDRESS:PORT");
    auto *certificate
        = app.add_option("--cert", options.certificate, "The certificate for HTTPS, PEM")
              ->type_name("FILE");
    auto *key = app.add_option("--key", options.key, "The key of --cert, PEM")->type_name("FILE");
    tls->needs(certificate)->needs(key);
    certificate->needs(tls);
    key->needs(tls);
    app.add_option("--data", options.data,
           "What the directory offers, YAML (the file that is installed with it)")
        ->type_name("FILE");
    app.add_option("--accounts", options.accounts,
           "Keeps accounts and favorites there; without it, in memory")
        ->type_name("FILE");
    app.add_option("--request-log", options.requestLog, "Appends a line per request")
        ->type_name("FILE");
    app.add_option("--title-seconds", options.titleSeconds, "How long a song lasts, and its title")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 86400));
    app.add_flag("--list-hosts", options.listsHosts,
        "Prints the hosts of other servers that it stands in for, and ends");
    app.add_option("--fault", faults, "Does something wrong, for tests of clients")
        ->type_name("NAME[@PATH][:ARGUMENT][*COUNT]")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->expected(1)
        ->take_all();
}

} // namespace

Result<Options, std::string> parseOptions(int count, const char *const *arguments)
{
    Options options;
    std::vector<std::string> faults;
    CLI::App app(Description, Program);
    addOptions(app, options, faults);
    try {
        app.parse(count, arguments);
    } catch (const CLI::CallForHelp &) {
        options.help = app.help();
        return options;
    } catch (const CLI::ParseError &error) {
        return ::failure(firstLine(error.what()));
    }
    for (const std::string &text : faults) {
        auto fault = Faults::parse(text);
        if (!fault)
            return ::failure(fault.error());
        options.faults.push_back(std::move(*fault));
    }
    if (options.faults.size() > Faults::MaxFaults)
        return ::failure(std::string("there are too many faults"));
    return options;
}

void visitOptions(const std::function<void(CLI::App &program)> &visit)
{
    Options options;
    std::vector<std::string> faults;
    CLI::App app(Description, Program);
    addOptions(app, options, faults);
    visit(app);
}

std::string defaultDataFile()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / "share/vesk/directory.yaml").string();
}

} // namespace directory
