// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

/// A named pipe in place of a file: a program that reads it blocks until give().
class HeldFile {
public:
    explicit HeldFile(const std::string &path)
        : m_path(path)
    {
        ::mkfifo(m_path.c_str(), 0600);
    }
    ~HeldFile()
    {
        close();
        ::unlink(m_path.c_str());
    }
    HeldFile(const HeldFile &) = delete;
    HeldFile &operator=(const HeldFile &) = delete;

    /// Waits for a program to open it, at most 20 seconds.
    bool waitForReader()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (m_end < 0 && std::chrono::steady_clock::now() < end) {
            // Without O_NONBLOCK this would wait for a reader without a limit.
            m_end = ::open(m_path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            if (m_end < 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return m_end >= 0 && ::fcntl(m_end, F_SETFL, 0) == 0;
    }

    /// Writes the whole content and closes the pipe. False when the reader is gone.
    bool give(const std::string &text)
    {
        std::signal(SIGPIPE, SIG_IGN);
        std::size_t given = 0;
        while (given < text.size()) {
            const ssize_t count = ::write(m_end, text.data() + given, text.size() - given);
            if (count < 0 && errno != EINTR)
                break;
            given += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
        close();
        return given == text.size();
    }

private:
    void close()
    {
        if (m_end >= 0)
            ::close(m_end);
        m_end = -1;
    }

    const std::string m_path;
    int m_end = -1;
};
