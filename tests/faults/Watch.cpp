// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Watch.h"

#include "api/web/VeskJson.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>
#include <curl/curl.h>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds SamplesTick {10};
constexpr std::chrono::milliseconds StateTick {50};
constexpr std::chrono::milliseconds MemoryTick {500};
/// A host that takes longer to respond counts as dead.
constexpr long PatienceMs = 5000;
constexpr int WavHead = 44;
/// Of 32768. Decoded silence stays below this.
constexpr int LoudSample = 100;

double seconds(Clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

std::size_t append(char *data, std::size_t, std::size_t size, void *body)
{
    static_cast<QByteArray *>(body)->append(data, static_cast<int>(size));
    return size;
}

bool isLoud(const QByteArray &bytes)
{
    const auto *samples = reinterpret_cast<const qint16 *>(bytes.constData());
    const auto count = bytes.size() / static_cast<int>(sizeof(qint16));
    return std::any_of(
        samples, samples + count, [](qint16 sample) { return std::abs(sample) > LoudSample; });
}

} // namespace

HostLink::HostLink(const QString &url)
    : m_url(url.toUtf8() + "jsonrpc")
{
}

QVariantHash HostLink::call(const char *method, const QVariantHash &params, long milliseconds) const
{
    const QByteArray body
        = VeskJson::write(QVariantHash {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
            {QStringLiteral("id"), 1}, {QStringLiteral("method"), QString::fromLatin1(method)},
            {QStringLiteral("params"), params}});
    QByteArray answer;
    CURL *curl = curl_easy_init();
    curl_slist *headers = curl_slist_append(nullptr, "Content-Type: application/json");
    curl_easy_setopt(curl, CURLOPT_URL, m_url.constData());
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_NOPROXY, "*");
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, milliseconds);
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, long(body.size()));
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.constData());
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &answer);
    const CURLcode code = curl_easy_perform(curl);
    curl_slist_free_all(headers);
    curl_easy_cleanup(curl);
    VeskError error;
    return code == CURLE_OK ? VeskJson::parse(answer, error).toHash() : QVariantHash();
}

Watch::Watch(const QString &url, const QString &wav, qint64 pid)
    : m_samplesThread([this, wav] { watchSamples(wav); })
    , m_stateThread([this, url, pid] { watchState(HostLink(url), pid); })
{
}

Watch::~Watch()
{
    stop();
}

void Watch::stop()
{
    m_stop = true;
    if (m_samplesThread.joinable())
        m_samplesThread.join();
    if (m_stateThread.joinable())
        m_stateThread.join();
}

void Watch::watchSamples(const QString &wav)
{
    // The samples of an earlier play do not count.
    qint64 seen = std::max<qint64>(WavHead, QFileInfo(wav).size());
    for (; !m_stop; std::this_thread::sleep_for(SamplesTick)) {
        QFile file(wav);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            continue;
        // Each play truncates the file.
        if (file.size() < seen)
            seen = WavHead;
        if (file.size() <= seen || !file.seek(seen))
            continue;
        const QByteArray fresh = file.readAll();
        seen += fresh.size();
        const VeskMutexLock lock(m_mutex);
        m_samples.push_back({Clock::now(), isLoud(fresh)});
    }
}

void Watch::watchState(const HostLink &link, qint64 pid)
{
    Clock::time_point nextLook = Clock::now();
    for (; !m_stop; std::this_thread::sleep_for(StateTick)) {
        const Clock::time_point asked = Clock::now();
        const QVariantHash answer
            = link.call("player.state", {}, PatienceMs).value(QStringLiteral("result")).toHash();
        const Clock::time_point answered = Clock::now();
        double megabytes = 0;
        if (answered >= nextLook) {
            megabytes = residentMegabytes(pid);
            for (const qint64 child : childrenOf(pid))
                megabytes += residentMegabytes(child);
            nextLook = answered + MemoryTick;
        }
        const VeskMutexLock lock(m_mutex);
        m_slowestAnswer = std::max(m_slowestAnswer, seconds(answered - asked));
        m_megabytes = std::max(m_megabytes, megabytes);
        m_states.push_back({answered, answer.value(QStringLiteral("state"), -1).toInt(),
            answer.value(QStringLiteral("error")).toString(),
            answer.value(QStringLiteral("problem")).toString()});
    }
}

std::vector<Watch::Samples> Watch::samples() const
{
    const VeskMutexLock lock(m_mutex);
    return m_samples;
}

std::vector<Watch::State> Watch::states() const
{
    const VeskMutexLock lock(m_mutex);
    return m_states;
}

Watch::State Watch::lastState() const
{
    const VeskMutexLock lock(m_mutex);
    return m_states.empty() ? State {m_begin, -1, {}, {}} : m_states.back();
}

double Watch::slowestAnswer() const
{
    const VeskMutexLock lock(m_mutex);
    return m_slowestAnswer;
}

double Watch::megabytes() const
{
    const VeskMutexLock lock(m_mutex);
    return m_megabytes;
}

std::vector<qint64> childrenOf(qint64 pid)
{
    std::vector<qint64> children;
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    const QStringList names = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &task : names) {
        QFile file(tasks.filePath(task + QStringLiteral("/children")));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QList<QByteArray> pids = file.readAll().simplified().split(' ');
        for (const QByteArray &child : pids) {
            const qint64 number = child.toLongLong();
            if (number <= 0)
                continue;
            children.push_back(number);
            const std::vector<qint64> further = childrenOf(number);
            children.insert(children.end(), further.begin(), further.end());
        }
    }
    return children;
}

double residentMegabytes(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/statm").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble()
        * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}
