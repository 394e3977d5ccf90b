// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// Runs the trials of faults, several at a time, and prints a table of the measurements. The exit
/// status is 0 when all goals are reached.
#include "api/core/Mutex.h"
#include "base/cli/CommandLine.h"
#include "tests/faults/Report.h"

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <curl/curl.h>
#include <string>
#include <vector>

namespace {

struct Options {
    bool quick = false;
    bool list = false;
    int jobs = 8;
    std::string only;
    std::string keep;
};

std::vector<Fault> chosenFaults(const Options &options)
{
    const QRegularExpression only(
        QString::fromStdString(options.only), QRegularExpression::CaseInsensitiveOption);
    std::vector<Fault> chosen;
    for (const auto &group : {connectionFaults(), answerFaults(), audioFaults(), playlistFaults(),
             liveStreamingFaults(), houseFaults()}) {
        for (const Fault &fault : group) {
            if ((fault.quick || !options.quick) && QString::fromUtf8(fault.name).contains(only))
                chosen.push_back(fault);
        }
    }
    return chosen;
}

/// The results of all \a faults, in their order; each gets a folder inside \a folder.
std::vector<Result> playAll(const std::vector<Fault> &faults, int jobs, const QString &folder)
{
    std::vector<Result> results(faults.size());
    std::atomic<std::size_t> next {0};
    VeskMutex output;
    const auto work = [&] {
        for (std::size_t i = next++; i < faults.size(); i = next++) {
            QDir(folder).mkdir(QString::number(i));
            results[i] = playOut(faults[i], folder + QLatin1Char('/') + QString::number(i));
            const VeskMutexLock lock(output);
            std::fprintf(stderr, "%zu %s\n", i, lineOf(results[i]).c_str());
        }
    };
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < jobs; ++i) {
        threads.emplace_back(QThread::create(work));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        thread->wait();
    return results;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    curl_global_init(CURL_GLOBAL_DEFAULT);
    Options options;
    CommandLine app(
        "Plays streams, servers and processes that go wrong, and tells what came of it.");
    app.addFlag("--quick", options.quick, "only those of the short form");
    app.addFlag("--list", options.list, "only their names");
    app.addOption("--jobs", options.jobs, "how many side by side").between(1, 32);
    app.addOption("--only", options.only, "only those whose names fit this regular expression");
    app.addOption("--keep", options.keep, "a folder for logs and recordings");
    if (const auto end = app.read(commandLineArguments(argc, argv))) {
        std::fprintf(end->status == 0 ? stdout : stderr, "%s\n", qPrintable(end->text));
        return end->status;
    }

    const std::vector<Fault> faults = chosenFaults(options);
    if (options.list) {
        for (const Fault &fault : faults)
            std::printf("%s\n", fault.name);
        return 0;
    }
    const QTemporaryDir temporary;
    const QString folder
        = options.keep.empty() ? temporary.path() : QString::fromStdString(options.keep);
    QDir().mkpath(folder);
    const std::vector<Result> results = playAll(faults, options.jobs, folder);

    std::printf("%s\n| goal | measured | |\n|---|---|---|\n", tableOf(results).c_str());
    bool reached = !results.empty();
    for (const Goal &goal : goalsOf(results)) {
        std::printf("| %s | %s | %s |\n", goal.name.c_str(), goal.measured.c_str(),
            goal.reached ? "reached" : "**missed**");
        reached = reached && goal.reached;
    }
    return reached ? 0 : 1;
}
