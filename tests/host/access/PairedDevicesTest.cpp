// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/PairedDevices.h"

#include "host/access/Secrets.h"
#include "tests/host/access/AccessFixture.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallDisk.h"

#include <QDir>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

std::atomic<bool> diskIsStuck {false};
std::atomic<int> diskSyncs {0};

/// Replaces the C library's fsync(): counts the calls and simulates a slow disk.
extern "C" int fsync(int descriptor)
{
    ++diskSyncs;
    while (diskIsStuck)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char *NotYetSaved = "In effect, but not saved";

using PairedDevicesTest = AccessFixture;

TEST_F(PairedDevicesTest, NobodyIsPairedAtFirstAndThereIsNoFile)
{
    EXPECT_TRUE(m_devices->devices().isEmpty());
    EXPECT_FALSE(m_devices->find(makeAccessToken()));
    m_devices.reset();
    EXPECT_FALSE(QFile::exists(m_folder));
}

TEST_F(PairedDevicesTest, ADeviceComesInByItsTokenAndStaysAfterARestart)
{
    const auto tablet = add("Tablet");
    const auto phone = add("Phone", AccessRole::Owner);
    EXPECT_NE(tablet.device.id, phone.device.id);
    for (int round = 0; round < 2; ++round) {
        const auto caller = m_devices->find(tablet.token);
        ASSERT_TRUE(caller);
        EXPECT_EQ(caller->deviceId, tablet.device.id);
        EXPECT_EQ(caller->role, AccessRole::Listener);
        ASSERT_TRUE(m_devices->find(phone.token));
        EXPECT_EQ(m_devices->find(phone.token)->role, AccessRole::Owner);
        const auto devices = m_devices->devices();
        ASSERT_EQ(devices.size(), 2);
        EXPECT_EQ(devices.at(0).name, QStringLiteral("Tablet"));
        EXPECT_EQ(devices.at(0).address, QStringLiteral("192.168.1.7"));
        EXPECT_EQ(devices.at(0).paired, tablet.device.paired);
        EXPECT_EQ(devices.at(0).seen, tablet.device.paired);
        EXPECT_LE(std::abs(devices.at(0).paired.secsTo(QDateTime::currentDateTimeUtc())), 60);
        openAgain();
    }
    EXPECT_EQ(m_changes, 2);
    EXPECT_THAT(m_accessChanged, ElementsAre()) << "they had no access before";
}

TEST_F(PairedDevicesTest, OnlyWholeTokensOfDevicesAreFound)
{
    const auto tablet = add("Tablet");
    QByteArray other = tablet.token;
    other[0] = other.at(0) == 'A' ? 'B' : 'A';
    for (const QByteArray &token :
        {QByteArray(), other, tablet.token.left(42), tablet.token + 'A', tablet.token + '=',
            tablet.token + '\n', ' ' + tablet.token.mid(1), accessTokenDigest(tablet.token),
            accessTokenDigest(tablet.token).toHex(), QByteArray(43, '\0'), QByteArray(100000, 'A')})
        EXPECT_FALSE(m_devices->find(token)) << token.left(100).constData();
    // Of a deleted device's digest nothing is left that an empty one could equal.
    EXPECT_EQ(revoke(tablet.device.id), "");
    EXPECT_FALSE(m_devices->find(tablet.token));
}

TEST_F(PairedDevicesTest, TheFileIsItsOwnersAloneAndHasNoToken)
{
    const auto tablet = add("Tablet");
    for (const char *const suffix : {"", ".last-good"}) {
        struct stat status { };
        ASSERT_EQ(::stat(QFile::encodeName(fileName(suffix)).constData(), &status), 0) << suffix;
        EXPECT_EQ(status.st_mode & 0777, 0600U) << suffix;
        EXPECT_FALSE(content(suffix).contains(tablet.token)) << suffix;
        EXPECT_TRUE(content(suffix).contains(accessTokenDigest(tablet.token).toHex())) << suffix;
    }
    struct stat status { };
    ASSERT_EQ(::stat(QFile::encodeName(m_folder).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
}

TEST_F(PairedDevicesTest, ARevokedDeviceIsOutAtOnceWhateverTheDiskDoes)
{
    const auto tablet = add("Tablet");
    const auto phone = add("Phone");
    diskIsStuck = true;
    bool wasOutWhenTold = false;
    QObject::connect(m_devices.get(), &PairedDevices::accessChanged,
        [&] { wasOutWhenTold = !m_devices->find(tablet.token); });
    std::optional<CMError> answer;
    m_devices->revoke(tablet.device.id, [&](const CMError &error) { answer = error; });
    EXPECT_TRUE(wasOutWhenTold);
    EXPECT_THAT(m_accessChanged, ElementsAre(tablet.device.id));
    EXPECT_EQ(m_devices->devices().size(), 1);
    EXPECT_FALSE(answer) << "not on the disk yet";
    diskIsStuck = false;
    ASSERT_TRUE(spinUntil([&] { return answer.has_value(); }));
    EXPECT_TRUE(answer->isEmpty());
    EXPECT_FALSE(content().contains(tablet.device.id.toLatin1()));
    EXPECT_FALSE(content(".last-good").contains(tablet.device.id.toLatin1()))
        << "its copy would let the device in again";
    EXPECT_TRUE(m_devices->find(phone.token));
    EXPECT_EQ(revoke(tablet.device.id), "There is no such device.");
}

TEST_F(PairedDevicesTest, AListenerBecomesAnOwnerOnceThatIsOnTheDisk)
{
    const auto tablet = add("Tablet");
    diskIsStuck = true;
    std::optional<CMError> answer;
    m_devices->setRole(
        tablet.device.id, AccessRole::Owner, [&](const CMError &error) { answer = error; });
    EXPECT_EQ(m_devices->find(tablet.token)->role, AccessRole::Listener);
    EXPECT_THAT(m_accessChanged, ElementsAre());
    diskIsStuck = false;
    ASSERT_TRUE(spinUntil([&] { return answer.has_value(); }));
    EXPECT_TRUE(answer->isEmpty());
    EXPECT_EQ(m_devices->find(tablet.token)->role, AccessRole::Owner);
    EXPECT_THAT(m_accessChanged, ElementsAre(tablet.device.id));
    openAgain();
    EXPECT_EQ(m_devices->find(tablet.token)->role, AccessRole::Owner);
}

TEST_F(PairedDevicesTest, AnOwnerBecomesAListenerAtOnce)
{
    const auto tablet = add("Tablet", AccessRole::Owner);
    diskIsStuck = true;
    std::optional<CMError> answer;
    m_devices->setRole(
        tablet.device.id, AccessRole::Listener, [&](const CMError &error) { answer = error; });
    EXPECT_EQ(m_devices->find(tablet.token)->role, AccessRole::Listener);
    EXPECT_THAT(m_accessChanged, ElementsAre(tablet.device.id));
    EXPECT_FALSE(answer);
    diskIsStuck = false;
    ASSERT_TRUE(spinUntil([&] { return answer.has_value(); }));
    openAgain();
    EXPECT_EQ(m_devices->find(tablet.token)->role, AccessRole::Listener);
}

TEST_F(PairedDevicesTest, WhatIsOnItsWayToTheDiskDoesNotUndoALaterWord)
{
    const auto tablet = add("Tablet");
    const auto phone = add("Phone");
    const int before = diskSyncs;
    diskIsStuck = true;
    int answers = 0;
    const auto count = [&](const CMError &error) {
        EXPECT_TRUE(error.isEmpty());
        ++answers;
    };
    m_devices->setRole(tablet.device.id, AccessRole::Owner, count);
    ASSERT_TRUE(spinUntil([&] { return diskSyncs > before; }));
    m_devices->setRole(tablet.device.id, AccessRole::Listener, count);
    m_devices->setRole(phone.device.id, AccessRole::Owner, count);
    m_devices->revoke(phone.device.id, count);
    bool wasOwner = false;
    QObject::connect(m_devices.get(), &PairedDevices::accessChanged, [&](const QString &id) {
        const auto caller = m_devices->find(id == tablet.device.id ? tablet.token : phone.token);
        wasOwner |= caller && caller->role == AccessRole::Owner;
    });
    diskIsStuck = false;
    ASSERT_TRUE(spinUntil([&] { return answers == 4; }));
    EXPECT_FALSE(wasOwner);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(m_devices->find(tablet.token)->role, AccessRole::Listener);
        EXPECT_FALSE(m_devices->find(phone.token));
        openAgain();
    }
}

TEST_F(PairedDevicesTest, ADeviceThatIsRevokedMeanwhileIsNotRenamed)
{
    const auto tablet = add("Tablet");
    diskIsStuck = true;
    std::optional<CMError> revoked;
    m_devices->revoke(tablet.device.id, [&](const CMError &error) { revoked = error; });
    std::optional<CMError> renamed;
    m_devices->rename(
        tablet.device.id, QStringLiteral("Other"), [&](const CMError &error) { renamed = error; });
    diskIsStuck = false;
    ASSERT_TRUE(spinUntil([&] { return revoked && renamed; }));
    EXPECT_TRUE(revoked->isEmpty());
    EXPECT_EQ(renamed->message().toString(), QStringLiteral("There is no such device."));
    EXPECT_TRUE(m_devices->devices().isEmpty());
}

TEST_F(PairedDevicesTest, UnknownIdsAreAnErrorEverywhere)
{
    const std::string error = "There is no such device.";
    for (const char *const id : {"", "x", "0000000000000000"}) {
        EXPECT_EQ(rename(QString::fromLatin1(id), "Other"), error);
        EXPECT_EQ(setRole(QString::fromLatin1(id), AccessRole::Owner), error);
        EXPECT_EQ(setRole(QString::fromLatin1(id), AccessRole::Listener), error);
        EXPECT_EQ(revoke(QString::fromLatin1(id)), error);
        m_devices->seen(QString::fromLatin1(id), QStringLiteral("::1"));
    }
    EXPECT_EQ(m_changes, 0);
    EXPECT_THAT(m_accessChanged, ElementsAre());
}

TEST_F(PairedDevicesTest, NamesChangeAndAreKept)
{
    const auto tablet = add("Tablet");
    m_changes = 0;
    EXPECT_EQ(rename(tablet.device.id, "Küche 📻"), "");
    EXPECT_EQ(rename(tablet.device.id, "Küche 📻"), "") << "the same again";
    EXPECT_EQ(m_changes, 1);
    openAgain();
    EXPECT_EQ(deviceOf(tablet.device.id).name, QString::fromUtf8("Küche 📻"));
    EXPECT_THAT(m_accessChanged, ElementsAre());
}

TEST_F(PairedDevicesTest, SixtyFourDevicesAndNotOneMore)
{
    for (int i = 0; i < DeviceList::MaxDevices - 1; ++i)
        ASSERT_FALSE(add("Tablet").token.isEmpty());
    EXPECT_FALSE(m_devices->isFull());
    diskIsStuck = true;
    bool isAdded = false;
    m_devices->add(QStringLiteral("Last"), AccessRole::Listener, QString(),
        [&](const auto &result) { isAdded = bool(result); });
    EXPECT_TRUE(m_devices->isFull()) << "the one on its way counts";
    EXPECT_EQ(add("One more").device.name,
        QStringLiteral("No more devices can be paired. Remove one that is no longer in use."));
    diskIsStuck = false;
    ASSERT_TRUE(spinUntil([&] { return isAdded; }));
    openAgain();
    EXPECT_EQ(m_devices->devices().size(), DeviceList::MaxDevices);
    EXPECT_TRUE(m_devices->isFull());
    EXPECT_EQ(revoke(m_devices->devices().at(5).id), "");
    EXPECT_FALSE(m_devices->isFull());
    EXPECT_FALSE(add("One more").token.isEmpty());
}

TEST_F(PairedDevicesTest, WhenADeviceWasSeenIsWrittenOnceADay)
{
    const auto tablet = add("Tablet");
    const int before = diskSyncs;
    for (int i = 0; i < 100; ++i)
        m_devices->seen(tablet.device.id, QStringLiteral("10.0.0.%1").arg(i));
    EXPECT_EQ(deviceOf(tablet.device.id).address, QStringLiteral("10.0.0.99"));
    EXPECT_EQ(rename(tablet.device.id, "Tablet"), "") << "so that a write would be done by now";
    EXPECT_EQ(diskSyncs, before);

    // Two days ago, by the file.
    m_devices.reset();
    QByteArray file = content();
    const QByteArray seen = accessTimeText(tablet.device.seen).toLatin1();
    const QByteArray earlier = accessTimeText(tablet.device.seen.addDays(-2)).toLatin1();
    file.replace(seen, earlier);
    damage(file);
    openAgain();
    EXPECT_EQ(deviceOf(tablet.device.id).seen, tablet.device.seen.addDays(-2));
    m_devices->seen(tablet.device.id, QStringLiteral("fe80::7%eth0"));
    ASSERT_TRUE(spinUntil([&] { return content(".last-good").contains("fe80::7"); }));
    EXPECT_FALSE(content().contains(earlier + "\",\"tokenSha256"));
    m_devices->seen(tablet.device.id, QStringLiteral("<script>"));
    EXPECT_EQ(deviceOf(tablet.device.id).address, QString()) << "that is no address";
}

TEST_F(PairedDevicesTest, WithoutAFolderDevicesLastUntilTheEnd)
{
    m_folder.clear();
    openAgain();
    const auto tablet = add("Tablet");
    EXPECT_TRUE(m_devices->find(tablet.token));
    EXPECT_EQ(setRole(tablet.device.id, AccessRole::Owner), "");
    openAgain();
    EXPECT_FALSE(m_devices->find(tablet.token));
}

TEST_F(PairedDevicesTest, ADamagedFileIsReplacedByItsCopyAndMovedAside)
{
    const auto tablet = add("Tablet");
    m_devices.reset();
    const QByteArray good = content();
    LogCapture log("Host");
    for (const QByteArray &bad : {QByteArray("{\"devices\": [{}]}"), QByteArray(), good.left(100),
             QByteArray(DeviceList::MaxFileSize + 1, ' '), QByteArray("\0\0\0\0", 4)}) {
        damage(bad);
        openAgain();
        EXPECT_TRUE(m_devices->find(tablet.token));
        EXPECT_EQ(content(), good) << "written again at once";
        m_devices.reset();
    }
    EXPECT_EQ(content(".damaged"), "{\"devices\": [{}]}");
    EXPECT_EQ(content(".damaged.3"), good.left(100));
    EXPECT_FALSE(log.lines(QStringLiteral("WARN")).isEmpty());
}

TEST_F(PairedDevicesTest, WhatIsNoFileIsMovedAsideUnopened)
{
    const auto tablet = add("Tablet");
    const QByteArray name = QFile::encodeName(fileName());
    const std::function<bool()> replacements[] = {
        [&] { return ::mkfifo(name.constData(), 0600) == 0; }, // would block
        [&] { return ::mkdir(name.constData(), 0700) == 0; },
        [&] { return ::symlink("/dev/zero", name.constData()) == 0; }, // would never end
        [&] { return ::symlink("devices.json", name.constData()) == 0; },
    };
    for (const auto &replace : replacements) {
        m_devices.reset();
        ASSERT_TRUE(QFile::remove(fileName()));
        ASSERT_TRUE(replace());
        openAgain();
        EXPECT_TRUE(m_devices->find(tablet.token));
        struct stat status { };
        ASSERT_EQ(::lstat(name.constData(), &status), 0);
        EXPECT_TRUE(S_ISREG(status.st_mode));
    }
}

TEST_F(PairedDevicesTest, WithoutACopyADamagedFileLetsNobodyIn)
{
    const auto tablet = add("Tablet");
    m_devices.reset();
    const QByteArray good = content();
    damage("nonsense");
    damage("nonsense", ".last-good");
    openAgain();
    EXPECT_FALSE(m_devices->find(tablet.token));
    EXPECT_TRUE(m_devices->devices().isEmpty());
    const auto phone = add("Phone");
    openAgain();
    EXPECT_TRUE(m_devices->find(phone.token));
    EXPECT_EQ(content(".damaged"), "nonsense");
}

TEST_F(PairedDevicesTest, ARevokedDeviceDoesNotComeBackByADamagedFile)
{
    const auto tablet = add("Tablet");
    const auto phone = add("Phone");
    EXPECT_EQ(revoke(tablet.device.id), "");
    // As a crash would leave it, right after the answer.
    damage("nonsense");
    openAgain();
    EXPECT_FALSE(m_devices->find(tablet.token));
    EXPECT_TRUE(m_devices->find(phone.token));
}

TEST_F(PairedDevicesTest, AFolderThatIsNotHeldIsNotWritten)
{
    const auto tablet = add("Tablet");
    m_devices.reset();
    const QByteArray before = content();
    openAgain(failure(files::Problem {EROFS, "read-only"}));
    EXPECT_TRUE(m_devices->find(tablet.token));
    EXPECT_TRUE(add("Phone").token.isEmpty());
    EXPECT_EQ(rename(tablet.device.id, "Other"),
        "Not saved: the disk cannot be written. The log says more.");
    EXPECT_THAT(revoke(tablet.device.id), StartsWith(NotYetSaved));
    EXPECT_FALSE(m_devices->find(tablet.token));
    m_devices.reset();
    EXPECT_EQ(content(), before);
}

TEST_F(PairedDevicesTest, AFullQueueRefusesWhatGivesAccessAndKeepsWhatTakesIt)
{
    const auto tablet = add("Tablet");
    const auto phone = add("Phone", AccessRole::Owner);
    const int before = diskSyncs;
    diskIsStuck = true;
    std::vector<std::string> errors;
    const auto note
        = [&](const CMError &error) { errors.push_back(error.message().toString().toStdString()); };
    m_devices->rename(tablet.device.id, QStringLiteral("Other"), note);
    ASSERT_TRUE(spinUntil([&] { return diskSyncs > before; }));
    for (std::size_t i = 0; i < DiskQueue<int>::MaxWaiting; ++i)
        m_devices->rename(tablet.device.id, QStringLiteral("Other"), note);
    ASSERT_THAT(errors, ElementsAre());
    m_devices->setRole(tablet.device.id, AccessRole::Owner, note);
    EXPECT_THAT(errors, ElementsAre("Not saved: too much is waiting for the disk."));
    EXPECT_EQ(
        add("Third").device.name, QStringLiteral("Not saved: too much is waiting for the disk."));
    EXPECT_FALSE(m_devices->isFull());
    errors.clear();
    m_devices->revoke(tablet.device.id, note);
    m_devices->setRole(phone.device.id, AccessRole::Listener, note);
    EXPECT_THAT(errors, ElementsAre(StartsWith(NotYetSaved), StartsWith(NotYetSaved)));
    EXPECT_FALSE(m_devices->find(tablet.token));
    EXPECT_EQ(m_devices->find(phone.token)->role, AccessRole::Listener);
    diskIsStuck = false;
    openAgain();
    EXPECT_FALSE(m_devices->find(tablet.token));
    ASSERT_TRUE(m_devices->find(phone.token));
    EXPECT_EQ(m_devices->find(phone.token)->role, AccessRole::Listener);
}

TEST_F(PairedDevicesTest, CloseWaitsForTheDiskAndNoLonger)
{
    const auto tablet = add("Tablet");
    diskIsStuck = true;
    std::optional<CMError> answer;
    m_devices->rename(
        tablet.device.id, QStringLiteral("Other"), [&](const CMError &error) { answer = error; });
    using Clock = std::chrono::steady_clock;
    EXPECT_FALSE(m_devices->close(Clock::now() + std::chrono::milliseconds(20)));
    diskIsStuck = false;
    EXPECT_TRUE(m_devices->close(Clock::now() + std::chrono::seconds(10)));
    ASSERT_TRUE(answer) << "answered before close() returns";
    EXPECT_TRUE(answer->isEmpty());
    EXPECT_EQ(rename(tablet.device.id, "Late"), "Not saved: too much is waiting for the disk.");
}

TEST_F(PairedDevicesTest, NoTokenIsInTheLog)
{
    LogCapture log("");
    const auto tablet = add("Tab\xC2\xA0let");
    EXPECT_EQ(setRole(tablet.device.id, AccessRole::Owner), "");
    EXPECT_FALSE(m_devices->find(QByteArray(43, 'x')));
    EXPECT_TRUE(m_devices->find(tablet.token));
    EXPECT_EQ(revoke(tablet.device.id), "");
    const QString all = log.lines().join(QLatin1Char('\n'));
    EXPECT_THAT(all.toStdString(), HasSubstr("is paired"));
    EXPECT_FALSE(all.contains(QString::fromLatin1(tablet.token)));
    EXPECT_FALSE(all.contains(QString::fromLatin1(accessTokenDigest(tablet.token).toHex())));
    EXPECT_FALSE(all.contains(QStringLiteral("xxxxxxxx")));
}

/// On a disk of 128 KiB.
class PairedDevicesDiskTest : public testing::Test { };

TEST_F(PairedDevicesDiskTest, AFullDiskRefusesDevicesAndStillShutsThemOut)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP();
    const QString folder = QString::fromStdString(disk.folder()) + QStringLiteral("/state");
    auto devices = std::make_unique<PairedDevices>(folder, Result<void, files::Problem>());
    std::vector<PairedDevices::Added> added;
    std::vector<std::string> errors;
    const auto add = [&] {
        const std::size_t before = added.size() + errors.size();
        devices->add(QStringLiteral("Tablet"), AccessRole::Owner, QString(), [&](const auto &one) {
            if (one)
                added.push_back(*one);
            else
                errors.push_back(one.error().message().toString().toStdString());
        });
        ASSERT_TRUE(spinUntil([&] { return added.size() + errors.size() > before; }));
    };
    add();
    add();
    ASSERT_EQ(added.size(), 2U);
    disk.fill();
    add();
    EXPECT_THAT(errors, ElementsAre("Not saved: the disk is full."));
    std::optional<CMError> revoked;
    devices->revoke(added[0].device.id, [&](const CMError &error) { revoked = error; });
    ASSERT_TRUE(spinUntil([&] { return revoked.has_value(); }));
    EXPECT_THAT(revoked->message().toString().toStdString(), StartsWith(NotYetSaved));
    EXPECT_FALSE(devices->find(added[0].token));
    EXPECT_TRUE(devices->find(added[1].token));
    EXPECT_EQ(devices->devices().size(), 1);

    disk.makeRoom();
    devices = nullptr;
    devices = std::make_unique<PairedDevices>(folder, Result<void, files::Problem>());
    EXPECT_FALSE(devices->find(added[0].token)) << "the end has saved it";
    EXPECT_TRUE(devices->find(added[1].token));
}

TEST_F(PairedDevicesDiskTest, WhatTakesAccessIsSavedLaterByItself)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP();
    const QString folder = QString::fromStdString(disk.folder());
    PairedDevices devices(folder, {});
    std::optional<PairedDevices::Added> added;
    devices.add(QStringLiteral("Tablet"), AccessRole::Owner, QString(),
        [&](const auto &one) { added = *one; });
    ASSERT_TRUE(spinUntil([&] { return added.has_value(); }));
    disk.fill();
    bool isAnswered = false;
    devices.revoke(added->device.id, [&](const CMError &) { isAnswered = true; });
    ASSERT_TRUE(spinUntil([&] { return isAnswered; }));
    disk.makeRoom();
    auto *const timer = devices.findChild<QTimer *>();
    ASSERT_TRUE(timer && timer->isActive());
    EXPECT_EQ(timer->intervalAsDuration(), PairedDevices::RetryTime);
    timer->start(0);
    QFile file(folder + QStringLiteral("/devices.json"));
    EXPECT_TRUE(spinUntil([&] {
        file.close();
        return file.open(QIODevice::ReadOnly) && file.readAll() == "{\"devices\":[]}\n"
            && !timer->isActive();
    }));
}

/// For the thread sanitizer: the server's thread looks tokens up all the time.
TEST_F(PairedDevicesTest, IsAskedByAThreadWhileDevicesChange)
{
    const auto tablet = add("Tablet");
    const auto phone = add("Phone");
    std::atomic<bool> isRevoked {false};
    std::atomic<bool> isEnding {false};
    std::atomic<int> wrong {0};
    std::atomic<int> asked {0};
    std::thread server([&] {
        while (!isEnding) {
            const bool wasRevoked = isRevoked;
            const bool isFound = m_devices->find(tablet.token).has_value();
            const auto other = m_devices->find(phone.token);
            if ((wasRevoked && isFound) || !other || other->deviceId != phone.device.id)
                ++wrong;
            ++asked;
        }
    });
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(
            setRole(phone.device.id, i % 2 == 0 ? AccessRole::Owner : AccessRole::Listener), "");
        m_devices->seen(phone.device.id, QStringLiteral("10.0.0.%1").arg(i));
        EXPECT_FALSE(add("Another").token.isEmpty());
    }
    m_devices->revoke(tablet.device.id, [](const CMError &) {});
    isRevoked = true;
    const int before = asked;
    ASSERT_TRUE(spinUntil([&] { return asked > before + 100; }));
    isEnding = true;
    server.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(PairedDevicesTest, KnowsWhatADeviceMayDoAtPresent)
{
    const QString id = add("Tablet").device.id;
    ASSERT_TRUE(m_devices->current(id));
    EXPECT_EQ(m_devices->current(id)->role, AccessRole::Listener);
    EXPECT_EQ(m_devices->current(id)->deviceId, id);
    EXPECT_EQ(setRole(id, AccessRole::Owner), "");
    EXPECT_EQ(m_devices->current(id)->role, AccessRole::Owner);
    EXPECT_EQ(revoke(id), "");
    EXPECT_FALSE(m_devices->current(id));
    EXPECT_FALSE(m_devices->current({}));
}

} // namespace
