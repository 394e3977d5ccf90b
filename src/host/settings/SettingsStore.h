// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/nodes/CMValuesWorker.h"
#include "base/Result.h"
#include "base/files/FileLock.h"
#include "host/settings/HostValues.h"
#include "host/settings/MemberIdFile.h"
#include "host/settings/SettingsFile.h"

#include <QHash>
#include <QObject>

#include <chrono>
#include <condition_variable>
#include <thread>
#include <vector>

/// Keeps the settings that requests change, and the device's id, in the state folder, which it
/// holds for this process alone. A change takes effect and is answered once it is on the disk; one
/// that cannot be brought there is refused, and the value stays as it was.
///
/// Lives on the main thread, with an event loop. A thread of its own writes to the disk, so that a
/// slow one delays only changes of settings; those that come while it writes are written together.
/// What the host itself sets, and what is pinned, is not kept.
class SettingsStore : public QObject {
    Q_OBJECT

public:
    /// Changes that wait for the disk; one more is refused.
    static constexpr std::size_t MaxWaiting = 256;
    /// How long the end waits for the disk.
    static constexpr std::chrono::seconds EndTime {10};

    /// Keeps those of \a values that \a definitions has. Without a \a folder changes last until the
    /// host ends.
    SettingsStore(const QString &folder, const HostValues &definitions, CMValuesWorker *values,
        QObject *parent = nullptr);
    /// As close(), but waits as long as it takes.
    ~SettingsStore() override;

    /// Locks the folder, brings it to the present version, sets the kept values, gives the device
    /// its id on its first start, and keeps what changes from then on. Fails when another process
    /// holds the folder, and as StateVersion does. A folder that cannot be written is no failure,
    /// but then nothing is kept until the next start, and changes are refused.
    Result<void, QString> load();
    /// The kept values that had no effect at load(), because others were pinned.
    const QHash<CMPath, VeskValue> &overruled() const { return m_overruled; }
    /// Whether this process may write to the folder, after load(); true without a folder.
    const Result<void, files::Problem> &held() const { return m_held; }
    /// Waits until all requested changes are written and answered; later ones are refused. Returns
    /// false when the disk takes longer than EndTime.
    bool close();

private:
    struct Change {
        CMPath path;
        VeskValue value;
        CMValuesWorker::Kept kept;
    };
    using Changes = std::vector<Change>;
    /// Changes and what came of them.
    struct Written {
        Changes changes;
        CMError error;
    };

    Result<void, QString> takeFolder();
    void applyKept();
    void ensureMemberId();

    /// On the thread of a request.
    void keep(const CMPath &path, const VeskValue &value, const CMValuesWorker::Kept &kept)
        VESK_EXCLUDES(m_mutex);
    /// The writing thread.
    void run() VESK_EXCLUDES(m_mutex);
    void write(Changes changes) VESK_EXCLUDES(m_mutex);
    KeptSettings changed(const Changes &changes) const;
    Result<void, files::Problem> bringToDisk(const KeptSettings &settings);
    void tellOfWriting(const Result<void, files::Problem> &written);
    /// Back on the main thread.
    void deliver() VESK_EXCLUDES(m_mutex);

    const QString m_folder;
    const HostValues m_definitions;
    CMValuesWorker *const m_values;
    QHash<CMPath, VeskValue> m_overruled;

    /// The writing thread's while there is one, else the main thread's.
    files::FileLock m_lock;
    Result<void, files::Problem> m_held; ///< whether the folder is
    SettingsFile m_file;
    MemberIdFile m_memberIdFile;
    KeptSettings m_kept; ///< what is on the disk
    bool m_isUnsure = true; ///< whether it is: a write has failed since
    bool m_isIdKept = false;
    bool m_isFailing = false;

    std::thread m_writer;
    VeskMutex m_mutex;
    std::condition_variable m_wake; ///< of both threads, when one of these has changed
    bool m_isOpen VESK_GUARDED_BY(m_mutex) = false;
    /// The writing thread is done with everything but its return.
    bool m_hasEnded VESK_GUARDED_BY(m_mutex) = false;
    Changes m_waiting VESK_GUARDED_BY(m_mutex);
    std::vector<Written> m_written VESK_GUARDED_BY(m_mutex);
};
