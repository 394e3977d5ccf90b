// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// An HttpServer on a thread of its own, at a free port of this machine, for as long as the object
/// lives.
#pragma once

#include <glib.h>
#include <string>
#include <thread>

namespace directory::test {

class RunningServer {
public:
    explicit RunningServer(std::string requestLog = {}, unsigned idleSeconds = 60);
    ~RunningServer();
    RunningServer(const RunningServer &) = delete;
    RunningServer &operator=(const RunningServer &) = delete;

    std::string url(const std::string &target) const { return "http://" + m_address + target; }
    std::string secureUrl(const std::string &target) const
    {
        return "https://" + m_secureAddress + target;
    }
    int port() const;
    int securePort() const;
    /// Sets a fault over HTTP.
    void fail(const std::string &fault) const;

private:
    void run(const std::string &requestLog, unsigned idleSeconds, class Ready &ready);

    GMainContext *m_context;
    GMainLoop *m_loop;
    std::string m_address;
    std::string m_secureAddress;
    std::thread m_thread;
};

} // namespace directory::test
