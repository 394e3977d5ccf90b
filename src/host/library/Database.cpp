// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Database.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "base/files/Descriptor.h"
#include "base/files/KeptFile.h"
#include "host/library/Schema.h"
#include "host/library/Sql.h"
#include "host/store/NotSaved.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

VESK_LOGGER("Host.Library")

namespace {

constexpr int PageBytes = 4096;
/// Of 1 KiB each: SQLite's cache.
constexpr int CacheBlocks = 256;
/// In pages: so much of the log is copied into the file at once.
constexpr int CheckpointPages = 100;

/// Problem::error for what is no error of the system's.
enum OwnError { Damaged = -1, LaterVersion = -2 };

TrString hostText(const char *text, const QVector<TrArg> &args = {})
{
    return TrString(QStringLiteral("Host"), QString::fromLatin1(text), QString(), -1, args);
}

std::string systemName(const QString &file)
{
    return QFile::encodeName(file).toStdString();
}

/// SQLite's primary result code as the system's number for it.
int systemErrorOf(int code)
{
    switch (code & 0xff) {
    case SQLITE_FULL:
        return ENOSPC;
    case SQLITE_READONLY:
        return EROFS;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return Damaged;
    default:
        return EIO;
    }
}

int versionOf(sqlite3 *database)
{
    SqlStatement version(database, "PRAGMA user_version");
    return version.next() ? int(version.number(0)) : -1;
}

/// What is wrong in the file; empty when nothing is, null when it could not be checked.
QString integrityFault(sqlite3 *database)
{
    SqlStatement check(database, "PRAGMA integrity_check(1)");
    if (!check.next())
        return {};
    const QString fault = check.text(0);
    return fault == QStringLiteral("ok") ? QStringLiteral("") : fault;
}

bool execute(sqlite3 *database, const QByteArray &sql)
{
    return sqlite3_exec(database, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

const QStringList &fileSuffixes()
{
    static const QStringList suffixes {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")};
    return suffixes;
}

} // namespace

void Database::CloseConnection::operator()(sqlite3 *connection) const
{
    sqlite3_close_v2(connection);
}

Database::Database(const QString &folder, Result<void, files::Problem> held, QObject *parent)
    : QObject(parent)
    , m_file(folder.isEmpty() ? QString() : folder + QStringLiteral("/library.sqlite"))
    , m_held(std::move(held))
    , m_queue([this](std::vector<Job> jobs) { perform(std::move(jobs)); })
{
    m_queue.open(QStringLiteral("Database"));
    run({}); // opens the file, so that problems are known from the start
}

Database::~Database() = default;

void Database::run(Work work, Done done)
{
    Job job {std::move(work), std::move(done)};
    if (m_queue.push(job) || !job.done)
        return;
    {
        const VeskMutexLock lock(m_mutex);
        m_finished.push_back({std::move(job.done), failure(diskBusyError().message().toString())});
    }
    QMetaObject::invokeMethod(this, &Database::deliver, Qt::QueuedConnection);
}

bool Database::close(std::chrono::steady_clock::time_point deadline)
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_queue.close(deadline))
        return false;
    m_connection.reset();
    deliver();
    return true;
}

TrString Database::problem() const
{
    const VeskMutexLock lock(m_mutex);
    return m_problem;
}

void Database::setProblem(const TrString &problem)
{
    {
        const VeskMutexLock lock(m_mutex);
        if (m_problem == problem)
            return;
        m_problem = problem;
    }
    QMetaObject::invokeMethod(this, &Database::problemChanged, Qt::QueuedConnection);
}

void Database::deliver()
{
    std::vector<Finished> finished;
    {
        const VeskMutexLock lock(m_mutex);
        finished.swap(m_finished);
    }
    for (const Finished &each : finished)
        each.done(each.result);
}

void Database::perform(std::vector<Job> jobs)
{
    for (Job &job : jobs) {
        auto result = perform(job.work);
        job.work = {};
        if (!job.done)
            continue;
        {
            const VeskMutexLock lock(m_mutex);
            m_finished.push_back({std::move(job.done), std::move(result)});
        }
        QMetaObject::invokeMethod(this, &Database::deliver, Qt::QueuedConnection);
    }
}

Result<QVariant, QString> Database::perform(const Work &work)
{
    // What could not be opened or written may be all right by now.
    if (!m_isLater && (!m_connection || m_isReadOnly))
        open();
    if (!m_connection)
        return failure(wordsFor(m_openProblem));
    if (!work)
        return QVariant();
    return inTransaction(work);
}

Result<QVariant, QString> Database::inTransaction(const Work &work)
{
    sqlite3 *const database = m_connection.get();
    Result<QVariant, QString> result = failure(QString());
    if (execute(database, "BEGIN")) {
        result = work(database);
        if (result && !execute(database, "COMMIT"))
            result = failure(QString());
    }
    if (result) {
        m_isFailing = false;
        return result;
    }
    // Before the rollback, which has a code of its own.
    const files::Problem problem = sqliteProblem(QStringLiteral("the library cannot be changed"));
    if (!sqlite3_get_autocommit(database))
        execute(database, "ROLLBACK");
    if (!result.error().isEmpty())
        return result;
    if (!std::exchange(m_isFailing, true))
        VESK_ERROR(m_file << ": " << problem.text);
    return failure(wordsFor(problem));
}

QString Database::wordsFor(const files::Problem &problem) const
{
    if (problem.error == LaterVersion) {
        return hostText(QT_TRANSLATE_NOOP("Host",
                            "What was kept belongs to a later version of this program, and stays "
                            "as it is."))
            .toString();
    }
    return notSavedError(problem).message().toString();
}

files::Problem Database::sqliteProblem(const QString &what) const
{
    const int code = m_connection ? sqlite3_errcode(m_connection.get()) : SQLITE_NOMEM;
    const char *words = m_connection ? sqlite3_errmsg(m_connection.get()) : "no memory";
    return {systemErrorOf(code), what.toStdString() + ": " + words};
}

/// Leaves a connection, or m_openProblem.
void Database::open()
{
    m_connection.reset();
    m_isReadOnly = false;
    auto opened = openFile();
    if (!opened && opened.error().error == Damaged && moveAside())
        opened = openFile();
    if (opened) {
        m_isFailing = false;
        if (!m_wasDamaged)
            setProblem({});
        return;
    }
    m_connection.reset();
    m_openProblem = opened.error();
    if (!std::exchange(m_isFailing, true))
        VESK_ERROR(m_file << ": " << m_openProblem.text);
    m_isLater = m_openProblem.error == LaterVersion;
    if (!m_isLater && !openToRead())
        m_connection.reset();
    if (m_isLater) {
        setProblem(hostText(QT_TRANSLATE_NOOP("Host",
            "What was kept belongs to a later version of this program, and stays as it is.")));
    } else {
        setProblem(notSavedError(m_openProblem).message());
    }
}

Result<void, files::Problem> Database::openFile()
{
    if (m_file.isEmpty()) {
        if (auto connected = connectTo(QStringLiteral(":memory:"), SQLITE_OPEN_READWRITE);
            !connected)
            return connected;
        return prepare();
    }
    if (!m_held)
        return m_held;
    if (auto made = makeFile(); !made)
        return made;
    if (auto connected = connectTo(m_file, SQLITE_OPEN_READWRITE); !connected)
        return connected;
    return prepare();
}

/// A file that cannot be written can still be read, without a look at what its log has.
Result<void, files::Problem> Database::openToRead()
{
    if (m_file.isEmpty() || !QFile::exists(m_file) || m_openProblem.error == Damaged)
        return failure(m_openProblem);
    if (auto regular = files::checkRegular(systemName(m_file)); !regular)
        return regular;
    QUrl url = QUrl::fromLocalFile(m_file);
    url.setQuery(QStringLiteral("immutable=1"));
    if (auto connected
        = connectTo(QString::fromLatin1(url.toEncoded()), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
        !connected)
        return connected;
    m_isReadOnly = true;
    if (versionOf(m_connection.get()) != int(librarySchema().size()))
        return failure(m_openProblem);
    return {};
}

/// Makes the file, because SQLite would make it for everybody; its other files take after it.
Result<void, files::Problem> Database::makeFile() const
{
    const std::string name = systemName(m_file);
    for (const QString &suffix : fileSuffixes()) {
        if (auto regular = files::checkRegular(systemName(m_file + suffix)); !regular)
            return regular;
    }
    if (QFile::exists(m_file))
        return {};
    auto made = files::openRegular(name, O_RDWR | O_CREAT, 0600);
    if (!made)
        return failure(std::move(made).error());
    if (auto closed = made->close(); !closed)
        return closed;
    // The name has to be on the disk before anything in the file counts.
    const files::Descriptor folder(
        ::open(systemName(QFileInfo(m_file).path()).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.isOpen() && ::fsync(folder.number()) != 0 && errno != EINVAL)
        return failure(files::Problem::ofSystem("its folder cannot be brought to the disk"));
    return {};
}

Result<void, files::Problem> Database::connectTo(const QString &name, int flags)
{
    sqlite3 *connection = nullptr;
    const int code = sqlite3_open_v2(name.toUtf8().constData(), &connection,
        flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    m_connection.reset(connection);
    if (code != SQLITE_OK)
        return failure(sqliteProblem(QStringLiteral("the library cannot be opened")));
    // A file of a later version is not to change, not even by what is in its log.
    sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    return {};
}

/// Checks the file and brings its tables up to date.
Result<void, files::Problem> Database::prepare()
{
    sqlite3 *const database = m_connection.get();
    // No other process uses it, and memory that is shared through a file would end the host when
    // the disk is full.
    if (!execute(database, "PRAGMA locking_mode=EXCLUSIVE"))
        return failure(sqliteProblem(QStringLiteral("the library cannot be locked")));
    const int version = versionOf(database);
    if (version < 0)
        return failure(sqliteProblem(QStringLiteral("the library cannot be read")));
    if (version > int(librarySchema().size())) {
        return failure(files::Problem {
            LaterVersion, "it was written by a later version of this program, and stays as it is"});
    }
    const QString fault = integrityFault(database);
    if (fault.isNull())
        return failure(sqliteProblem(QStringLiteral("the library cannot be checked")));
    if (!fault.isEmpty())
        return failure(files::Problem {Damaged, fault.toStdString()});
    const QByteArray settings = "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
                                "PRAGMA cache_size=-"
        + QByteArray::number(CacheBlocks)
        + "; PRAGMA wal_autocheckpoint=" + QByteArray::number(CheckpointPages)
        + "; PRAGMA max_page_count=" + QByteArray::number(MaxBytes / PageBytes);
    if (!execute(database, settings))
        return failure(sqliteProblem(QStringLiteral("the library cannot be prepared")));
    if (auto migrated = migrate(version); !migrated)
        return migrated;
    sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
    return {};
}

Result<void, files::Problem> Database::migrate(int version)
{
    const auto &steps = librarySchema();
    if (version == int(steps.size()))
        return {};
    QByteArray sql("BEGIN;");
    for (std::size_t step = std::size_t(version); step < steps.size(); ++step)
        sql += steps[step];
    sql += "PRAGMA user_version=" + QByteArray::number(int(steps.size())) + ";COMMIT";
    if (execute(m_connection.get(), sql))
        return {};
    const files::Problem problem
        = sqliteProblem(QStringLiteral("the library's tables cannot be made"));
    execute(m_connection.get(), "ROLLBACK");
    return failure(problem);
}

/// False, and logged, when the file stays where it is.
bool Database::moveAside()
{
    m_connection.reset();
    const QString wanted = m_file + QStringLiteral(".damaged-")
        + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd"));
    QString name = wanted;
    for (int number = 2; QFile::exists(name) && number <= files::KeptFile::MaxDamaged; ++number)
        name = wanted + QLatin1Char('.') + QString::number(number);
    // What is left of the log belongs to the file, and must not be applied to a new one: it goes
    // first.
    for (int i = fileSuffixes().size() - 1; i >= 0; --i) {
        const std::string from = systemName(m_file + fileSuffixes().at(i));
        const std::string to = systemName(name + fileSuffixes().at(i));
        if (::rename(from.c_str(), to.c_str()) != 0 && errno != ENOENT) {
            VESK_ERROR(m_file << " is damaged, and cannot be moved to " << name);
            return false;
        }
    }
    VESK_ERROR(m_file << " is damaged; it is kept as " << name << ", and a new one is begun.");
    m_wasDamaged = true;
    setProblem(hostText(QT_TRANSLATE_NOOP("Host",
                            "The file with recents, favorites and presets was damaged. It is kept "
                            "as %1, and a new one was begun."),
        {TrArg(QFileInfo(name).fileName())}));
    return true;
}
