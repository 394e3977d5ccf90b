// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/store/PluginStores.h"

#include "api/nodes/CMRootWorker.h"
#include "api/store/VeskStore.h"
#include "tests/api/nodes/TestNodes.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallDisk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <atomic>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace {

std::atomic<bool> diskIsStuck {false};
std::atomic<int> syncs {0};

} // namespace

/// Replaces the C library's fsync(): counts the calls and simulates a slow disk.
extern "C" int fsync(int descriptor)
{
    ++syncs;
    while (diskIsStuck)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace {

using testing::HasSubstr;

QVariant bytes(const char *value)
{
    return QByteArray(value);
}

QString name(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// A store, as the process of its plug-in reaches it.
class PluginStoreTest : public testing::Test {
protected:
    PluginStoreTest()
        : m_folder(m_temporary.filePath(QStringLiteral("deep/state")))
        , m_file(m_folder + QStringLiteral("/plugins/radio.store"))
    {
        openAgain();
    }
    ~PluginStoreTest() override { diskIsStuck = false; }

    /// As another host.
    void openAgain(const Result<void, files::Problem> &held = {})
    {
        m_stores.reset();
        m_stores = std::make_unique<PluginStores>(m_folder, held);
        m_store = m_stores->open(QStringLiteral("radio"));
    }

    Answer send(const QVariant &value, const QString &role = VeskRoles::Value())
    {
        const Answer answer;
        m_store->request(CMSetDataRequest(m_store->path(), role, value, answer.reply()));
        return answer;
    }
    static std::string outcome(const Answer &answer)
    {
        return answer.wait() ? answer.errorText().toStdString() : "no answer";
    }
    std::string write(const QVariantHash &values) { return outcome(send(values)); }

    QVariantHash values() const
    {
        return m_store->config().value(QStringLiteral("values")).toHash();
    }

    void damage(const QByteArray &content, const QString &suffix = QString())
    {
        QFile file(m_file + suffix);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QByteArray content(const QString &suffix = QString()) const
    {
        QFile file(m_file + suffix);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_temporary;
    QString m_folder;
    QString m_file;
    std::unique_ptr<PluginStores> m_stores;
    PluginStoreAccess *m_store = nullptr;
};

TEST_F(PluginStoreTest, IsEmptyAtFirstAndMakesNoFile)
{
    EXPECT_EQ(m_store->config(),
        QVariantHash({{QStringLiteral("path"), QStringLiteral("store:radio")},
            {QStringLiteral("values"), QVariantHash()}}));
    EXPECT_EQ(write({}), "");
    EXPECT_EQ(write({{name("missing"), QVariant()}}), "");
    EXPECT_TRUE(m_stores->close(std::chrono::steady_clock::now() + std::chrono::seconds(10)));
    EXPECT_FALSE(QFile::exists(m_folder + QStringLiteral("/plugins/radio.store.last-good")));
}

TEST_F(PluginStoreTest, AWriteIsOnTheDiskWhenItIsAnswered)
{
    EXPECT_EQ(write({{name("a"), bytes("1")}, {name("ä/ß\n"), bytes("\xff")}}), "");
    EXPECT_TRUE(content().contains('\xff'));
    EXPECT_EQ(write({{name("a"), QVariant()}, {name("empty"), bytes("")}}), "");
    const QVariantHash expected {{name("ä/ß\n"), bytes("\xff")}, {name("empty"), bytes("")}};
    EXPECT_EQ(values(), expected);
    openAgain();
    EXPECT_EQ(values(), expected);
    EXPECT_FALSE(values().value(name("empty")).isNull()) << "an empty value is a value";
}

TEST_F(PluginStoreTest, WritesOfASlowDiskWaitInTheirOrderAndAreWrittenTogether)
{
    EXPECT_EQ(write({{name("last"), bytes("0")}}), "");
    ASSERT_TRUE(spinUntil([&] { return !content(QStringLiteral(".last-good")).isEmpty(); }));
    openAgain();
    const int before = syncs;
    diskIsStuck = true;
    std::vector<Answer> answers {send(QVariantHash {{name("first"), bytes("x")}})};
    ASSERT_TRUE(spinUntil([&] { return syncs > before; }));
    for (int i = 1; i <= 50; ++i)
        answers.push_back(send(QVariantHash {{name("last"), QByteArray::number(i)}}));
    EXPECT_FALSE(answers.front().isThere());
    EXPECT_EQ(values(), QVariantHash({{name("last"), bytes("0")}}));
    diskIsStuck = false;
    for (const Answer &answer : answers)
        EXPECT_EQ(outcome(answer), "");
    EXPECT_EQ(values().value(name("last")), bytes("50"));
    m_stores.reset();
    // Two writes of the file and its copy; each of the four syncs the file and its folder.
    EXPECT_EQ(syncs - before, 8);
}

TEST_F(PluginStoreTest, RefusesWhatIsNoHashOfKeysAndBytes)
{
    EXPECT_EQ(write({{name("a"), bytes("1")}}), "");
    const QString longest(VeskStore::MaxKeyBytes, QLatin1Char('k'));
    EXPECT_EQ(write({{longest, bytes("1")}}), "");
    const QVariant wrong[] = {QVariant(), 5, QStringLiteral("text"), QVariantList {1}, bytes("x"),
        QVariantHash {{name("a"), 5}}, QVariantHash {{name("a"), QStringLiteral("text")}},
        QVariantHash {{name("a"), QVariantHash()}}, QVariantHash {{name("a"), QVariantList()}},
        QVariantHash {{name("b"), bytes("good")}, {name("c"), true}},
        QVariantHash {{QString(), bytes("1")}},
        QVariantHash {{longest + QLatin1Char('k'), bytes("1")}},
        QVariantHash {{QString(101, QChar(0xe4)), bytes("1")}},
        QVariantHash {{QString(QChar(0xd800)), bytes("1")}}};
    for (const QVariant &value : wrong) {
        EXPECT_EQ(outcome(send(value)), "Not saved: these are no keys with values.")
            << value.typeName();
    }
    EXPECT_EQ(outcome(send(QVariantHash(), VeskRoles::Activate())),
        "Not saved: these are no keys with values.");
    const Answer rows;
    m_store->request(CMGetDataRequest(m_store->path(), {VeskRoles::Value()}, rows.reply()));
    EXPECT_EQ(rows.errorName(), CMError::NoNodeName()) << "the values are in the configuration";
    EXPECT_EQ(values(), QVariantHash({{name("a"), bytes("1")}, {longest, bytes("1")}}));
}

TEST_F(PluginStoreTest, HoldsOneMebibyteAndNotAByteMore)
{
    const QByteArray most(VeskStore::MaxBytes - 1, 'x');
    const std::string tooMuch = "Not saved: a plug-in may not keep that much.";
    EXPECT_EQ(write({{name("a"), most + 'x'}}), tooMuch);
    EXPECT_EQ(write({{name("a"), most}}), "");
    EXPECT_EQ(write({{name("b"), bytes("")}}), tooMuch);
    EXPECT_EQ(write({{name("a"), most}}), "") << "what is replaced does not count";
    EXPECT_EQ(write({{name("a"), QVariant()}, {name("b"), most}}), "");
    openAgain();
    EXPECT_EQ(values(), QVariantHash({{name("b"), most}}));
    EXPECT_EQ(write({{name("a"), bytes("")}}), tooMuch);
}

TEST_F(PluginStoreTest, HoldsTenThousandKeysAndNotOneMore)
{
    QVariantHash many;
    for (int i = 0; i < VeskStore::MaxKeys; ++i)
        many.insert(QString::number(i), bytes(""));
    EXPECT_EQ(write(many), "");
    EXPECT_EQ(write({{name("more"), bytes("")}}), "Not saved: a plug-in may not keep that much.");
    EXPECT_EQ(write({{name("0"), QVariant()}, {name("more"), bytes("")}}), "");
    many.insert(name("more"), bytes(""));
    EXPECT_EQ(write(many), "Not saved: a plug-in may not keep that much.");
    EXPECT_EQ(values().size(), VeskStore::MaxKeys);
    openAgain();
    EXPECT_EQ(values().size(), VeskStore::MaxKeys);
}

TEST_F(PluginStoreTest, AWriteCountsWhateverBecameOfTheOneBefore)
{
    const int before = syncs;
    diskIsStuck = true;
    const Answer first = send(QVariantHash {{name("a"), bytes("1")}});
    ASSERT_TRUE(spinUntil([&] { return syncs > before; }));
    const Answer tooMuch = send(QVariantHash {{name("b"), QByteArray(VeskStore::MaxBytes, 'x')}});
    const Answer last = send(QVariantHash {{name("c"), bytes("3")}});
    diskIsStuck = false;
    EXPECT_EQ(outcome(first), "");
    EXPECT_EQ(outcome(tooMuch), "Not saved: a plug-in may not keep that much.");
    EXPECT_EQ(outcome(last), "");
    EXPECT_EQ(values(), QVariantHash({{name("a"), bytes("1")}, {name("c"), bytes("3")}}));
}

TEST_F(PluginStoreTest, AFloodIsRefusedWhileTheDiskIsBusy)
{
    const int before = syncs;
    diskIsStuck = true;
    const Answer first = send(QVariantHash {{name("a"), bytes("1")}});
    ASSERT_TRUE(spinUntil([&] { return syncs > before; }));
    std::vector<Answer> large;
    for (int i = 0; i < 10; ++i)
        large.push_back(send(QVariantHash {{name("a"), QByteArray(VeskStore::MaxBytes / 2, 'x')}}));
    std::vector<Answer> small;
    for (int i = 0; i < 300; ++i)
        small.push_back(send(QVariantHash {{name("b"), QVariant()}}));
    const auto refused = [](const std::vector<Answer> &answers) {
        int count = 0;
        for (const Answer &answer : answers)
            count += answer.isThere() && answer.isError();
        return count;
    };
    EXPECT_EQ(refused(large), 3) << "with their keys, seven of them are 4 MiB";
    EXPECT_EQ(refused(small), 300 - (256 - 7));
    EXPECT_EQ(outcome(small.back()), "Not saved: too much is waiting for the disk.");
    diskIsStuck = false;
    EXPECT_EQ(outcome(first), "");
    EXPECT_EQ(outcome(small.front()), "");
    EXPECT_EQ(write({{name("a"), bytes("2")}}), "") << "and then there is room again";
}

TEST_F(PluginStoreTest, IsSettledOnceItsWritesAreInTheConfiguration)
{
    QObject context;
    int calls = 0;
    QByteArray seen;
    const auto look = [&] {
        seen = values().value(name("a")).toByteArray();
        ++calls;
    };
    m_store->whenSettled(&context, look);
    EXPECT_TRUE(spinUntil([&] { return calls == 1; }));
    const int before = syncs;
    diskIsStuck = true;
    const Answer first = send(QVariantHash {{name("a"), bytes("1")}});
    ASSERT_TRUE(spinUntil([&] { return syncs > before; }));
    const Answer second = send(QVariantHash {{name("a"), bytes("2")}});
    m_store->whenSettled(&context, look);
    EXPECT_FALSE(spinUntil([&] { return calls > 1; }, 50));
    diskIsStuck = false;
    EXPECT_TRUE(spinUntil([&] { return calls == 2; }));
    EXPECT_EQ(seen, QByteArray("2"));
}

TEST_F(PluginStoreTest, ClosingWaitsForTheDiskUntilItsTimeIsUp)
{
    const int before = syncs;
    diskIsStuck = true;
    const Answer answer = send(QVariantHash {{name("a"), bytes("1")}});
    ASSERT_TRUE(spinUntil([&] { return syncs > before; }));
    EXPECT_FALSE(m_stores->close(std::chrono::steady_clock::now() + std::chrono::milliseconds(20)));
    EXPECT_EQ(write({{name("b"), bytes("1")}}), "Not saved: too much is waiting for the disk.");
    diskIsStuck = false;
    EXPECT_TRUE(m_stores->close(std::chrono::steady_clock::now() + std::chrono::seconds(10)));
    EXPECT_EQ(outcome(answer), "");
}

TEST_F(PluginStoreTest, LastsUntilTheEndWithoutAFolder)
{
    m_folder.clear();
    openAgain();
    EXPECT_EQ(write({{name("a"), bytes("1")}}), "");
    EXPECT_EQ(values(), QVariantHash({{name("a"), bytes("1")}}));
    openAgain();
    EXPECT_EQ(values(), QVariantHash());
}

TEST_F(PluginStoreTest, WritesNothingToAFolderThatIsNotHeld)
{
    EXPECT_EQ(write({{name("a"), bytes("1")}}), "");
    openAgain(failure(files::Problem {EACCES, "it is not ours"}));
    const QByteArray before = content();
    LogCapture log("Host");
    EXPECT_EQ(write({{name("a"), bytes("2")}}),
        "Not saved: the disk cannot be written. The log says more.");
    m_stores->close(std::chrono::steady_clock::now() + std::chrono::seconds(10));
    EXPECT_EQ(content(), before);
    EXPECT_THAT(log.lines(QStringLiteral("ERROR")).join(QLatin1Char('\n')).toStdString(),
        HasSubstr("it is not ours"));
}

// Damage.

TEST_F(PluginStoreTest, ADamagedFileIsSetAsideAndItsCopyIsUsed)
{
    const QVariantHash good {{name("a"), bytes("1")}};
    EXPECT_EQ(write(good), "");
    m_stores.reset();
    const QByteArray whole = content();
    QByteArray flipped = whole;
    flipped[flipped.size() - 1] = static_cast<char>(flipped.at(flipped.size() - 1) ^ 1);
    const QByteArray damages[] = {"", "nonsense", whole.left(20), whole.left(whole.size() - 1),
        whole + 'x', flipped, QByteArray(3 * 1024 * 1024, 'x')};
    int number = 1;
    for (const QByteArray &content : damages) {
        SCOPED_TRACE(number);
        damage(content);
        openAgain();
        EXPECT_EQ(values(), good);
        EXPECT_EQ(this->content(), whole) << "it is brought to the disk again";
        EXPECT_TRUE(QFile::exists(m_file + QStringLiteral(".damaged")));
        ++number;
        m_stores.reset();
    }
    QFile::remove(m_file);
    openAgain();
    EXPECT_EQ(values(), good) << "the file is missing";
    m_stores.reset();
    QFile::remove(m_file);
    ASSERT_EQ(::mkfifo(m_file.toLocal8Bit().constData(), 0600), 0);
    openAgain();
    EXPECT_EQ(values(), good) << "a FIFO is in its place";
}

TEST_F(PluginStoreTest, StartsEmptyWhenTheCopyIsDamagedToo)
{
    EXPECT_EQ(write({{name("a"), bytes("1")}}), "");
    m_stores.reset();
    damage("nonsense");
    damage("nonsense", QStringLiteral(".last-good"));
    openAgain();
    EXPECT_EQ(values(), QVariantHash());
    EXPECT_EQ(write({{name("b"), bytes("2")}}), "");
    openAgain();
    EXPECT_EQ(values(), QVariantHash({{name("b"), bytes("2")}}));
}

// A disk that refuses.

TEST_F(PluginStoreTest, AFullDiskRefusesTheWriteAndKeepsWhatWasThere)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP();
    m_folder = QString::fromStdString(disk.folder());
    openAgain();
    EXPECT_EQ(write({{name("a"), bytes("1")}}), "");
    LogCapture log("Host");
    disk.fill();
    EXPECT_EQ(write({{name("a"), bytes("2")}}), "Not saved: the disk is full.");
    EXPECT_EQ(write({{name("b"), bytes("2")}}), "Not saved: the disk is full.");
    EXPECT_EQ(values(), QVariantHash({{name("a"), bytes("1")}}));
    EXPECT_EQ(log.lines(QStringLiteral("ERROR")).size(), 1) << "told once";
    disk.makeRoom();
    EXPECT_EQ(write({{name("c"), bytes("3")}}), "");
    const QVariantHash kept {{name("a"), bytes("1")}, {name("c"), bytes("3")}};
    EXPECT_EQ(values(), kept);
    openAgain();
    EXPECT_EQ(values(), kept);
    m_stores.reset();
}

TEST_F(PluginStoreTest, OfWritesThatWaitTogetherThoseThatFitTheDiskAreTaken)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP();
    m_folder = QString::fromStdString(disk.folder());
    openAgain();
    const int before = syncs;
    diskIsStuck = true;
    const Answer first = send(QVariantHash {{name("a"), bytes("1")}});
    ASSERT_TRUE(spinUntil([&] { return syncs > before; }));
    const Answer large = send(QVariantHash {{name("b"), QByteArray(300 * 1024, 'x')}});
    const Answer small = send(QVariantHash {{name("c"), bytes("3")}});
    diskIsStuck = false;
    EXPECT_EQ(outcome(first), "");
    EXPECT_EQ(outcome(large), "Not saved: the disk is full.");
    EXPECT_EQ(outcome(small), "");
    EXPECT_EQ(values(), QVariantHash({{name("a"), bytes("1")}, {name("c"), bytes("3")}}));
    m_stores.reset();
}

// Several plug-ins.

TEST_F(PluginStoreTest, EachPluginHasItsOwn)
{
    PluginStoreAccess *const other = m_stores->open(QStringLiteral("other"));
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(m_stores->open(QStringLiteral("radio")), nullptr) << "an id twice";
    EXPECT_EQ(write({{name("a"), bytes("1")}}), "");
    const Answer answer;
    other->request(CMSetDataRequest(other->path(), VeskRoles::Value(),
        QVariantHash {{name("a"), bytes("other")}}, answer.reply()));
    EXPECT_EQ(outcome(answer), "");
    EXPECT_EQ(values().value(name("a")), bytes("1"));
    openAgain();
    EXPECT_EQ(values().value(name("a")), bytes("1"));
}

TEST_F(PluginStoreTest, NobodyFindsAStoreAtTheRoot)
{
    CMRootWorker root;
    root.addWorker(PluginStoreAccess::prefix(), m_stores.get());
    const Answer write = setData(
        root, m_store->path(), VeskRoles::Value(), QVariantHash {{name("a"), bytes("1")}});
    const Answer read = getData(root, m_store->path(), {VeskRoles::Value()});
    ASSERT_TRUE(write.wait() && read.wait());
    EXPECT_EQ(write.errorName(), CMError::NoNodeName());
    EXPECT_EQ(read.errorName(), CMError::NoNodeName());
    EXPECT_EQ(values(), QVariantHash());
    root.removeWorker(m_stores.get());
}

// The plug-in's side.

/// Passes requests on to a store, as the connection to a process does.
class Passage : public CMAbstractWorker {
public:
    explicit Passage(PluginStoreAccess *store)
        : m_store(store)
    {
    }
    void request(CMRequest request) override { m_store->request(request); }

private:
    PluginStoreAccess *const m_store;
};

class VeskStoreTest : public PluginStoreTest {
protected:
    VeskStoreTest()
        : m_passage(m_store)
    {
        m_root.addWorker(PluginStoreAccess::prefix(), &m_passage);
    }
    ~VeskStoreTest() override { m_root.removeWorker(&m_passage); }

    static QVariantHash configOf(PluginStoreAccess &store)
    {
        return {{QStringLiteral("store"), store.config()}};
    }
    static std::string outcome(VeskStore &store, const VeskStore::Changes &changes)
    {
        std::string said = "no answer";
        bool isDone = false;
        store.write(changes, [&](const CMError &error) {
            said = error.message().toString().toStdString();
            isDone = true;
        });
        EXPECT_FALSE(isDone) << "through the event loop";
        EXPECT_TRUE(spinUntil([&] { return isDone; }));
        return said;
    }

    CMRootWorker m_root;
    Passage m_passage;
};

TEST_F(VeskStoreTest, ReadsWhatItHasWritten)
{
    {
        VeskStore store(configOf(*m_store));
        EXPECT_TRUE(store.isAvailable());
        EXPECT_EQ(store.keys(), QStringList());
        EXPECT_EQ(outcome(store, {{name("a"), "1"}, {name("b"), ""}, {name("c"), "3"}}), "");
        EXPECT_EQ(outcome(store, {{name("c"), QByteArray()}}), "");
        EXPECT_EQ(store.value(name("a")), QByteArray("1"));
        EXPECT_TRUE(store.contains(name("b")));
        EXPECT_FALSE(store.contains(name("c")));
    }
    const VeskStore store(configOf(*m_store));
    EXPECT_EQ(store.value(name("a")), QByteArray("1"));
    EXPECT_TRUE(store.contains(name("b")));
    EXPECT_FALSE(store.value(name("b")).isNull());
    EXPECT_FALSE(store.contains(name("c")));
    EXPECT_TRUE(store.value(name("c")).isNull());
}

TEST_F(VeskStoreTest, ARefusedWriteChangesNothing)
{
    VeskStore store(configOf(*m_store));
    EXPECT_EQ(outcome(store, {{name("a"), "1"}}), "");
    EXPECT_EQ(outcome(store, {{name("a"), "2"}, {name("b"), QByteArray(VeskStore::MaxBytes, 'x')}}),
        "Not saved: a plug-in may not keep that much.");
    EXPECT_EQ(store.value(name("a")), QByteArray("1"));
    EXPECT_FALSE(store.contains(name("b")));
}

TEST_F(VeskStoreTest, IsUnavailableWithoutAHostThatKeepsIt)
{
    VeskStore store {QVariantHash()};
    EXPECT_FALSE(store.isAvailable());
    EXPECT_NE(outcome(store, {{name("a"), "1"}}), "");
    EXPECT_EQ(store.keys(), QStringList());
}

TEST_F(VeskStoreTest, AWriteIsCarriedOutThoughTheStoreIsGone)
{
    bool isDone = false;
    {
        VeskStore store(configOf(*m_store));
        store.write({{name("a"), "1"}}, [&](const CMError &) { isDone = true; });
    }
    EXPECT_TRUE(spinUntil([&] { return !values().isEmpty(); }));
    EXPECT_FALSE(isDone);
}

} // namespace
