// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/PluginOutput.h"

#include "api/core/vesk.h"
#include "plugin/runtime/Logging.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::chrono::milliseconds BurstTime {20};

} // namespace

PluginOutput::PluginOutput()
{
    if (::pipe2(m_ends, O_CLOEXEC) == 0)
        m_thread = std::thread([this] { run(); });
}

PluginOutput::~PluginOutput()
{
    finish();
    ::close(m_ends[0]);
}

void PluginOutput::closeWritingEnd()
{
    if (m_ends[1] >= 0)
        ::close(std::exchange(m_ends[1], -1));
}

QString PluginOutput::finish()
{
    closeWritingEnd();
    if (m_thread.joinable())
        m_thread.join();
    return m_lastLine;
}

void PluginOutput::run()
{
    veskSetThreadName(QStringLiteral("PluginOutput"));
    char buffer[16 * 1024];
    QByteArray received;
    while (true) {
        const ssize_t count = ::read(m_ends[0], buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        received.append(buffer, static_cast<int>(count));
        take(received);
        // Lines come in bursts, from a process that somebody waits for: not each needs a processor.
        std::this_thread::sleep_for(BurstTime);
    }
    print(received);
}

/// Prints the lines that are whole, or too long.
void PluginOutput::take(QByteArray &received)
{
    int start = 0;
    for (int end = 0; (end = received.indexOf('\n', start)) >= 0; start = end + 1)
        print(received.mid(start, end - start));
    received.remove(0, start);
    if (received.size() > MaxLine)
        print(std::exchange(received, {}));
}

void PluginOutput::print(QByteArray line)
{
    for (char &character : line) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7f)
            character = '?';
    }
    if (line.isEmpty())
        return;
    logLineOfPlugin(line);
    m_lastLine = QString::fromUtf8(line);
}
