// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/PluginOutput.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "plugin/runtime/Logging.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>
#include <vector>

VESK_LOGGER("Host")

namespace {

/// Log records come in bursts. The pipe holds what comes while the thread sleeps, so that it is not
/// woken for each of them, and the plug-in does not wait for it either.
constexpr std::chrono::milliseconds BurstTime {20};
constexpr int PipeBytes = 1024 * 1024;
constexpr std::size_t ReadBytes = 64 * 1024;

} // namespace

PluginOutput::PluginOutput(const QString &plugin)
    : m_plugin(plugin)
{
    if (::pipe2(m_ends, O_CLOEXEC) != 0)
        return;
    ::fcntl(m_ends[1], F_SETPIPE_SZ, PipeBytes); // with the usual 64 KiB it works, only slower
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
    m_isFinishing = true;
    closeWritingEnd();
    if (m_thread.joinable())
        m_thread.join();
    return QString::fromUtf8(m_lastLine);
}

void PluginOutput::run()
{
    veskSetThreadName(QStringLiteral("PluginOutput"));
    std::vector<char> buffer(ReadBytes);
    QByteArray received;
    m_refilled = Clock::now();
    while (true) {
        const ssize_t count = ::read(m_ends[0], buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        refill();
        received.append(buffer.data(), static_cast<int>(count));
        processLines(received);
        // Without a pause, reading what is dropped would keep a processor busy.
        const bool isDrained = static_cast<std::size_t>(count) < buffer.size();
        if ((isDrained || m_dropped > 0) && !m_isFinishing)
            std::this_thread::sleep_for(BurstTime);
    }
    processLine(received);
    m_budget = MaxBurst;
    refill();
}

/// Processes the lines that are complete, and what is too long to be kept.
void PluginOutput::processLines(QByteArray &received)
{
    int start = 0;
    const auto splitUntil = [&](int end) {
        for (; end - start > MaxLine; start += MaxLine)
            processLine(received.mid(start, MaxLine));
    };
    for (int end = 0; (end = received.indexOf('\n', start)) >= 0; start = end + 1) {
        splitUntil(end);
        processLine(received.mid(start, end - start));
    }
    splitUntil(received.size());
    received.remove(0, start);
}

void PluginOutput::processLine(QByteArray line)
{
    if (line.isEmpty())
        return;
    // No control characters, which a terminal that shows the log would obey.
    std::replace_if(
        line.begin(), line.end(),
        [](char character) {
            const auto code = static_cast<unsigned char>(character);
            return code < 0x20 || code == 0x7f;
        },
        '?');
    // After the first line that is dropped all are, until refill() ends that.
    if (m_dropped > 0 || line.size() > m_budget) {
        ++m_dropped;
    } else {
        m_budget -= line.size();
        logLineOfPlugin(line, m_plugin);
    }
    m_lastLine = std::move(line);
}

void PluginOutput::refill()
{
    using std::chrono::milliseconds;
    const Clock::time_point now = Clock::now();
    const auto elapsed = std::chrono::duration_cast<milliseconds>(now - m_refilled);
    m_refilled += elapsed; // what is less than a millisecond counts the next time
    m_budget = std::min(MaxBurst, m_budget + MaxPerSecond * elapsed.count() / 1000);
    if (m_dropped > 0 && m_budget >= MaxPerSecond) {
        VESK_WARN(m_dropped << " lines of a plug-in's output were dropped: it prints too many");
        m_dropped = 0;
    }
}
