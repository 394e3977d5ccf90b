// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/SettingsStore.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskValuePaths.h"
#include "host/settings/HostValues.h"
#include "plugin/supervision/PluginDescriptor.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <atomic>
#include <sys/stat.h>
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

/// Of a host with the plug-in whose settings are kept here.
const HostValues &known()
{
    static const HostValues values = [] {
        HostValues with;
        EXPECT_TRUE(with.add(*PluginDescriptor::read(QStringLiteral(TUNEIN_DESCRIPTOR))));
        return with;
    }();
    return values;
}

class SettingsStoreTest : public testing::Test {
protected:
    SettingsStoreTest()
        : m_folder(m_temporary.filePath(QStringLiteral("deep/state")))
        , m_file(m_folder + QStringLiteral("/settings.json"))
    {
    }

    /// The settings of a host from its start to its end.
    struct Run {
        explicit Run(const QString &folder, const QString &pinnedPartner = QString(),
            const HostValues &definitions = known())
            : store(folder, definitions, &values)
        {
            definitions.defineIn(&values);
            if (!pinnedPartner.isNull()) {
                values.setValue(VeskTuneInPartnerIdPath(), VeskValue::fromString(pinnedPartner));
                values.pin(VeskTuneInPartnerIdPath());
            }
            const auto loaded = store.load();
            EXPECT_TRUE(loaded) << loaded.error().toStdString();
        }

        QString partner() const { return values.value(VeskTuneInPartnerIdPath()).string_(); }
        QString memberId() const { return values.value(VeskSystemMemberIdPath()).string_(); }

        /// A client's request; its response comes later.
        std::shared_ptr<CMReplyData<QVariant>> ask(const CMPath &path, const QVariant &value)
        {
            const auto data = std::make_shared<CMReplyData<QVariant>>();
            values.request(
                CMSetDataRequest(path, VeskRoles::Value(), value, CMReply<QVariant>(data)));
            return data;
        }
        /// The error message; empty when the change is kept.
        static std::string outcome(const std::shared_ptr<CMReplyData<QVariant>> &answer)
        {
            if (!spinUntil([&] { return answer->isFinished(); }))
                return "no answer";
            return answer->error().message().toString().toStdString();
        }
        std::string setPartner(const QString &id)
        {
            return outcome(ask(VeskTuneInPartnerIdPath(), id));
        }
        std::string setPartner(const char *id) { return setPartner(text(id)); }
        std::string setWizard(bool enabled)
        {
            return outcome(ask(VeskTuneInEnabledFixItWizardPath(), enabled));
        }

        CMValuesWorker values;
        SettingsStore store;
    };

    void write(const QByteArray &content, const QString &suffix = QString())
    {
        QDir().mkpath(m_folder);
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
    const QString m_folder;
    const QString m_file;
};

TEST_F(SettingsStoreTest, GivesTheDeviceAnIdOnce)
{
    QString id;
    {
        Run run(m_folder);
        id = run.memberId();
        EXPECT_THAT(id.toStdString(), testing::MatchesRegex("[0-9a-f]{32}"));
    }
    EXPECT_EQ(Run(m_folder).memberId(), id);
    EXPECT_NE(Run(m_temporary.filePath(QStringLiteral("other"))).memberId(), id);
}

TEST_F(SettingsStoreTest, AChangeIsOnTheDiskWhenItIsAnswered)
{
    {
        Run run(m_folder);
        EXPECT_EQ(run.setPartner("abc"), "");
        EXPECT_TRUE(content().contains("abc"));
        EXPECT_EQ(run.partner(), text("abc"));
        EXPECT_EQ(run.setWizard(false), "");
    }
    Run run(m_folder);
    EXPECT_EQ(run.partner(), text("abc"));
    EXPECT_FALSE(run.values.value(VeskTuneInEnabledFixItWizardPath()).bool_());
}

TEST_F(SettingsStoreTest, AChangeTakesEffectOnceItIsKept)
{
    Run run(m_folder);
    std::vector<std::shared_ptr<CMReplyData<QVariant>>> answers;
    for (int i = 0; i < 100; ++i)
        answers.push_back(run.ask(VeskTuneInPartnerIdPath(), QString::number(i)));
    // A change back to the present value completes like the others.
    answers.push_back(run.ask(VeskTuneInPartnerIdPath(), QString()));
    EXPECT_EQ(run.partner(), QString()) << "the event loop has not run yet";
    for (const auto &answer : answers)
        EXPECT_EQ(Run::outcome(answer), "");
    EXPECT_EQ(run.partner(), QString());
    EXPECT_FALSE(content().contains("partnerId"));
}

TEST_F(SettingsStoreTest, ASlowDiskDelaysOnlyChangesOfSettings)
{
    Run run(m_folder);
    const int before = syncs;
    diskIsStuck = true;
    std::vector<std::shared_ptr<CMReplyData<QVariant>>> answers;
    answers.push_back(run.ask(VeskTuneInPartnerIdPath(), text("first")));
    EXPECT_TRUE(spinUntil([&] { return syncs > before; }));
    for (int i = 0; i < 50; ++i)
        answers.push_back(run.ask(VeskTuneInPartnerIdPath(), QString::number(i)));
    EXPECT_FALSE(spinUntil([&] { return answers.front()->isFinished(); }, 50))
        << "answered before it is on the disk";
    EXPECT_EQ(run.partner(), QString());
    diskIsStuck = false;
    for (const auto &answer : answers)
        EXPECT_EQ(Run::outcome(answer), "");
    EXPECT_EQ(run.partner(), text("49"));
    run.store.close();
    // Two writes of the file and its copy; each of the four syncs the file and its folder.
    EXPECT_EQ(syncs - before, 8) << "waiting changes are written together";
}

TEST_F(SettingsStoreTest, KeepsOnlyWhatDiffersFromTheDefault)
{
    Run run(m_folder);
    EXPECT_EQ(run.setPartner("abc"), "");
    EXPECT_TRUE(content().contains("tunein/partnerId"));
    EXPECT_EQ(run.setPartner(""), "");
    EXPECT_FALSE(content().contains("tunein/partnerId"));
}

TEST_F(SettingsStoreTest, DoesNotKeepStates)
{
    Run run(m_folder);
    run.values.setValue(VeskNetworkStateConnected(), VeskValue::fromBool(true));
    EXPECT_EQ(run.setPartner("abc"), "");
    EXPECT_FALSE(content().contains("network"));
}

TEST_F(SettingsStoreTest, KeepsAChangeFromAnotherThread)
{
    Run run(m_folder);
    std::shared_ptr<CMReplyData<QVariant>> answer;
    std::thread([&] { answer = run.ask(VeskTuneInPartnerIdPath(), text("threaded")); }).join();
    EXPECT_EQ(Run::outcome(answer), "");
    EXPECT_TRUE(content().contains("threaded"));
}

TEST_F(SettingsStoreTest, APinnedValueIsNeitherReplacedNorWritten)
{
    {
        Run run(m_folder);
        EXPECT_EQ(run.setPartner("kept"), "");
    }
    {
        Run run(m_folder, text("pinned"));
        EXPECT_EQ(run.partner(), text("pinned"));
        EXPECT_EQ(run.setPartner("later"), "The value cannot be changed.");
        EXPECT_EQ(run.partner(), text("pinned"));
        EXPECT_EQ(run.setWizard(false), "");
    }
    EXPECT_FALSE(content().contains("pinned"));
    EXPECT_EQ(Run(m_folder).partner(), text("kept"));
}

TEST_F(SettingsStoreTest, OnlyTheOwnerReadsTheFile)
{
    Run run(m_folder);
    EXPECT_EQ(QFile::permissions(m_file)
            & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
        QFile::Permissions());
}

TEST_F(SettingsStoreTest, OnlyTheOwnerReadsTheFolder)
{
    Run run(m_folder);
    struct stat status { };
    ASSERT_EQ(::stat(QFile::encodeName(m_folder).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u);
}

const char *const damagedOnes[] = {"", "{", "[]", "null", "{\"values\":[]}", "{\"memberId\":5}",
    "{\"values\":{\"settings:tunein/partnerId\":\"ab"};

TEST_F(SettingsStoreTest, MovesADamagedFileAsideAndGoesOnWithItsCopy)
{
    QString id;
    {
        Run run(m_folder);
        id = run.memberId();
        EXPECT_EQ(run.setPartner("abc"), "");
    }
    QString suffix = QStringLiteral(".damaged");
    for (const char *damaged : {"", "{\"values\":{\"settings:tu"}) {
        write(damaged);
        Run run(m_folder);
        EXPECT_EQ(run.partner(), text("abc")) << damaged;
        EXPECT_EQ(run.memberId(), id) << damaged;
        EXPECT_EQ(content(suffix), damaged);
        EXPECT_TRUE(content().contains("abc")) << "there is a good file again";
        suffix = QStringLiteral(".damaged.2");
    }
}

TEST_F(SettingsStoreTest, RestoresAMissingFileFromItsCopy)
{
    {
        Run run(m_folder);
        EXPECT_EQ(run.setPartner("abc"), "");
    }
    QFile::remove(m_file);
    EXPECT_EQ(Run(m_folder).partner(), text("abc"));
    EXPECT_TRUE(content().contains("abc"));
}

TEST_F(SettingsStoreTest, MakesAMissingCopyAtTheStart)
{
    write(R"({"values":{"settings:tunein/partnerId":"abc"}})");
    Run(m_folder).partner();
    write("damaged");
    EXPECT_EQ(Run(m_folder).partner(), text("abc"));
}

TEST_F(SettingsStoreTest, StartsWithDefaultsAndItsOwnIdWithoutACopy)
{
    const QString id = Run(m_folder).memberId();
    for (const char *damaged : damagedOnes) {
        write(damaged);
        QFile::remove(m_file + QStringLiteral(".last-good"));
        Run run(m_folder);
        EXPECT_EQ(run.partner(), QString()) << damaged;
        EXPECT_EQ(run.memberId(), id) << damaged;
        EXPECT_TRUE(content().contains(id.toLatin1()));
    }
}

TEST_F(SettingsStoreTest, StartsWithDefaultsWhenTheCopyIsDamagedToo)
{
    for (const char *damaged : damagedOnes) {
        write(damaged);
        write("{", QStringLiteral(".last-good"));
        Run run(m_folder);
        EXPECT_EQ(run.partner(), QString()) << damaged;
        EXPECT_FALSE(run.memberId().isEmpty());
    }
}

TEST_F(SettingsStoreTest, TreatsAHugeFileAsDamaged)
{
    write(QByteArray(SettingsFile::MaxSize, ' ') + "{}");
    Run run(m_folder);
    EXPECT_FALSE(content(QStringLiteral(".damaged")).isEmpty());
}

TEST_F(SettingsStoreTest, MovesAsideWithoutOpeningWhatIsNoRegularFile)
{
    QString id;
    {
        Run run(m_folder);
        id = run.memberId();
        EXPECT_EQ(run.setPartner("abc"), "");
    }
    const QByteArray name = QFile::encodeName(m_file);
    const std::function<void()> obstacles[] = {
        [&] { ASSERT_EQ(::mkfifo(name.constData(), 0600), 0); },
        [&] { ASSERT_TRUE(QDir().mkpath(m_file + QStringLiteral("/below"))); },
        [&] { ASSERT_EQ(::symlink(name.constData(), name.constData()), 0); },
        [&] { ASSERT_EQ(::symlink("/dev/zero", name.constData()), 0); },
    };
    for (const auto &obstacle : obstacles) {
        QFile::remove(m_file);
        obstacle();
        LogCapture log("Host");
        Run run(m_folder);
        EXPECT_EQ(run.partner(), text("abc"));
        EXPECT_EQ(run.memberId(), id);
        EXPECT_THAT(log.lines(text("WARN")).join(QLatin1Char(32)).toStdString(),
            testing::HasSubstr("cannot be read"));
        EXPECT_EQ(run.setPartner("abc"), "");
        EXPECT_TRUE(content().contains("abc"));
    }
}

TEST_F(SettingsStoreTest, WritesTheIdsOwnFileOnce)
{
    const QString file = m_folder + QStringLiteral("/member-id");
    const QString id = Run(m_folder).memberId();
    QFile own(file);
    ASSERT_TRUE(own.open(QIODevice::ReadOnly));
    EXPECT_EQ(own.readAll(), id.toLatin1() + '\n');
    const auto written = [&] {
        struct stat status { };
        EXPECT_EQ(::stat(QFile::encodeName(file).constData(), &status), 0);
        return status.st_ino;
    };
    const auto first = written();
    {
        Run run(m_folder);
        EXPECT_EQ(run.setPartner("abc"), "");
    }
    EXPECT_EQ(written(), first);
}

TEST_F(SettingsStoreTest, TheIdsOwnFileCountsWhenTheTwoDiffer)
{
    const QString id = Run(m_folder).memberId();
    const QByteArray other(32, 'a');
    write("{\"memberId\":\"" + other + "\"}");
    EXPECT_EQ(Run(m_folder).memberId(), id);
    EXPECT_TRUE(content().contains(id.toLatin1())) << "the copy in the settings is corrected";
}

TEST_F(SettingsStoreTest, TheIdAmongTheSettingsCountsWhenItsOwnFileIsGoneOrDamaged)
{
    const QString id = Run(m_folder).memberId();
    const QString file = m_folder + QStringLiteral("/member-id");
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_EQ(Run(m_folder).memberId(), id);
    EXPECT_TRUE(QFile::exists(file));
    ASSERT_TRUE(QFile::resize(file, 10));
    EXPECT_EQ(Run(m_folder).memberId(), id);
    EXPECT_TRUE(QFile::exists(file + QStringLiteral(".damaged")));
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_EQ(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_EQ(Run(m_folder).memberId(), id);
}

TEST_F(SettingsStoreTest, IgnoresAndKeepsUnknownEntries)
{
    write(R"({"values":{"settings:tunein/partnerId":"good","settings:future":"x",
              "settings:tunein/enabledFixItWizard":"perhaps","network:connected":true},
              "memberId":"not an id"})");
    Run run(m_folder);
    EXPECT_EQ(run.partner(), text("good"));
    EXPECT_TRUE(run.values.value(VeskTuneInEnabledFixItWizardPath()).bool_());
    EXPECT_FALSE(run.values.value(VeskNetworkStateConnected()).bool_());
    EXPECT_THAT(run.memberId().toStdString(), testing::MatchesRegex("[0-9a-f]{32}"));
    EXPECT_EQ(run.setPartner("better"), "");
    EXPECT_TRUE(content().contains("settings:future"));
}

TEST_F(SettingsStoreTest, KeepsTheSettingsOfAPluginThatIsNotLoaded)
{
    EXPECT_EQ(Run(m_folder).setPartner("abc"), "");
    {
        Run without(m_folder, QString(), HostValues());
        EXPECT_TRUE(without.values.value(VeskTuneInPartnerIdPath()).isEmpty());
        EXPECT_EQ(Run::outcome(without.ask(hostLocalAddressesPath(), true)), "");
    }
    EXPECT_TRUE(content().contains("settings:network/localAddresses"));
    EXPECT_EQ(Run(m_folder).partner(), text("abc"));
}

TEST_F(SettingsStoreTest, RefusesChangesWithoutAUsableFolder)
{
    // A file in the folder's place: not even root can write there.
    QDir().mkpath(QFileInfo(m_folder).path());
    QFile obstacle(m_folder);
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();

    Run run(m_folder);
    EXPECT_FALSE(run.memberId().isEmpty());
    EXPECT_EQ(run.setPartner("abc"), "Not saved: the disk cannot be written. The log says more.");
    EXPECT_EQ(run.partner(), QString());
}

TEST_F(SettingsStoreTest, ARefusedChangeLeavesTheValueAsItWas)
{
    Run run(m_folder);
    ASSERT_EQ(run.setPartner("abc"), "");
    {
        const FileSizeLimit limit(20);
        EXPECT_EQ(
            run.setPartner("def"), "Not saved: the disk cannot be written. The log says more.");
        EXPECT_EQ(run.partner(), text("abc"));
        EXPECT_TRUE(content().contains("abc"));
    }
    EXPECT_EQ(run.setPartner("ghi"), "");
    EXPECT_TRUE(content().contains("ghi"));
}

TEST_F(SettingsStoreTest, RefusesATextThatIsTooLong)
{
    Run run(m_folder);
    const auto longOne = run.ask(VeskTuneInPartnerIdPath(), QString(70000, QLatin1Char('x')));
    EXPECT_EQ(run.setWizard(false), "");
    EXPECT_THAT(Run::outcome(longOne), testing::HasSubstr("at most 2000 characters"));
    EXPECT_EQ(run.partner(), QString());
}

TEST_F(SettingsStoreTest, KeepsAndAnswersWaitingChangesAtTheEnd)
{
    std::shared_ptr<CMReplyData<QVariant>> answer;
    {
        Run run(m_folder);
        answer = run.ask(VeskTuneInPartnerIdPath(), text("last"));
        run.store.close();
        EXPECT_TRUE(answer->isFinished());
        EXPECT_EQ(run.partner(), text("last"));
        EXPECT_NE(run.setPartner("later"), "");
        EXPECT_EQ(run.partner(), text("last"));
    }
    EXPECT_EQ(answer->error().message().toString(), QString());
    EXPECT_EQ(Run(m_folder).partner(), text("last"));
}

TEST_F(SettingsStoreTest, ReplacesTheFileAsAWhole)
{
    Run run(m_folder);
    ASSERT_EQ(run.setPartner("first"), "");
    // A reader that has the old file open goes on with it, not with a half-written one.
    QFile old(m_file);
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    ASSERT_EQ(run.setPartner("second"), "");
    EXPECT_TRUE(old.readAll().contains("first"));
    EXPECT_TRUE(content().contains("second"));
    run.store.close();
    EXPECT_EQ(QDir(m_folder).entryList(QDir::Files | QDir::Hidden),
        (QStringList {text("lock"), text("member-id"), text("settings.json"),
            text("settings.json.last-good"), text("version"), text("version.last-good")}))
        << "no temporary file is left";
}

TEST_F(SettingsStoreTest, RemovesLeftoversOfAWriteAtTheStart)
{
    write("{\"values\":{\"settings:tu", QStringLiteral(".new"));
    Run run(m_folder);
    EXPECT_FALSE(QFile::exists(m_file + QStringLiteral(".new")));
    EXPECT_EQ(run.partner(), QString());
}

TEST_F(SettingsStoreTest, WorksWithoutAFolder)
{
    Run run {QString()};
    EXPECT_FALSE(run.memberId().isEmpty());
    EXPECT_EQ(run.setPartner("abc"), "");
    EXPECT_EQ(run.partner(), text("abc"));
}

/// The state folder on a disk of its own.
class SettingsOnASmallDisk : public SettingsStoreTest {
protected:
    void SetUp() override
    {
        if (!m_disk.isMounted())
            GTEST_SKIP() << "no file system can be mounted";
        m_state = QString::fromStdString(m_disk.folder()) + QStringLiteral("/state");
    }
    SmallDisk m_disk;
    QString m_state;
};

TEST_F(SettingsOnASmallDisk, RefusesChangesOnAFullDisk)
{
    QString id;
    {
        Run run(m_state);
        id = run.memberId();
        ASSERT_EQ(run.setPartner("abc"), "");
    }
    {
        // The copy, which is written after the answer and frees the one before, is there by now.
        Run run(m_state);
        m_disk.fill();
        EXPECT_EQ(run.setPartner("def"), "Not saved: the disk is full.");
        EXPECT_EQ(run.partner(), text("abc"));
    }
    {
        Run run(m_state);
        EXPECT_EQ(run.memberId(), id);
        EXPECT_EQ(run.partner(), text("abc"));
        EXPECT_EQ(run.setPartner("ghi"), "Not saved: the disk is full.");
        m_disk.makeRoom();
        EXPECT_EQ(run.setPartner("ghi"), "");
    }
    Run run(m_state);
    EXPECT_EQ(run.memberId(), id);
    EXPECT_EQ(run.partner(), text("ghi"));
}

TEST_F(SettingsOnASmallDisk, KeepsAnIdOnceAFullDiskHasSpace)
{
    m_disk.fill();
    QString id;
    {
        Run run(m_state);
        id = run.memberId();
        EXPECT_FALSE(id.isEmpty());
        m_disk.makeRoom();
        EXPECT_EQ(run.setPartner("abc"), "");
    }
    EXPECT_EQ(Run(m_state).memberId(), id);
}

TEST_F(SettingsOnASmallDisk, ReadsAReadOnlyDiskAndRefusesChanges)
{
    QString id;
    {
        Run run(m_state);
        id = run.memberId();
        ASSERT_EQ(run.setPartner("abc"), "");
    }
    ASSERT_TRUE(m_disk.setReadOnly(true));
    Run run(m_state);
    EXPECT_EQ(run.memberId(), id);
    EXPECT_EQ(run.partner(), text("abc"));
    EXPECT_EQ(run.setPartner("def"), "Not saved: the disk cannot be written. The log says more.");
    EXPECT_EQ(run.partner(), text("abc"));
}

class StateFolderTest : public testing::Test {
protected:
    StateFolderTest()
        : m_state(qgetenv("XDG_STATE_HOME"))
        , m_home(qgetenv("HOME"))
    {
    }
    ~StateFolderTest() override
    {
        set("XDG_STATE_HOME", m_state);
        set("HOME", m_home);
    }

    static void set(const char *name, const QByteArray &value)
    {
        value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }

private:
    const QByteArray m_state;
    const QByteArray m_home;
};

TEST_F(StateFolderTest, FollowsTheXdgDirectories)
{
    set("XDG_STATE_HOME", "/state");
    set("HOME", "/home/user");
    EXPECT_EQ(SettingsFile::defaultFolder(), text("/state/vesk"));
    set("XDG_STATE_HOME", "relative");
    EXPECT_EQ(SettingsFile::defaultFolder(), text("/home/user/.local/state/vesk"));
    set("XDG_STATE_HOME", {});
    EXPECT_EQ(SettingsFile::defaultFolder(), text("/home/user/.local/state/vesk"));
}

} // namespace
