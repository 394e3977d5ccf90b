// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Soak.h"

#include "tests/support/RawWebSocket.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <csignal>
#include <iterator>

namespace {

constexpr double SampleEvery = 30;
constexpr double SlowAnswer = 2;
constexpr long PatienceMs = 10000;
/// A host that leaves this many requests unanswered in a row counts as dead.
constexpr int MostUnanswered = 3;
constexpr double ToSound = 8;
/// How long closed connections may take to disappear.
constexpr std::chrono::milliseconds Settling {2000};

double seconds(Clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

/// The directory's stations that have a playable stream.
constexpr std::array<const char *, 9> Stations {"trial%2001", "trial%2002", "trial%2007",
    "trial%2008", "trial%2009", "trial%2010", "trial%2014", "trial%2015", "trial%2016"};

constexpr std::array<const char *, 8> DirectoryFaults {"stream-reset@/stream/:0*1",
    "stream-close@/stream/:0*1", "stream-stall@/stream/:0*1", "stream-garbage@/stream/:0,20000*1",
    "http-status@/stream/:503*2", "reset@Report.ashx*2", "malformed@Browse.ashx*2",
    "slow-headers@Describe.ashx:3*1"};

constexpr std::array<const char *, 14> BadStreams {"/scrambled", "/zeroed", "/profile", "/rate",
    "/formats", "/garbage", "/zeros", "/wav", "/matroska", "/id3", "/mp3", "/ogg", "/flac",
    "/silent"};

Site badStreams()
{
    using namespace script;
    const auto page = [](const Script &steps) { return std::vector<Script> {steps}; };
    Site site;
    site.pages = {
        {"/scrambled", page({head(), live(media::scrambledAac())})},
        {"/zeroed", page({head(), live(media::zeroedAac())})},
        {"/profile", page({head(), live(media::oddProfileAac())})},
        {"/rate", page({head(), live(media::aac(), 1.5), live(media::aacHalfRate())})},
        {"/formats", page({head(), live(media::mp3(), 1), live(media::aac(), 1), close()})},
        {"/garbage", page({head(), flood(media::garbage(100000), 40000)})},
        {"/zeros", page({head(), flood(QByteArray(4000, '\0'), 1e6)})},
        {"/wav", page({head(), send(media::wavHead(8000)), flood(QByteArray(64000, '\x11'), 1e6)})},
        {"/matroska",
            page({head(), send(media::hugeMatroskaHead()), flood(QByteArray(64000, '\x11'), 1e6)})},
        {"/id3", page({head(), send(media::id3Head(200 << 20)), flood(media::mp3().bytes, 1e6)})},
        {"/mp3", page({head(), live(media::mutated(media::mp3(), 100))})},
        {"/ogg", page({head(), live(media::mutated(media::vorbis(), 300, 4000))})},
        {"/flac", page({head(), live(media::mutated(media::flac(), 300, 4000))})},
        {"/silent", page({stall()})},
    };
    return site;
}

} // namespace

Soak::Soak(const QString &folder, unsigned seed, std::FILE *csv)
    : m_stage(badStreams(), folder,
        {QStringLiteral("--restart-wait"), QStringLiteral("1"), QStringLiteral("--log-level"),
            QStringLiteral("info")})
    , m_link(m_stage.product().hostUrl())
    , m_random(seed)
    , m_csv(csv)
{
    std::fprintf(m_csv, "seconds,quiet,%s,switches,bad_streams,faults,deaths,clients\n",
        Footprint::names().c_str());
}

template <class List>
const auto &Soak::oneOf(const List &list)
{
    return list[m_random() % std::size(list)];
}

double Soak::elapsed() const
{
    return seconds(Clock::now() - m_begin);
}

void Soak::run(double length)
{
    // The weights of the actions.
    constexpr std::array<Deed, 12> Deeds {&Soak::switchStation, &Soak::switchStation,
        &Soak::switchStation, &Soak::switchStation, &Soak::playBadStream, &Soak::playBadStream,
        &Soak::pauseAndResume, &Soak::disturbDirectory, &Soak::disturbDirectory, &Soak::killProcess,
        &Soak::churnClients, &Soak::churnClients};
    double nextSample = 0;
    while (elapsed() < length && !isDead()) {
        if (elapsed() >= nextSample) {
            checkHealthy();
            sample();
            nextSample += SampleEvery;
        }
        (this->*oneOf(Deeds))();
    }
    sample();
}

bool Soak::isDead() const
{
    return m_unanswered >= MostUnanswered
        || !QFileInfo::exists(QStringLiteral("/proc/%1/exe").arg(m_stage.pid()));
}

std::string Soak::end()
{
    if (!isDead())
        return m_stage.end();
    m_stage.kill();
    return "the host does not answer";
}

QVariantHash Soak::ask(const char *method, const QVariantHash &params)
{
    const Clock::time_point asked = Clock::now();
    const QVariantHash answer = m_link.call(method, params, PatienceMs);
    const double took = seconds(Clock::now() - asked);
    m_counts.slowestAnswer = std::max(m_counts.slowestAnswer, took);
    if (took > SlowAnswer || answer.isEmpty())
        ++m_counts.slowAnswers;
    m_unanswered = answer.isEmpty() ? m_unanswered + 1 : 0;
    return answer;
}

void Soak::listen(double least, double most)
{
    const double time = least + (most - least) * (m_random() % 1000) / 1000;
    std::this_thread::sleep_for(std::chrono::duration<double>(time));
    ask("player.state");
}

void Soak::switchStation()
{
    Site site;
    site.search = oneOf(Stations);
    m_stage.play(site, m_link);
    ++m_counts.switches;
    listen(0.1, 2);
}

void Soak::playBadStream()
{
    m_stage.play("http://radio.test" + QByteArray(oneOf(BadStreams)), true, m_link);
    ++m_counts.badStreams;
    listen(0.05, 3);
    if (m_random() % 2 == 0)
        ask("player.stop");
}

void Soak::pauseAndResume()
{
    ask("player.pause");
    listen(0, 0.5);
    ask("player.resume");
    ++m_counts.pauses;
    listen(0.1, 1);
}

void Soak::disturbDirectory()
{
    m_stage.setFault(oneOf(DirectoryFaults));
    ++m_counts.faults;
    listen(0.1, 2);
}

void Soak::killProcess()
{
    // Rarely enough: a process that is killed all the time only shows its start.
    if (m_random() % 2 == 0)
        return;
    const std::vector<qint64> children = childrenOf(m_stage.pid());
    if (children.empty())
        return;
    ::kill(static_cast<pid_t>(oneOf(children)), SIGKILL);
    ++m_counts.deaths;
    listen(0.1, 2);
}

void Soak::churnClients()
{
    for (int i = 0; i < 10; ++i) {
        try {
            RawWebSocket client(m_stage.product().hostPort());
            client.send(RawWebSocket::Text,
                "{\"jsonrpc\": \"2.0\", \"id\": 1, \"method\": \"subscribe\", "
                "\"params\": {\"path\": \"TuneIn:browse\"}}");
            if (i % 2 == 0)
                client.receive();
            ++m_counts.clients;
        } catch (const std::exception &) {
            ++m_counts.slowAnswers;
        }
        ask("getRows", {{QStringLiteral("path"), QStringLiteral("TuneIn:browse")}});
        ++m_counts.clients;
    }
}

/// Without a fault a station must be heard.
void Soak::checkHealthy()
{
    m_stage.clearFaults();
    ask("player.stop");
    Watch watch(m_stage.product().hostUrl(), m_stage.wav(), m_stage.pid());
    m_stage.play("http://radio.test/healthy", true, m_link);
    ++m_counts.checks;
    const auto isHeard = [&] {
        const std::vector<Watch::Samples> samples = watch.samples();
        return std::any_of(
            samples.begin(), samples.end(), [](const Watch::Samples &each) { return each.loud; });
    };
    while (!isHeard()) {
        if (seconds(Clock::now() - watch.begin()) > ToSound) {
            ++m_counts.notHeard;
            std::fprintf(stderr, "%.0f s: the healthy station is not heard\n", elapsed());
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

/// While the healthy station plays, and after it was stopped.
void Soak::sample()
{
    for (const bool quiet : {false, true}) {
        if (quiet) {
            ask("player.stop");
            std::this_thread::sleep_for(Settling);
        }
        const Sample sample {elapsed(), quiet, Footprint::of(m_stage.pid())};
        m_samples.push_back(sample);
        std::fprintf(m_csv, "%.0f,%d,%s,%d,%d,%d,%d,%d\n", sample.seconds, int(quiet),
            sample.footprint.line().c_str(), m_counts.switches, m_counts.badStreams,
            m_counts.faults, m_counts.deaths, m_counts.clients);
        std::fflush(m_csv);
    }
}
