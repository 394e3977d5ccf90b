#pragma once

#include <QDir>
#include <QFile>
#include <QStringList>

#include <malloc.h>

/// What this process holds at the moment: as the kernel counts it, and as malloc does.
struct ProcessUsage {
    int threads = 0;
    int descriptors = 0;
    qint64 residentBytes = 0;
    qint64 allocatedBytes = 0;

    static ProcessUsage now()
    {
        const auto count = [](const char *folder) {
            return QDir(QLatin1String(folder))
                .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                .size();
        };
        ProcessUsage usage;
        usage.threads = count("/proc/self/task");
        usage.descriptors = count("/proc/self/fd");
        QFile pages(QStringLiteral("/proc/self/statm"));
        if (pages.open(QIODevice::ReadOnly))
            usage.residentBytes = pages.readAll().split(' ').value(1).toLongLong() * 4096;
        const struct mallinfo2 heap = mallinfo2();
        usage.allocatedBytes = static_cast<qint64>(heap.uordblks + heap.hblkhd);
        return usage;
    }
};
