// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The command line of tunein-directory.
#pragma once

#include "base/Result.h"
#include "directory/Faults.h"

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace directory {

struct Options {
    std::string listen = "127.0.0.1:8074";
    std::string tlsListen;
    std::string certificate;
    std::string key;
    std::string data; ///< empty: beside the program
    std::string accounts; ///< empty: in memory only
    std::string requestLog;
    int titleSeconds = 0; ///< how long a song lasts; 0: as the data file says
    std::vector<Fault> faults;
    bool listsHosts = false; ///< to print the other servers' hosts instead of serving
    std::string help; ///< not empty: to be printed instead of serving
};

/// The error is one line.
Result<Options, std::string> parseOptions(int count, const char *const *arguments);
/// Calls \a visit with all options, for manual pages.
void visitOptions(const std::function<void(CLI::App &program)> &visit);
/// ../share/vesk/directory.yaml beside the running program.
std::string defaultDataFile();

} // namespace directory
