// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/SupervisedPlugin.h"

#include "api/nodes/CMRootWorker.h"
#include "tests/api/nodes/TestNodes.h"
#include "tests/host/HostProcess.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using testing::AnyOf;

/// Whether the filter can tell sockets apart: not through i386's socketcall.
#ifdef __i386__
constexpr bool FiltersSockets = false;
#else
constexpr bool FiltersSockets = true;
#endif

bool hasLandlock()
{
    constexpr int VersionFlag = 1;
    return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, VersionFlag) >= 1;
}

/// The value of the field \a name in /proc/PID/status.
QByteArray statusOf(int process, const QByteArray &name)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return "no such process";
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed();
    }
    return "no such line";
}

/// The ids of \a plugin's processes.
QList<int> workersOf(const QString &plugin)
{
    QList<int> found;
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &process : processes) {
        QFile file(QStringLiteral("/proc/%1/cmdline").arg(process));
        if (process.toInt() == 0 || !file.open(QIODevice::ReadOnly))
            continue;
        const QList<QByteArray> arguments = file.readAll().split('\0');
        if (arguments.value(0) == PLUGIN_PROGRAM && arguments.value(1) == QFile::encodeName(plugin))
            found.append(process.toInt());
    }
    return found;
}

/// Runs a plug-in that attempts what is forbidden, confined as the host confines plug-ins.
class ConfinementTest : public testing::Test {
protected:
    explicit ConfinementTest(bool network = true)
    {
        PluginProcessOptions options;
        options.program = QStringLiteral(PLUGIN_PROGRAM);
        options.start = [] {
            StartMessage message;
            message.file = QStringLiteral(PROBING_PLUGIN);
            message.logLevel = QStringLiteral("error");
            return message;
        };
        m_plugin = std::make_unique<SupervisedPlugin>(QStringLiteral(PROBING_PLUGIN), options);
        PluginDescriptor descriptor;
        descriptor.needs.network = network;
        m_plugin->setDescriptor(descriptor);
        EXPECT_TRUE(QDir(m_readable.path()).mkdir(QStringLiteral("below")));
        QFile readable(m_readable.filePath(QStringLiteral("below/file")));
        EXPECT_TRUE(readable.open(QIODevice::WriteOnly));
        m_plugin->setFolder(m_readable.path());
        bool finished = false;
        QObject::connect(m_plugin.get(), &Plugin::loadFinished, [&] { finished = true; });
        m_plugin->load();
        EXPECT_TRUE(spinUntil([&] { return finished; }, Patience));
        EXPECT_EQ(m_plugin->error(), QString());
        QFile existing(this->file());
        EXPECT_TRUE(existing.open(QIODevice::WriteOnly));
        existing.write("content");
    }

    ~ConfinementTest() override
    {
        m_plugin->unload();
        EXPECT_TRUE(spinUntil([&] { return !m_plugin->isRunning(); }, Patience));
    }

    /// A file that this process may write.
    QString file() const { return m_folder.filePath(QStringLiteral("file")); }

    /// Has the plug-in attempt \a deed; returns its errno, 0 on success.
    int attempt(const char *deed, const QString &onFile = {})
    {
        const Answer answer = setData(m_root, path("Probing:"), QString::fromLatin1(deed), onFile);
        EXPECT_TRUE(answer.spin()) << deed;
        EXPECT_FALSE(answer.isError()) << deed << ' ' << answer.errorText().toStdString();
        bool isNumber = false;
        const int outcome = answer.value().toInt(&isNumber);
        EXPECT_TRUE(isNumber) << deed;
        return outcome;
    }

    CMRootWorker m_root;
    const QTemporaryDir m_folder;
    const QTemporaryDir m_readable; ///< the plug-in's folder
    std::unique_ptr<SupervisedPlugin> m_plugin;
};

TEST_F(ConfinementTest, AllowsWhatAPluginNeeds)
{
    EXPECT_EQ(attempt("thread"), 0);
    for (const char *deed : {"internet", "internet6", "datagrams", "netlink"})
        EXPECT_EQ(attempt(deed), 0) << deed;
    EXPECT_EQ(attempt("read", QStringLiteral("/etc/hosts")), 0);
    EXPECT_EQ(attempt("read", QStringLiteral(PROBING_PLUGIN)), 0);
    EXPECT_EQ(attempt("read", QStringLiteral("/dev/urandom")), 0);
}

TEST_F(ConfinementTest, WritesNoFiles)
{
    const auto refused = AnyOf(EPERM, EACCES);
    for (const char *deed :
        {"change", "create", "empty", "truncate", "remove", "rename", "chmod", "folder", "link"})
        EXPECT_THAT(attempt(deed, file()), refused) << deed;
    const QString none = m_folder.filePath(QStringLiteral("new"));
    EXPECT_THAT(attempt("create", none), refused);
    EXPECT_FALSE(QFile::exists(none));
    QFile unchanged(file());
    ASSERT_TRUE(unchanged.open(QIODevice::ReadOnly));
    EXPECT_EQ(unchanged.readAll(), "content");
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList(QStringLiteral("file")));
}

TEST_F(ConfinementTest, ReadsNoOtherFiles)
{
    if (!hasLandlock())
        GTEST_SKIP() << "this kernel has no Landlock: files can be read";
    EXPECT_EQ(attempt("read", QStringLiteral("/etc/passwd")), EACCES);
    EXPECT_EQ(attempt("read", file()), EACCES);
    EXPECT_EQ(attempt("read", QStringLiteral("/proc/%1/environ").arg(::getpid())), EACCES);
    EXPECT_EQ(attempt("read", QStringLiteral("/proc/self/root/etc/passwd")), EACCES);
}

TEST_F(ConfinementTest, ReadsItsFolderAndWritesNothingThere)
{
    const QString inside = m_readable.filePath(QStringLiteral("below/file"));
    EXPECT_EQ(attempt("read", m_readable.path()), 0);
    EXPECT_EQ(attempt("read", inside), 0);
    for (const char *deed : {"change", "empty", "truncate", "remove", "chmod"})
        EXPECT_THAT(attempt(deed, inside), AnyOf(EPERM, EACCES)) << deed;
    EXPECT_THAT(
        attempt("create", m_readable.filePath(QStringLiteral("new"))), AnyOf(EPERM, EACCES));
    if (!hasLandlock())
        GTEST_SKIP() << "this kernel has no Landlock: files can be read";
    const QString out = m_readable.filePath(QStringLiteral("out"));
    ASSERT_TRUE(QFile::link(file(), out));
    EXPECT_EQ(attempt("read", out), EACCES) << "a link leads nowhere else";
}

/// A plug-in whose descriptor does not say that it needs the network.
class ConfinementWithoutNetworkTest : public ConfinementTest {
protected:
    ConfinementWithoutNetworkTest()
        : ConfinementTest(false)
    {
    }
};

TEST_F(ConfinementWithoutNetworkTest, OpensNoSocketToTheInternet)
{
    for (const char *deed : {"internet", "internet6", "datagrams", "netlink"})
        EXPECT_EQ(attempt(deed), EPERM) << deed;
    EXPECT_EQ(attempt("thread"), 0) << "all else is as it was";
    EXPECT_EQ(attempt("read", QStringLiteral("/etc/hosts")), 0);
}

TEST_F(ConfinementTest, StartsNoProcesses)
{
    for (const char *deed : {"fork", "rawfork", "exec"})
        EXPECT_EQ(attempt(deed), EPERM) << deed;
}

TEST_F(ConfinementTest, CannotAffectOtherProcesses)
{
    for (const char *deed : {"ptrace", "kill", "tgkill", "signaloffile"})
        EXPECT_EQ(attempt(deed), EPERM) << deed;
    EXPECT_EQ(attempt("pidfd"), ENOSYS);
}

TEST_F(ConfinementTest, NewerCallsFailAsOnAnOlderKernel)
{
    // Only ENOSYS makes a C library fall back to the older call; any other error reaches its
    // caller.
    for (const char *deed : {"clone3", "openat2", "landlock", "newest", "yettocome"})
        EXPECT_EQ(attempt(deed), ENOSYS) << deed;
}

TEST_F(ConfinementTest, GainsNoPrivileges)
{
    for (const char *deed : {"setuid", "setgid", "setgroups", "namespace", "chroot", "mount",
             "dumpable", "survive", "corelimit", "memorylimit"})
        EXPECT_EQ(attempt(deed), EPERM) << deed;
    // The kernel keeps filters and capabilities for each thread.
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(attempt("pid")));
    const QStringList threads = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    EXPECT_GE(threads.size(), 3);
    for (const QString &thread : threads) {
        const int id = thread.toInt();
        EXPECT_EQ(statusOf(id, "NoNewPrivs"), "1");
        EXPECT_EQ(statusOf(id, "Seccomp"), "2") << "a filter";
        for (const char *set : {"CapEff", "CapPrm", "CapInh"})
            EXPECT_EQ(statusOf(id, set), "0000000000000000") << set << ' ' << id;
    }
}

TEST_F(ConfinementTest, OpensInternetSocketsOnly)
{
    // Without the filter of families, no capabilities still rules out the first two.
    for (const char *deed : {"raw", "packet", "listen"})
        EXPECT_EQ(attempt(deed), EPERM) << deed;
    EXPECT_EQ(attempt("local"), FiltersSockets ? EPERM : 0);
}

TEST_F(ConfinementTest, CannotReachLocalServices)
{
    if (!FiltersSockets)
        GTEST_SKIP() << "this architecture has no filter of sockets";
    const QString name = m_folder.filePath(QStringLiteral("socket"));
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(name).constData(), sizeof address.sun_path);
    const int service = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(service, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    EXPECT_EQ(attempt("datagram", name), EPERM);
    char byte = 0;
    EXPECT_EQ(::recv(service, &byte, 1, MSG_DONTWAIT), -1);
    ::close(service);
}

TEST_F(ConfinementTest, DescriptorsAreLimited)
{
    const int count = attempt("descriptors");
    EXPECT_LE(count, 256);
    EXPECT_GE(count, 100);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(ConfinementTest, MemoryIsLimited)
{
    EXPECT_EQ(attempt("memory"), ENOMEM);
    EXPECT_EQ(attempt("sharedmemory"), EPERM) << "which no limit counts";
}
#endif

TEST(PluginProcessLife, EndsWithTheHostHoweverThatEnds)
{
    // A file name of its own, by which workersOf() finds the process.
    const QTemporaryDir folder;
    const QString plugin = folder.filePath(QStringLiteral("probing.so"));
    ASSERT_TRUE(QFile::link(QStringLiteral(PROBING_PLUGIN), plugin));
    ASSERT_TRUE(QFile::link(PluginDescriptor::fileOf(QStringLiteral(PROBING_PLUGIN)),
        PluginDescriptor::fileOf(plugin)));
    HostProcess host(
        QStringLiteral(HOST_PROGRAM), QStringList {QStringLiteral("--plugin"), plugin});
    ASSERT_TRUE(host.isReady()) << host.errors().toStdString();
    ASSERT_EQ(workersOf(plugin).size(), 1);
    host.signal(SIGKILL);
    host.waitForEnd();
    EXPECT_TRUE(spinUntil([&] { return workersOf(plugin).isEmpty(); }));
}

} // namespace
