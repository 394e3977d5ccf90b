// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// The player compared with GStreamer's playbin: the time from the request to play until samples
/// are written, from silence and while another station plays, and the memory, CPU usage and
/// wake-ups of playback. Measures whole processes that play the same streams of the local
/// directory, alternating. The player gets a JSON-RPC call and makes its request before playback
/// first; gst-launch has to be started as a process.
#include "tests/support/Text.h"
#include "tests/system/Product.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

constexpr int Rounds = 15;
constexpr int PlaySeconds = 30;
constexpr qint64 WavHead = 44;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Milliseconds until samples are in the file; -1 after ten seconds without any.
double untilSamples(const QString &file, const QElapsedTimer &clock)
{
    while (QFileInfo(file).size() <= WavHead) {
        if (clock.elapsed() > 10000)
            return -1;
        QThread::usleep(500);
    }
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Of a player with all of its processes.
struct Cost {
    double megabytes = 0;
    double cpuPercent = 0;
    double wakeUps = 0; ///< of all threads, per second
};

QByteArray read(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A process, those that it started, and theirs.
QList<qint64> family(qint64 pid)
{
    QList<qint64> pids {pid};
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray children = read(tasks.filePath(task + QStringLiteral("/children")));
        for (const QByteArray &child : children.simplified().split(' ')) {
            if (!child.isEmpty())
                pids += family(child.toLongLong());
        }
    }
    return pids;
}

double cpuSeconds(qint64 pid)
{
    double sum = 0;
    for (const qint64 each : family(pid)) {
        clockid_t clock {};
        timespec time {};
        if (::clock_getcpuclockid(static_cast<pid_t>(each), &clock) == 0
            && ::clock_gettime(clock, &time) == 0)
            sum += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    }
    return sum;
}

/// Each page divided by the number of the processes that share it.
double proportionalMegabytes(qint64 pid)
{
    double sum = 0;
    for (const qint64 each : family(pid)) {
        for (const QByteArray &line :
            read(QStringLiteral("/proc/%1/smaps_rollup").arg(each)).split('\n')) {
            if (line.startsWith("Pss:"))
                sum += line.simplified().split(' ').value(1).toDouble() * 1024 / 1e6;
        }
    }
    return sum;
}

double voluntarySwitches(qint64 pid)
{
    double sum = 0;
    for (const qint64 each : family(pid)) {
        const QDir tasks(QStringLiteral("/proc/%1/task").arg(each));
        for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            for (const QByteArray &line :
                read(tasks.filePath(task + QStringLiteral("/status"))).split('\n')) {
                if (line.startsWith("voluntary_ctxt_switches:"))
                    sum += line.split(':').at(1).trimmed().toDouble();
            }
        }
    }
    return sum;
}

Cost costOf(qint64 pid)
{
    // The start of a play is over: its buffer is full, and its loudness found.
    QThread::sleep(12);
    const double before = cpuSeconds(pid);
    const double switches = voluntarySwitches(pid);
    QThread::sleep(PlaySeconds);
    return {proportionalMegabytes(pid), (cpuSeconds(pid) - before) * 100 / PlaySeconds,
        (voluntarySwitches(pid) - switches) / PlaySeconds};
}

/// Stations 1 and 2 of the directory.
void play(const Product &product, int station = 1)
{
    product.rpc(text("player.play"),
        {{text("screen"),
             text("TuneIn:browse/uri/Search.ashx?query=trial%200") + QString::number(station)},
            {text("row"), 0}});
}

void setEven(const Product &product, bool even)
{
    product.rpc(text("setData"),
        {{text("path"), text("settings:player/evenness")}, {text("role"), text("value")},
            {text("value"), even}});
}

void startGst(QProcess &gst, const QString &url, const QString &sink)
{
    gst.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    gst.start(text("gst-launch-1.0"),
        {text("-q"), text("playbin"), text("uri=") + url, text("audio-sink=") + sink});
}

void end(QProcess &process)
{
    process.kill();
    process.waitForFinished();
}

} // namespace

int main()
{
    QTemporaryDir folder;
    const QString ours = folder.filePath(text("ours.wav"));
    const QString theirs = folder.filePath(text("theirs.wav"));
    const Product product({text("--audio"), text("wav:") + ours});
    if (!product.isUp())
        return 1;
    const QString url = text("http://") + product.directoryAddress() + text("/stream/s29001/1.mp3");

    std::vector<double> ourTimes;
    std::vector<double> switchTimes;
    std::vector<double> theirTimes;
    for (int i = 0; i < Rounds; ++i) {
        QFile::remove(ours);
        QElapsedTimer clock;
        clock.start();
        play(product);
        ourTimes.push_back(untilSamples(ours, clock));
        // The file of the play that goes on is another one, without a name.
        QThread::sleep(1);
        QFile::remove(ours);
        clock.start();
        play(product, 2);
        switchTimes.push_back(untilSamples(ours, clock));
        product.rpc(text("player.stop"), {});

        QFile::remove(theirs);
        QProcess gst;
        clock.start();
        startGst(gst, url, text("audioconvert ! wavenc ! filesink location=") + theirs);
        theirTimes.push_back(untilSamples(theirs, clock));
        end(gst);
    }
    std::printf(
        "| play to first samples, p50 | `gst-launch-1.0 playbin` | %.0f ms | %.0f ms | %.2f |\n",
        median(ourTimes), median(theirTimes), median(ourTimes) / median(theirTimes));
    std::printf(
        "| switch of stations to first samples, p50 | the same | %.0f ms | %.0f ms | %.2f |\n",
        median(switchTimes), median(theirTimes), median(switchTimes) / median(theirTimes));

    Product silent({text("--audio"), text("null")});
    play(silent);
    const Cost evenCost = costOf(silent.host().processId());
    setEven(silent, false);
    const Cost ourCost = costOf(silent.host().processId());
    QProcess gst;
    startGst(gst, url, text("fakesink sync=true"));
    gst.waitForStarted();
    const Cost theirCost = costOf(gst.processId());
    end(gst);
    std::printf("| memory while playing, all processes | the same | %.1f MB | %.1f MB | "
                "%.2f |\n",
        ourCost.megabytes, theirCost.megabytes, ourCost.megabytes / theirCost.megabytes);
    std::printf("| CPU while playing mp3 at 128 kbit/s | the same | %.1f %% | %.1f %% | %.2f |\n",
        ourCost.cpuPercent, theirCost.cpuPercent,
        theirCost.cpuPercent > 0 ? ourCost.cpuPercent / theirCost.cpuPercent : 0);
    std::printf("| the same, equally loud | without | %.1f %% | %.1f %% | %.2f |\n",
        evenCost.cpuPercent, ourCost.cpuPercent,
        ourCost.cpuPercent > 0 ? evenCost.cpuPercent / ourCost.cpuPercent : 0);
    std::printf("| wake-ups per second while playing | the same | %.1f | %.1f | %.2f |\n",
        ourCost.wakeUps, theirCost.wakeUps, ourCost.wakeUps / theirCost.wakeUps);
    return 0;
}
