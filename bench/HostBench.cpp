// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// Startup time and memory of the idle host, with the plug-in in a process of its own and in the
/// host's, compared with a Qt program that does nothing. Measures whole processes, alternating
/// between the two configurations.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int Rounds = 11;
constexpr int ReadyMilliseconds = 10000;
/// Time for a started process to become idle.
constexpr int SettleMilliseconds = 500;

QString program(const char *name)
{
    return QStringLiteral(VESK_BIN_DIR "/") + QLatin1String(name);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Memory {
    double resident = 0; ///< megabytes, including pages shared with other processes
    double proportional = 0; ///< megabytes, each shared page divided by the number of its processes
};

Memory memoryOf(qint64 pid)
{
    Memory memory;
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return memory;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const double megabytes = line.simplified().split(' ').value(1).toDouble() * 1024 / 1e6;
        if (line.startsWith("Rss:"))
            memory.resident = megabytes;
        else if (line.startsWith("Pss:"))
            memory.proportional = megabytes;
    }
    return memory;
}

QList<qint64> childrenOf(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/task/%1/children").arg(pid));
    QList<qint64> children;
    if (!file.open(QIODevice::ReadOnly))
        return children;
    for (const QByteArray &child : file.readAll().simplified().split(' ')) {
        if (!child.isEmpty())
            children.append(child.toLongLong());
    }
    return children;
}

struct Figures {
    std::vector<double> ready; ///< milliseconds
    std::vector<double> resident; ///< megabytes, of the host process
    std::vector<double> worker; ///< megabytes, of the plug-in process
    std::vector<double> proportional; ///< megabytes, of both
};

/// Starts a host with the extra options \a arrangement, adds its figures to \a figures and stops
/// it. False when the host does not start or stop.
bool measureHost(const QStringList &arrangement, Figures &figures)
{
    const QTemporaryDir state;
    QProcess host;
    host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer clock;
    clock.start();
    host.start(program("vesk-host"),
        QStringList {QStringLiteral("--plugin"), QStringLiteral(VESK_PLUGIN),
            QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
            QStringLiteral("--state-dir"), state.path(), QStringLiteral("--audio"),
            QStringLiteral("null"), QStringLiteral("--log-level"), QStringLiteral("error")}
            + arrangement);
    if (!host.waitForReadyRead(ReadyMilliseconds))
        return false;
    figures.ready.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    QThread::msleep(SettleMilliseconds);
    Memory all = memoryOf(host.processId());
    figures.resident.push_back(all.resident);
    double workers = 0;
    for (const qint64 child : childrenOf(host.processId())) {
        const Memory memory = memoryOf(child);
        workers += memory.resident;
        all.proportional += memory.proportional;
    }
    figures.worker.push_back(workers);
    figures.proportional.push_back(all.proportional);
    host.terminate();
    return host.waitForFinished();
}

double emptyProgram()
{
    QProcess empty;
    empty.start(program("vesk-bench-empty"), QStringList());
    empty.waitForStarted();
    QThread::msleep(SettleMilliseconds);
    const double resident = memoryOf(empty.processId()).resident;
    empty.kill();
    empty.waitForFinished();
    return resident;
}

void print(const char *what, const std::vector<double> &worker,
    const std::vector<double> &inProcess, const char *unit)
{
    std::printf(
        "| %s | %.1f %s | %.1f %s |\n", what, median(worker), unit, median(inProcess), unit);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Figures worker;
    Figures inProcess;
    for (int i = 0; i < Rounds; ++i) {
        if (!measureHost({}, worker) || !measureHost({QStringLiteral("--in-process")}, inProcess)) {
            std::fprintf(stderr, "the host does not start\n");
            return 1;
        }
    }
    std::printf("| what | process of its own | in the host's process |\n");
    print("start to ready, p50", worker.ready, inProcess.ready, "ms");
    print("resident memory of the idle host", worker.resident, inProcess.resident, "MB");
    print("of its worker process", worker.worker, inProcess.worker, "MB");
    print("both, shared pages counted once", worker.proportional, inProcess.proportional, "MB");
    std::printf("an empty Qt program: %.1f MB\n", emptyProgram());
    return 0;
}
