// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/values/CMError.h"
#include "base/Result.h"
#include "base/files/Problem.h"
#include "host/access/DeviceList.h"
#include "host/http/Caller.h"
#include "host/store/CheckedFile.h"
#include "host/store/DiskQueue.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

/// The devices that may come in from the network, kept in the file devices.json of the state
/// folder, with the SHA-256 of their tokens and never the tokens themselves.
///
/// What gives access (a new device, a listener that becomes an owner) counts once it is on the
/// disk. What takes access away counts at once, whatever the disk says; when it cannot be saved,
/// the answer says so, and the write is tried again every RetryTime.
///
/// Lives on the main thread, with an event loop; find() may be called from any thread. A thread of
/// its own writes to the disk. Callbacks are called once, on the main thread and maybe before the
/// function returns, with an empty error for success; those that are open when this is destroyed
/// are dropped.
class PairedDevices : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::minutes RetryTime {1};
    /// How often the time and the address at which a device was last seen are written, at most.
    static constexpr std::chrono::hours SeenInterval {24};

    using Answer = std::function<void(const CMError &error)>;

    /// A device that has just been paired; nothing else ever has its token.
    struct Added {
        PairedDevice device;
        QByteArray token; ///< 43 characters of base64url: 256 bits
    };
    using AddedAnswer = std::function<void(const Result<Added, CMError> &)>;

    /// Reads the file. With an empty \a folder the devices are known until the host ends. \a held:
    /// why the folder must not be written, if that is so.
    PairedDevices(
        const QString &folder, Result<void, files::Problem> held, QObject *parent = nullptr);
    /// As close(), but waits as long as it takes.
    ~PairedDevices() override;

    /// Waits until all changes are written and answered; later ones are refused. Returns false when
    /// that takes beyond \a deadline.
    bool close(std::chrono::steady_clock::time_point deadline);

    /// Whose \a token this is, if it is anybody's. Any thread. When accessChanged() is emitted, the
    /// outcome is the new one already. Compares in constant time.
    std::optional<Caller> find(const QByteArray &token) const VESK_EXCLUDES(m_mutex);

    /// What the device with this id may do at present, if it is paired. Any thread.
    std::optional<Caller> current(const QString &id) const VESK_EXCLUDES(m_mutex);

    /// In the order in which they were paired.
    QVector<PairedDevice> devices() const VESK_EXCLUDES(m_mutex);
    /// Whether no more devices can be paired.
    bool isFull() const VESK_EXCLUDES(m_mutex);

    /// \a name: one that DeviceList::isName() accepts. \a address: the IP address that the device
    /// comes from.
    void add(
        const QString &name, AccessRole role, const QString &address, const AddedAnswer &answer);
    void rename(const QString &id, const QString &name, const Answer &answer);
    void setRole(const QString &id, AccessRole role, const Answer &answer);
    void revoke(const QString &id, const Answer &answer);
    /// The device has just come in from this IP address. For every request, if need be: it is
    /// cheap.
    void seen(const QString &id, const QString &address) VESK_EXCLUDES(m_mutex);

    /// Why no more devices can be paired.
    static CMError fullError();

Q_SIGNALS:
    /// The device may do something else than before, or nothing any more: whatever it has open is
    /// to be closed.
    void accessChanged(const QString &id);
    /// Something in devices() has changed, but for when and where a device was last seen.
    void changed();

private:
    struct Change {
        enum Kind { Add, Rename, Promote, Demote, Revoke, Seen, Retry };

        Kind kind = Retry;
        KeptDevice device; ///< its id says which one; of the rest, what the kind is about
        Answer answer;
        QByteArray token {}; ///< of Add, as is the next
        AddedAnswer added {};
        CMError error {};

        bool takesAccess() const { return kind == Demote || kind == Revoke; }
        void finish() const;
    };
    using Changes = std::vector<Change>;

    void push(Change change);
    void retry();
    static bool apply(const Change &change, DeviceList &list);

    /// The writing thread.
    void write(Changes changes) VESK_EXCLUDES(m_mutex);
    Result<void, files::Problem> bringToDisk(const DeviceList &devices);
    void tellOfWriting(const Result<void, files::Problem> &written);
    /// Back on the main thread.
    void deliver() VESK_EXCLUDES(m_mutex);
    void deliver(const Change &change) VESK_EXCLUDES(m_mutex);
    void settle() VESK_EXCLUDES(m_mutex);

    const QString m_folder;

    /// The main thread's.
    QTimer m_retry;
    int m_adding = 0; ///< devices on their way to the disk
    QSet<QString> m_promoting; ///< who is to become an owner once that is on the disk
    QHash<QString, QDateTime> m_seenKept; ///< by id: the time that was sent to the disk last
    Changes m_overdue; ///< they take access, and the queue was full

    /// The writing thread's while there is one, else the main thread's.
    const Result<void, files::Problem> m_held;
    CheckedFile m_file;
    DeviceList m_kept; ///< what the file is to hold
    bool m_isUnsure = true; ///< whether it does: a write has failed since
    bool m_isFailing = false;

    mutable VeskMutex m_mutex;
    /// Who may come in. Changed on the main thread alone.
    DeviceList m_devices VESK_GUARDED_BY(m_mutex);
    Changes m_written VESK_GUARDED_BY(m_mutex); ///< to be delivered
    bool m_isSaved VESK_GUARDED_BY(m_mutex) = true; ///< the outcome of the last write

    DiskQueue<Change> m_queue; ///< last: its thread uses the others
};
