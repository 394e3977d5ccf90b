#include "host/SettingsStore.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "host/HostValues.h"
#include "tests/support/WorkerThread.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <thread>

namespace {

QString text(const char *bytes)
{
    return QString::fromUtf8(bytes);
}

class SettingsStoreTest : public testing::Test {
protected:
    SettingsStoreTest()
        : m_folder(m_temporary.filePath(QStringLiteral("deep/state")))
        , m_file(m_folder + QStringLiteral("/settings.json"))
    {
    }

    /// The values of one run of a host.
    struct Run {
        explicit Run(const QString &folder, const QString &pinnedPartner = QString())
            : store(folder, &values)
        {
            defineHostValues(&values);
            if (!pinnedPartner.isNull()) {
                values.setValue(VeskTuneInPartnerIdPath(), VeskValue::fromString(pinnedPartner));
                values.pin(VeskTuneInPartnerIdPath());
            }
            store.load();
        }

        QString partner() const { return values.value(VeskTuneInPartnerIdPath()).string_(); }
        QString memberId() const { return values.value(VeskSystemMemberIdPath()).string_(); }
        void setPartner(const char *id)
        {
            values.setValue(VeskTuneInPartnerIdPath(), VeskValue::fromString(text(id)));
        }

        CMValuesWorker values;
        SettingsStore store;
    };

    void write(const QByteArray &content)
    {
        QDir().mkpath(m_folder);
        QFile file(m_file);
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

TEST_F(SettingsStoreTest, GivesTheDeviceAnIdOnceAndForAll)
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

TEST_F(SettingsStoreTest, KeepsWhatIsChanged)
{
    {
        Run run(m_folder);
        run.setPartner("abc");
        run.values.setValue(VeskTuneInEnabledFixItWizardPath(), VeskValue::fromBool(false));
        EXPECT_TRUE(spinUntil([&] { return content().contains("abc"); })) << "without an end";
    }
    Run run(m_folder);
    EXPECT_EQ(run.partner(), text("abc"));
    EXPECT_FALSE(run.values.value(VeskTuneInEnabledFixItWizardPath()).bool_());
}

TEST_F(SettingsStoreTest, KeepsOnlyWhatDiffersFromTheDefault)
{
    Run run(m_folder);
    run.setPartner("abc");
    EXPECT_TRUE(run.store.flush());
    EXPECT_TRUE(content().contains("tunein/partnerId"));
    run.setPartner("");
    EXPECT_TRUE(run.store.flush());
    EXPECT_FALSE(content().contains("tunein/partnerId"));
}

TEST_F(SettingsStoreTest, DoesNotKeepStates)
{
    Run run(m_folder);
    run.values.setValue(VeskNetworkStateConnected(), VeskValue::fromBool(true));
    run.store.flush();
    EXPECT_FALSE(content().contains("network"));
}

TEST_F(SettingsStoreTest, KeepsAChangeThatAnotherThreadMakes)
{
    Run run(m_folder);
    std::thread([&] { run.setPartner("threaded"); }).join();
    EXPECT_TRUE(spinUntil([&] { return content().contains("threaded"); }));
}

TEST_F(SettingsStoreTest, APinnedValueIsNeitherReplacedNorWritten)
{
    {
        Run run(m_folder);
        run.setPartner("kept");
    }
    {
        Run run(m_folder, text("pinned"));
        EXPECT_EQ(run.partner(), text("pinned"));
        run.setPartner("later");
        EXPECT_EQ(run.partner(), text("pinned"));
        run.values.setValue(VeskTuneInEnabledFixItWizardPath(), VeskValue::fromBool(false));
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

TEST_F(SettingsStoreTest, KeepsADamagedFileAsideAndStartsWithDefaults)
{
    for (const char *damaged : {"", "{", "[]", "null", "{\"values\":[]}", "{\"memberId\":5}",
             "{\"values\":{\"settings:tunein/partnerId\":\"ab"}) {
        write(damaged);
        Run run(m_folder);
        EXPECT_EQ(run.partner(), QString()) << damaged;
        EXPECT_FALSE(run.memberId().isEmpty()) << damaged;
        EXPECT_EQ(content(QStringLiteral(".damaged")), damaged);
        EXPECT_TRUE(content().contains(run.memberId().toLatin1())) << "a good one is in its place";
    }
}

TEST_F(SettingsStoreTest, TakesAHugeFileForDamaged)
{
    write(QByteArray(SettingsFile::MaxSize, ' ') + "{}");
    Run run(m_folder);
    EXPECT_FALSE(content(QStringLiteral(".damaged")).isEmpty());
}

TEST_F(SettingsStoreTest, PassesOverEntriesThatDoNotFitAndCarriesThemAlong)
{
    write(R"({"values":{"settings:tunein/partnerId":"good","settings:future":"x",
              "settings:tunein/enabledFixItWizard":"perhaps","network:connected":true},
              "memberId":"not an id"})");
    Run run(m_folder);
    EXPECT_EQ(run.partner(), text("good"));
    EXPECT_TRUE(run.values.value(VeskTuneInEnabledFixItWizardPath()).bool_());
    EXPECT_FALSE(run.values.value(VeskNetworkStateConnected()).bool_());
    EXPECT_THAT(run.memberId().toStdString(), testing::MatchesRegex("[0-9a-f]{32}"));
    run.setPartner("better");
    run.store.flush();
    EXPECT_TRUE(content().contains("settings:future"));
}

TEST_F(SettingsStoreTest, AFailedWriteLosesNothingAndIsMadeUpForByTheNextChange)
{
    // A file where the folder should be: nobody can write there, not even root.
    QDir().mkpath(QFileInfo(m_folder).path());
    QFile obstacle(m_folder);
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();

    Run run(m_folder);
    run.setPartner("abc");
    EXPECT_FALSE(run.store.flush());
    EXPECT_EQ(run.partner(), text("abc"));

    ASSERT_TRUE(obstacle.remove());
    run.values.setValue(VeskTuneInEnabledFixItWizardPath(), VeskValue::fromBool(false));
    EXPECT_TRUE(spinUntil([&] { return content().contains("enabledFixItWizard"); }));
    EXPECT_TRUE(content().contains("abc"));
}

TEST_F(SettingsStoreTest, ReplacesTheFileAsAWhole)
{
    Run run(m_folder);
    run.setPartner("first");
    ASSERT_TRUE(run.store.flush());
    // Who has the old file open goes on reading the old file, not a half-written one.
    QFile old(m_file);
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    run.setPartner("second");
    ASSERT_TRUE(run.store.flush());
    EXPECT_TRUE(old.readAll().contains("first"));
    EXPECT_TRUE(content().contains("second"));
    EXPECT_EQ(QDir(m_folder).entryList(QDir::Files | QDir::Hidden).size(), 1)
        << "nothing of the writing is left behind";
}

TEST_F(SettingsStoreTest, WorksWithoutAFolder)
{
    Run run {QString()};
    EXPECT_FALSE(run.memberId().isEmpty());
    run.setPartner("abc");
    EXPECT_TRUE(run.store.flush());
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

TEST_F(StateFolderTest, IsWhereTheDesktopKeepsStates)
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
