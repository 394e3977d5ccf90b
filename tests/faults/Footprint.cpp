// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Footprint.h"

#include "tests/faults/Watch.h"

#include <QDir>
#include <QFile>

#include <sstream>

namespace {

/// The number after \a name in a file of /proc that has one entry per line; 0 without one.
int numberIn(const QString &file, const QByteArray &name)
{
    QFile lines(file);
    if (!lines.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> all = lines.readAll().split('\n');
    for (const QByteArray &line : all) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).simplified().split(' ').first().toInt();
    }
    return 0;
}

struct Process {
    int kilobytes;
    int share;
    int descriptors;
    int threads;
};

Process processOf(qint64 pid)
{
    const QString folder = QStringLiteral("/proc/%1/").arg(pid);
    const QString status = folder + QStringLiteral("status");
    return {numberIn(status, "VmRSS"), numberIn(folder + QStringLiteral("smaps_rollup"), "Pss"),
        static_cast<int>(QDir(folder + QStringLiteral("fd"))
                             .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                             .size()),
        numberIn(status, "Threads")};
}

} // namespace

Footprint Footprint::of(qint64 pid)
{
    Footprint footprint;
    const Process host = processOf(pid);
    footprint.hostKilobytes = host.kilobytes;
    footprint.hostShare = host.share;
    footprint.hostDescriptors = host.descriptors;
    footprint.hostThreads = host.threads;
    for (const qint64 child : childrenOf(pid)) {
        const Process process = processOf(child);
        ++footprint.children;
        footprint.childrenKilobytes += process.kilobytes;
        footprint.childrenShare += process.share;
        footprint.childrenDescriptors += process.descriptors;
        footprint.childrenThreads += process.threads;
    }
    return footprint;
}

std::string Footprint::names()
{
    return "host_rss_kb,host_pss_kb,host_descriptors,host_threads,children,children_rss_kb,"
           "children_pss_kb,children_descriptors,children_threads";
}

std::string Footprint::line() const
{
    std::ostringstream out;
    for (const int each : {hostKilobytes, hostShare, hostDescriptors, hostThreads, children,
             childrenKilobytes, childrenShare, childrenDescriptors})
        out << each << ',';
    out << childrenThreads;
    return out.str();
}
