// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// A long run of one host, its figures, and the verdict: the exit status is 0 when the host stayed
/// up, answered, played, and used no more resources at the end than at the start.
#include "base/cli/CommandLine.h"
#include "tests/faults/Soak.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <curl/curl.h>
#include <functional>
#include <string>
#include <vector>

namespace {

/// Memory may grow by this much per hour, plus a little more in every run.
constexpr double KilobytesPerHour = 2048;
constexpr double KilobytesAtLeast = 1024;
/// For descriptors and threads, whose numbers fluctuate.
constexpr double FewMore = 1;

using Figure = std::function<int(const Footprint &)>;

double median(std::vector<int> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

/// The quiet samples between two parts of the run; the first part is the warm-up.
std::vector<int> part(
    const std::vector<Soak::Sample> &samples, double from, double to, const Figure &figure)
{
    std::vector<int> values;
    const double length = samples.back().seconds;
    for (const Soak::Sample &sample : samples) {
        if (sample.quiet && sample.seconds >= from * length && sample.seconds <= to * length)
            values.push_back(figure(sample.footprint));
    }
    return values;
}

class Verdict {
public:
    explicit Verdict(const std::vector<Soak::Sample> &samples)
        : m_samples(samples)
    {
    }

    /// The growth from the second quarter to the last. Their middles are half of the run apart.
    void compare(const char *name, const Figure &figure, bool isMemory)
    {
        const double hours = m_samples.back().seconds / 3600;
        const double before = median(part(m_samples, 0.25, 0.5, figure));
        const double after = median(part(m_samples, 0.75, 1, figure));
        const double most = isMemory ? KilobytesAtLeast + KilobytesPerHour * hours / 2 : FewMore;
        print(name, before, after, (after - before) / (hours / 2), after - before <= most);
    }

    /// For information only: it depends on what else runs on the machine.
    void tell(const char *name, const Figure &figure) const
    {
        std::printf("| %s | %.0f | %.0f | | |\n", name, median(part(m_samples, 0.25, 0.5, figure)),
            median(part(m_samples, 0.75, 1, figure)));
    }

    void require(const char *name, double measured, bool isFine)
    {
        std::printf("| %s | | %g | | %s |\n", name, measured, isFine ? "yes" : "**no**");
        m_fine = m_fine && isFine;
    }

    bool isFine() const { return m_fine; }

private:
    void print(const char *name, double before, double after, double perHour, bool isFine)
    {
        std::printf("| %s | %.0f | %.0f | %+.0f | %s |\n", name, before, after, perHour,
            isFine ? "yes" : "**no**");
        m_fine = m_fine && isFine;
    }

    const std::vector<Soak::Sample> &m_samples;
    bool m_fine = true;
};

int judge(const Soak &soak, const std::string &wrongEnd)
{
    const Soak::Counts &counts = soak.counts();
    std::printf("%.0f minutes: %d stations, %d bad streams, %d pauses, %d faults of the directory, "
                "%d processes killed, %d clients.\n\n",
        soak.samples().back().seconds / 60, counts.switches, counts.badStreams, counts.pauses,
        counts.faults, counts.deaths, counts.clients);
    std::printf("| | second quarter | last quarter | per hour | fine |\n|---|---|---|---|---|\n");
    Verdict verdict(soak.samples());
    verdict.compare(
        "host: resident KB", [](const Footprint &f) { return f.hostKilobytes; }, true);
    verdict.tell("host: its share, KB", [](const Footprint &f) { return f.hostShare; });
    verdict.compare(
        "host: descriptors", [](const Footprint &f) { return f.hostDescriptors; }, false);
    verdict.compare(
        "host: threads", [](const Footprint &f) { return f.hostThreads; }, false);
    verdict.compare(
        "its processes", [](const Footprint &f) { return f.children; }, false);
    verdict.compare(
        "their resident KB", [](const Footprint &f) { return f.childrenKilobytes; }, true);
    verdict.tell("their share, KB", [](const Footprint &f) { return f.childrenShare; });
    verdict.compare(
        "their descriptors", [](const Footprint &f) { return f.childrenDescriptors; }, false);
    verdict.compare(
        "their threads", [](const Footprint &f) { return f.childrenThreads; }, false);
    verdict.require("healthy station not heard in 8 s", counts.notHeard, counts.notHeard == 0);
    verdict.require("answers after more than 2 s", counts.slowAnswers, counts.slowAnswers == 0);
    verdict.require("slowest answer, s", counts.slowestAnswer, true);
    if (!wrongEnd.empty())
        std::printf("\n**%s**\n", wrongEnd.c_str());
    return verdict.isFine() && wrongEnd.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    curl_global_init(CURL_GLOBAL_DEFAULT);
    double minutes = 10;
    unsigned seed = 1;
    std::string csvName = "soak.csv";
    std::string keep;
    CommandLine app("Runs a host for a long time, with everything that goes wrong.");
    app.addOption("minutes", minutes, "how long").between(0.5, 1440.0);
    app.addOption("--seed", seed, "what is done in which order");
    app.addOption("--csv", csvName, "where the samples are written");
    app.addOption("--keep", keep, "a folder for the host's log");
    if (const auto end = app.read(commandLineArguments(argc, argv))) {
        std::fprintf(end->status == 0 ? stdout : stderr, "%s\n", qPrintable(end->text));
        return end->status;
    }
    std::FILE *csv = std::fopen(csvName.c_str(), "w");
    if (!csv) {
        std::perror(csvName.c_str());
        return 2;
    }
    const QTemporaryDir temporary;
    Soak soak(keep.empty() ? temporary.path() : QString::fromStdString(keep), seed, csv);
    if (!soak.isUp()) {
        std::fprintf(stderr, "the host did not start\n");
        return 1;
    }
    soak.run(minutes * 60);
    const std::string wrongEnd = soak.end();
    std::fclose(csv);
    return judge(soak, wrongEnd);
}
