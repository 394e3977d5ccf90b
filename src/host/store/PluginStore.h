// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "base/files/Problem.h"
#include "host/store/CheckedFile.h"
#include "host/store/DiskQueue.h"
#include "plugin/supervision/PluginStoreAccess.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>

#include <memory>
#include <vector>

/// What one plug-in keeps, in the file FOLDER/ID.store. A write is answered once it is on the disk.
/// Made and destroyed on the main thread; a thread of its own does the writing.
class PluginStore : public PluginStoreAccess {
public:
    /// Of the writes that wait, keys and values together; one more write is refused then. An empty
    /// queue takes whatever a store can hold.
    static constexpr qint64 MaxWaitingBytes = 4 * 1024 * 1024;

    /// Reads the file. With an empty \a folder the values last until the host ends. \a held: why
    /// the folder must not be written, if that is so.
    PluginStore(const QString &id, const QString &folder, Result<void, files::Problem> held);
    /// As close(), but waits as long as it takes.
    ~PluginStore() override;

    const CMPath &path() const override { return m_path; }
    QVariantHash config() const override VESK_EXCLUDES(m_mutex);
    void whenSettled(QObject *context, std::function<void()> function) override
        VESK_EXCLUDES(m_mutex);
    void request(const CMRequest &request) override VESK_EXCLUDES(m_mutex);

    /// Waits until all writes are answered; later ones are refused. Returns false when that takes
    /// beyond \a deadline.
    bool close(std::chrono::steady_clock::time_point deadline);

private:
    struct Contents {
        QMap<QByteArray, QByteArray> values; ///< by key in UTF-8
        qint64 bytes = 0; ///< keys and values together
    };
    struct Change {
        QHash<QByteArray, QByteArray> values; ///< null for a key that is removed
        qint64 bytes = 0;
        CMReply<QVariant> reply;
        CMError error;
    };
    using Changes = std::vector<Change>;

    static Result<Change, CMError> changeOf(const CMRequest &request);
    static bool apply(const Change &change, Contents &contents);

    void write(Changes changes) VESK_EXCLUDES(m_mutex);
    Result<void, files::Problem> writeTogether(Changes::iterator begin, Changes::iterator end)
        VESK_EXCLUDES(m_mutex);
    Result<void, files::Problem> bringToDisk(const Contents &contents);
    void tellOfWriting(const Result<void, files::Problem> &written);

    const CMPath m_path;
    const QString m_folder;

    /// The writing thread's while there is one, else the main thread's.
    const Result<void, files::Problem> m_held;
    CheckedFile m_file;
    bool m_isUnsure = true; ///< whether the file holds m_contents: a write has failed since
    bool m_isFailing = false;

    mutable VeskMutex m_mutex;
    /// On the disk. Changed by the writing thread alone.
    Contents m_contents VESK_GUARDED_BY(m_mutex);
    qint64 m_waitingBytes VESK_GUARDED_BY(m_mutex) = 0;
    int m_unsettled VESK_GUARDED_BY(m_mutex) = 0; ///< writes without an answer
    std::vector<std::shared_ptr<CMReplyAbstractData>> m_settling VESK_GUARDED_BY(m_mutex);

    DiskQueue<Change> m_queue; ///< last: its thread uses the others
};
