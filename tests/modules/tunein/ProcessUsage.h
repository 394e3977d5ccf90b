// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDir>
#include <QFile>
#include <QStringList>

#include <malloc.h>
#include <unistd.h>

/// Defined in builds with a sanitizer, whose own memory makes resident memory meaningless.
/// Allocated memory still is exact.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VESK_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VESK_SANITIZED 1
#endif
#endif

#ifdef VESK_SANITIZED
// The sanitizers' public interface, whose headers come with clang only.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

/// What this process currently uses: as the kernel counts it, and as the allocator does.
struct ProcessUsage {
    int threads = 0;
    int descriptors = 0;
    qint64 residentBytes = 0;
    qint64 allocatedBytes = 0; ///< without freed memory that a sanitizer holds back

    /// The names of the threads.
    static QStringList threadNames()
    {
        QStringList names;
        const QDir tasks(QStringLiteral("/proc/self/task"));
        const QStringList ids = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString &id : ids) {
            QFile file(tasks.filePath(id + QStringLiteral("/comm")));
            if (file.open(QIODevice::ReadOnly))
                names.append(QString::fromUtf8(file.readAll().trimmed()));
        }
        return names;
    }

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
            usage.residentBytes
                = pages.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
#ifdef VESK_SANITIZED
        usage.allocatedBytes = static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
        const struct mallinfo2 heap = mallinfo2();
        usage.allocatedBytes = static_cast<qint64>(heap.uordblks + heap.hblkhd);
#endif
        return usage;
    }
};
