// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/core/TrString.h"
#include "base/Result.h"
#include "base/files/Problem.h"
#include "host/store/DiskQueue.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

struct sqlite3;

/// What the host remembers, in the SQLite file library.sqlite of the state folder, which is for its
/// owner alone. A thread of its own, "Database", opens the file and does all the work, one piece
/// after another; nobody waits for it. What was answered is on the disk (WAL, synchronous=FULL).
///
/// A file that is damaged is moved to library.sqlite.damaged-DATE, and an empty one takes its
/// place. A file of a later version stays as it is, and all work is refused. While the file cannot
/// be written, it is read only; while it cannot be opened, each piece of work tries that again.
///
/// Made and destroyed on the main thread, with an event loop.
class Database : public QObject {
    Q_OBJECT

public:
    /// The file grows no further.
    static constexpr int MaxBytes = 64 * 1024 * 1024;

    /// Runs on the database's thread, within a transaction that is committed if it succeeds and
    /// undone if it fails. An empty failure stands for what SQLite reports; any other one is in
    /// words for whoever asked. Must not begin or end transactions.
    using Work = std::function<Result<QVariant, QString>(sqlite3 *)>;
    /// Called once, on the main thread through its event loop: the result of the work once it is on
    /// the disk, or why it is not, in words. Dropped when the database is destroyed before.
    using Done = std::function<void(const Result<QVariant, QString> &)>;

    /// With an empty \a folder everything lasts until the host ends. \a held: why the folder must
    /// not be written, if that is so.
    Database(const QString &folder, Result<void, files::Problem> held, QObject *parent = nullptr);
    /// As close(), but waits as long as it takes.
    ~Database() override;

    /// Any thread. \a done may be empty.
    void run(Work work, Done done = {}) VESK_EXCLUDES(m_mutex);

    /// Waits until all work is done, and calls the functions that wait for it; later work is
    /// refused. Returns false when that takes beyond \a deadline. Main thread.
    bool close(std::chrono::steady_clock::time_point deadline);

    /// What a listener should know about the file; empty when nothing is wrong with it. Main
    /// thread.
    TrString problem() const VESK_EXCLUDES(m_mutex);

Q_SIGNALS:
    void problemChanged();

private:
    struct Job {
        Work work;
        Done done;
    };
    struct Finished {
        Done done;
        Result<QVariant, QString> result;
    };
    struct CloseConnection {
        void operator()(sqlite3 *connection) const;
    };
    using Connection = std::unique_ptr<sqlite3, CloseConnection>;

    /// All of these on the database's thread.
    void perform(std::vector<Job> jobs) VESK_EXCLUDES(m_mutex);
    Result<QVariant, QString> perform(const Work &work);
    Result<QVariant, QString> inTransaction(const Work &work);
    void open();
    Result<void, files::Problem> openFile();
    Result<void, files::Problem> openToRead();
    Result<void, files::Problem> makeFile() const;
    Result<void, files::Problem> connectTo(const QString &name, int flags);
    Result<void, files::Problem> prepare();
    Result<void, files::Problem> migrate(int version);
    bool moveAside();
    QString wordsFor(const files::Problem &problem) const;
    files::Problem sqliteProblem(const QString &what) const;
    void setProblem(const TrString &problem) VESK_EXCLUDES(m_mutex);
    /// Back on the main thread.
    void deliver() VESK_EXCLUDES(m_mutex);

    const QString m_file; ///< empty: in memory

    /// The database's thread's.
    const Result<void, files::Problem> m_held;
    Connection m_connection;
    bool m_isReadOnly = false;
    bool m_isLater = false; ///< of a later version
    bool m_wasDamaged = false;
    bool m_isFailing = false; ///< the log has said so
    files::Problem m_openProblem; ///< why there is no connection

    mutable VeskMutex m_mutex;
    TrString m_problem VESK_GUARDED_BY(m_mutex);
    std::vector<Finished> m_finished VESK_GUARDED_BY(m_mutex);

    DiskQueue<Job> m_queue; ///< last: its thread uses the others
};
