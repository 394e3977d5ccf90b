// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/HostProcess.h"

#include "ctl/RpcClient.h"
#include "tests/support/ScriptedServer.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>

#include <gmock/gmock.h>

#include <glib.h>

#include <chrono>
#include <csignal>
#include <curl/curl.h>
#include <future>
#include <thread>

namespace {

QString plugin(const char *name)
{
    return QStringLiteral(TEST_PLUGINS "/libvesk_cb_%1.so").arg(QLatin1String(name));
}

QStringList plugins(std::initializer_list<const char *> names)
{
    QStringList arguments;
    for (const char *name : names)
        arguments += {QStringLiteral("--plugin"), plugin(name)};
    return arguments;
}

std::unique_ptr<HostProcess> start(const QStringList &arguments)
{
    return std::make_unique<HostProcess>(QStringLiteral(HOST_PROGRAM), arguments);
}

QVariantHash rows(const QString &url, const char *path, const QStringList &roles)
{
    return RpcClient(url)
        .call(QStringLiteral("getRows"),
            {{QStringLiteral("path"), QLatin1String(path)}, {QStringLiteral("roles"), roles}})
        .result.toHash();
}

QVariant value(const QString &url, const char *path)
{
    const QVariantHash result
        = RpcClient(url)
              .call(QStringLiteral("getData"),
                  {{QStringLiteral("path"), QLatin1String(path)},
                      {QStringLiteral("roles"), QStringList {QStringLiteral("value")}}})
              .result.toHash();
    return result.value(QStringLiteral("values")).toList().value(0);
}

TEST(HostProcessTest, SaysThatItIsReadyInOneLineAndEndsCleanly)
{
    for (const int number : {SIGTERM, SIGINT}) {
        const auto host = start(plugins({"good"}));
        ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
        EXPECT_THAT(host->output().toStdString(),
            testing::MatchesRegex("vesk-host: ready at http://127\\.0\\.0\\.1:[0-9]+/\n"));
        host->signal(number);
        EXPECT_EQ(host->waitForEnd(), 0) << host->errors().toStdString();
        EXPECT_EQ(host->output().count('\n'), 1);
    }
}

/// Whether a host has confined itself, which it does right after it has begun to take signals, and
/// before it reads its configuration.
bool isConfined(pid_t host)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(host));
    return status.open(QIODevice::ReadOnly) && status.readAll().contains("\nNoNewPrivs:\t1\n");
}

/// The exit status of a host that gets the signal once it is confined, or some milliseconds later;
/// -1 when it is killed.
int endOfStartingHost(int number, std::chrono::milliseconds after)
{
    const QTemporaryDir folder;
    QStringList arguments = plugins({"good"})
        + QStringList {QStringLiteral("--state-dir"), folder.path(), QStringLiteral("--listen"),
            QStringLiteral("127.0.0.1:0")};
    if (qEnvironmentVariableIsSet("VESK_TEST_IN_PROCESS"))
        arguments += QStringLiteral("--in-process");
    QProcess host;
    host.start(QStringLiteral(HOST_PROGRAM), arguments);
    const auto id = static_cast<pid_t>(host.processId());
    const QDeadlineTimer patience(20000);
    while (!isConfined(id)) {
        if (patience.hasExpired())
            return -1;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    std::this_thread::sleep_for(after);
    ::kill(id, number);
    if (!host.waitForFinished(20000) || host.exitStatus() != QProcess::NormalExit)
        return -1;
    return host.exitCode();
}

TEST(HostProcessTest, EndsCleanlyAtASignalWhileItStarts)
{
    for (const int milliseconds : {0, 1, 5, 20, 60}) {
        for (const int number : {SIGTERM, SIGINT}) {
            EXPECT_EQ(endOfStartingHost(number, std::chrono::milliseconds(milliseconds)), 0)
                << "signal " << number << " after " << milliseconds << " ms";
        }
    }
}

TEST(HostProcessTest, ServesItsPlugIns)
{
    const auto host = start(plugins({"good"}));
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    const QVariantHash services
        = rows(host->url(), "host:", {QStringLiteral("title"), QStringLiteral("path")});
    EXPECT_EQ(services.value(QStringLiteral("rows")).toList(),
        (QVariantList {
            QVariant(QVariantList {QStringLiteral("Good plug-in"), QStringLiteral("Good:")})}));
    const QVariantHash screen = rows(host->url(), "Good:", {QStringLiteral("id")});
    EXPECT_EQ(screen.value(QStringLiteral("rows")).toList(),
        (QVariantList {QVariant(QVariantList {QStringLiteral("good")})}))
        << "the service id comes from the file's name";
}

TEST(HostProcessTest, GoesOnWithoutPlugInsThatCannotBeLoaded)
{
    const auto host
        = start(plugins({"null", "good", "noentry", "missing", "throwing", "good_too"}));
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    const QVariantHash services = rows(host->url(), "host:services",
        {QStringLiteral("path"), QStringLiteral("title"), QStringLiteral("description")});
    const QVariantList list = services.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(list.size(), 6);
    // Two of them serve the same paths; the first one wins.
    const bool isFirst = !list.at(1).toList().at(0).isNull();
    EXPECT_EQ(list.at(isFirst ? 1 : 5).toList().at(0), QStringLiteral("Good:"));
    for (const int failed : {0, 2, 3, 4, isFirst ? 5 : 1}) {
        EXPECT_TRUE(list.at(failed).toList().at(0).isNull()) << failed;
        EXPECT_THAT(list.at(failed).toList().at(1).toString().toStdString(),
            testing::HasSubstr("could not be loaded"));
        EXPECT_FALSE(list.at(failed).toList().at(2).toString().isEmpty()) << failed;
    }
    host->terminate();
    EXPECT_EQ(host->waitForEnd(), 0);
}

TEST(HostProcessTest, KeepsSettingsFromOneRunToTheNext)
{
    const QTemporaryDir folder;
    const QStringList arguments
        = plugins({"good"}) + QStringList {QStringLiteral("--state-dir"), folder.path()};
    QVariant memberId;
    {
        const auto host = start(arguments);
        ASSERT_TRUE(host->isReady());
        memberId = value(host->url(), "system:memberId");
        const RpcAnswer answer
            = RpcClient(host->url())
                  .call(QStringLiteral("setData"),
                      {{QStringLiteral("path"), QStringLiteral("settings:tunein/partnerId")},
                          {QStringLiteral("role"), QStringLiteral("value")},
                          {QStringLiteral("value"), QStringLiteral("abc")}});
        EXPECT_EQ(answer.kind, RpcAnswer::Result) << answer.message.toStdString();
        host->terminate();
        ASSERT_EQ(host->waitForEnd(), 0);
    }
    const auto host = start(arguments);
    EXPECT_EQ(
        value(host->url(), "settings:tunein/partnerId").toHash().value(QStringLiteral("string_")),
        QStringLiteral("abc"));
    EXPECT_EQ(value(host->url(), "system:memberId"), memberId);
}

TEST(HostProcessTest, PinsAValueThatIsSetAtTheStart)
{
    const auto host = start(plugins({"good"})
        + QStringList {QStringLiteral("--set"), QStringLiteral("network:connected=true"),
            QStringLiteral("--set"), QStringLiteral("settings:tunein/partnerId=overridden"),
            QStringLiteral("--set"), QStringLiteral("settings:tunein/partnerId=pinned")});
    ASSERT_TRUE(host->isReady());
    EXPECT_EQ(
        value(host->url(), "network:connected").toHash().value(QStringLiteral("bool_")), true);
    const RpcAnswer answer
        = RpcClient(host->url())
              .call(QStringLiteral("setData"),
                  {{QStringLiteral("path"), QStringLiteral("settings:tunein/partnerId")},
                      {QStringLiteral("role"), QStringLiteral("value")},
                      {QStringLiteral("value"), QStringLiteral("other")}});
    EXPECT_EQ(answer.kind, RpcAnswer::Error);
    EXPECT_EQ(
        value(host->url(), "settings:tunein/partnerId").toHash().value(QStringLiteral("string_")),
        QStringLiteral("pinned"));
    QFile kept(host->stateFolder() + QStringLiteral("/vesk/settings.json"));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_FALSE(kept.readAll().contains("pinned"));
}

/// Accepts requests and answers none.
class SilentService : public ScriptedServer {
public:
    SilentService()
        : ScriptedServer([](const Request &) {
            Response response;
            response.end = End::StallBeforeHead;
            return response;
        })
    {
    }

    /// Makes the plug-in "busy" send its requests here.
    QStringList setting() const
    {
        return {QStringLiteral("--set"),
            QStringLiteral("settings:tunein/browseIndexUrl=http://127.0.0.1:%1/").arg(port())};
    }
};

/// A request to the plug-in "busy", which sends one to its service.
auto askBusy(const HostProcess &host)
{
    return std::async(std::launch::async, [url = host.url()] {
        GMainContext *context = g_main_context_new();
        g_main_context_push_thread_default(context);
        const RpcAnswer answer = RpcClient(url).call(
            QStringLiteral("getData"), {{QStringLiteral("path"), QStringLiteral("Busy:")}});
        g_main_context_pop_thread_default(context);
        g_main_context_unref(context);
        return answer;
    });
}

TEST(HostProcessTest, EndsAtOnceWhileAPlugInWaitsForItsService)
{
    SilentService service;
    const auto host = start(plugins({"busy", "good_too"}) + service.setting());
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    const auto asking = askBusy(*host);
    ASSERT_TRUE(service.waitForRequests(1));

    QElapsedTimer elapsed;
    elapsed.start();
    host->terminate();
    EXPECT_EQ(host->waitForEnd(), 0) << host->errors().toStdString();
    EXPECT_LT(elapsed.elapsed(), 10000) << "the exchange itself would last 30 seconds";
}

TEST(HostProcessTest, ASlowServiceDoesNotDelayAnother)
{
    SilentService service;
    const auto host = start(plugins({"busy", "good_too"}) + service.setting());
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    const auto asking = askBusy(*host);
    ASSERT_TRUE(service.waitForRequests(1));
    EXPECT_EQ(rows(host->url(), "Good:", {}).value(QStringLiteral("rowsCount")), 1);
    host->terminate();
    EXPECT_EQ(host->waitForEnd(), 0) << host->errors().toStdString();
}

TEST(HostProcessTest, ConnectToRedirectsAName)
{
    ScriptedServer service([](const ScriptedServer::Request &) {
        return ScriptedServer::Response {200, "here", {}, ScriptedServer::End::Complete, 0};
    });
    const auto host = start(plugins({"busy"})
        + QStringList {QStringLiteral("--set"),
            QStringLiteral("settings:tunein/browseIndexUrl=http://far.example/x"),
            QStringLiteral("--connect-to"), QString::fromLatin1(service.connectTo("far.example"))});
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    const QVariantHash result
        = RpcClient(host->url())
              .call(QStringLiteral("getData"), {{QStringLiteral("path"), QStringLiteral("Busy:")}})
              .result.toHash();
    EXPECT_EQ(result.value(QStringLiteral("values")).toList(), QVariantList {0});
    EXPECT_EQ(service.requests().value(0).header("Host"), "far.example");
}

TEST(HostProcessTest, BadUsageIsStatusTwoAndOneLine)
{
    for (const QStringList &arguments :
        {QStringList {QStringLiteral("--listen"), QStringLiteral("radio.example:1")},
            QStringList {QStringLiteral("--nonsense")},
            QStringList {QStringLiteral("--set"), QStringLiteral("settings:nothing=1")},
            QStringList {QStringLiteral("--ca-file"), QStringLiteral("/nonexistent")},
            QStringList {QStringLiteral("--log-file"), QStringLiteral("/nonexistent/log")},
            QStringList {QStringLiteral("--config"), QStringLiteral("/nonexistent")}}) {
        const auto host = start(arguments);
        EXPECT_FALSE(host->isReady());
        EXPECT_EQ(host->waitForEnd(), 2) << arguments.first().toStdString();
        EXPECT_EQ(host->output(), "");
        EXPECT_THAT(host->errors().toStdString(), testing::MatchesRegex("vesk-host: [^\n]+\n"));
    }
}

TEST(HostProcessTest, FailsWhenItsPortIsTaken)
{
    const auto first = start(plugins({"good"}));
    ASSERT_TRUE(first->isReady());
    const QString address = first->url().mid(7).chopped(1);
    const auto second
        = start(plugins({"good"}) + QStringList {QStringLiteral("--listen"), address});
    EXPECT_FALSE(second->isReady());
    EXPECT_EQ(second->waitForEnd(), 1);
    EXPECT_EQ(second->output(), "");
}

TEST(HostProcessTest, LogsToAFile)
{
    const QTemporaryDir folder;
    const QString log = folder.filePath(QStringLiteral("host.log"));
    const auto host = start(plugins({"good"})
        + QStringList {QStringLiteral("--log-file"), log, QStringLiteral("--log-level"),
            QStringLiteral("debug")});
    ASSERT_TRUE(host->isReady());
    host->terminate();
    EXPECT_EQ(host->waitForEnd(), 0);
    EXPECT_EQ(host->errors(), "");
    QFile file(log);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_THAT(file.readAll().toStdString(), testing::HasSubstr("serves Good:"));
}

TEST(HostProcessTest, ExecutesNothingOfAPluginWithoutAUsableDescriptor)
{
    const struct {
        const char *descriptor; ///< null: there is none
        const char *problem;
    } cases[] = {
        {nullptr, "libvesk_cb_busy.json: No such file or directory"},
        {R"({"format": 1, "id": "a", "chagning": []})",
            "libvesk_cb_busy.json: there is no \"chagning\""},
        {R"({"format": 2, "id": "a"})", "libvesk_cb_busy.json: \"format\" is not 1"},
        {R"({"format": 1, "id": "a", "api": "9.0", "new": 1})",
            "libvesk_cb_busy.json: it was built with version 9.0 of the SDK, and this host has "
            "0.1"},
    };
    for (const auto &each : cases) {
        const QTemporaryDir folder;
        const QString library = folder.filePath(QStringLiteral("libvesk_cb_busy.so"));
        ASSERT_TRUE(QFile::copy(plugin("busy"), library));
        if (each.descriptor) {
            QFile descriptor(folder.filePath(QStringLiteral("libvesk_cb_busy.json")));
            ASSERT_TRUE(descriptor.open(QIODevice::WriteOnly));
            descriptor.write(each.descriptor);
        }
        const auto host = start(
            {QStringLiteral("--plugin"), library, QStringLiteral("--plugin"), plugin("good")});
        ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
        const QVariantList services = rows(host->url(), "host:services",
            {QStringLiteral("title"), QStringLiteral("path"), QStringLiteral("description")})
                                          .value(QStringLiteral("rows"))
                                          .toList();
        ASSERT_EQ(services.size(), 2);
        EXPECT_EQ(services.at(0).toList(),
            (QVariantList {QStringLiteral("libvesk_cb_busy.so could not be loaded"), QVariant(),
                QString::fromLatin1(each.problem)}));
        EXPECT_EQ(services.at(1).toList().value(1), QStringLiteral("Good:")) << "the host goes on";
        host->terminate();
        EXPECT_EQ(host->waitForEnd(), 0);
        EXPECT_THAT(host->errors().toStdString(), testing::HasSubstr("cannot be loaded: "));
    }
}

TEST(HostProcessTest, ExecutesNothingOfALibraryOfAnotherSdk)
{
    const struct {
        const char *plugin;
        const char *problem;
        bool isExecuted;
    } cases[] = {
        {"tracing", "worker_create made no worker", true},
        {"tracing_later", "it was built with version 0.9 of the SDK, and this host has 0.1", false},
        {"tracing_none", "it does not say with which version of the SDK it was built", false},
    };
    for (const auto &each : cases) {
        const auto host = start(plugins({each.plugin}));
        ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
        const QVariantList services = rows(
            host->url(), "host:services", {QStringLiteral("title"), QStringLiteral("description")})
                                          .value(QStringLiteral("rows"))
                                          .toList();
        ASSERT_EQ(services.size(), 1);
        EXPECT_THAT(services.at(0).toList().at(0).toString().toStdString(),
            testing::HasSubstr("could not be loaded"));
        EXPECT_EQ(services.at(0).toList().at(1), QString::fromLatin1(each.problem));
        host->terminate();
        EXPECT_EQ(host->waitForEnd(), 0);
        EXPECT_EQ(host->errors().contains("something of it is executed"), each.isExecuted)
            << each.plugin;
    }
}

TEST(HostProcessTest, ListsWhatADescriptorSaysOfAService)
{
    const QTemporaryDir folder;
    const QString library = folder.filePath(QStringLiteral("libvesk_cb_good.so"));
    ASSERT_TRUE(QFile::copy(plugin("good"), library));
    QFile descriptor(folder.filePath(QStringLiteral("libvesk_cb_good.json")));
    ASSERT_TRUE(descriptor.open(QIODevice::WriteOnly));
    descriptor.write(R"({"format": 1, "id": "goodie", "name": "Good", "version": "1", "api": "0.1",
        "screens": {"search": "found?a=1", "import": "songs",
            "favorites": {"screen": "songs", "toggle": "menu/keep", "ids": ["id"]},
            "account": {"value": "account", "type": "tuneInAccount"}}})");
    descriptor.close();
    const auto host = start({QStringLiteral("--plugin"), library});
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    const QVariantList service = rows(host->url(), "host:services",
        {QStringLiteral("title"), QStringLiteral("id"), QStringLiteral("search"),
            QStringLiteral("favorites"), QStringLiteral("account"), QStringLiteral("import"),
            QStringLiteral("export")})
                                     .value(QStringLiteral("rows"))
                                     .toList()
                                     .value(0)
                                     .toList();
    const auto leading = [](const char *path) {
        return QVariantHash {{QStringLiteral("path"), QLatin1String(path)}};
    };
    QVariantHash favorites = leading("Good:songs");
    favorites.insert(QStringLiteral("toggle"), QVariantList {QStringLiteral("Good:menu/keep")});
    favorites.insert(QStringLiteral("ids"), QVariantList {QStringLiteral("id")});
    QVariantHash account = leading("Good:account");
    account.insert(QStringLiteral("type"), 115);
    account.insert(QStringLiteral("key"), QStringLiteral("tuneInAccount"));
    EXPECT_EQ(service,
        (QVariantList {QStringLiteral("Good plug-in"), QStringLiteral("goodie"),
            leading("Good:found?a=1"), favorites, account, leading("Good:songs"), QVariant()}));
    host->terminate();
    EXPECT_EQ(host->waitForEnd(), 0);
}

TEST(HostProcessTest, ReadsAConfigurationFile)
{
    const QTemporaryDir folder;
    QFile config(folder.filePath(QStringLiteral("host.json")));
    ASSERT_TRUE(config.open(QIODevice::WriteOnly));
    config.write("{\"plugins\": [{\"file\": \"" + plugin("good").toUtf8()
        + "\", \"serviceId\": \"named\"}], \"listen\": \"127.0.0.1:0\"}");
    config.close();
    const auto host = start({QStringLiteral("--config"), config.fileName()});
    ASSERT_TRUE(host->isReady()) << host->errors().toStdString();
    EXPECT_EQ(
        rows(host->url(), "Good:", {QStringLiteral("id")}).value(QStringLiteral("rows")).toList(),
        (QVariantList {QVariant(QVariantList {QStringLiteral("named")})}));
}

class HostPictures : public testing::Test {
protected:
    /// Starts a host whose only service names the picture; returns whether it is ready.
    bool start(const QStringList &arguments)
    {
        m_picture = QStringLiteral("http://127.0.0.1:%1/a.png").arg(m_server.port());
        QFile config(m_folder.filePath(QStringLiteral("host.json")));
        EXPECT_TRUE(config.open(QIODevice::WriteOnly));
        config.write("{\"plugins\": [{\"file\": \"" + plugin("good").toUtf8()
            + "\", \"serviceId\": \"" + m_picture.toUtf8() + "\"}]}");
        config.close();
        m_host = ::start(QStringList {QStringLiteral("--config"), config.fileName()} + arguments);
        if (m_host->isReady())
            rows(m_host->url(), "Good:", {QStringLiteral("icon")});
        return m_host->isReady();
    }
    long fetch()
    {
        const QByteArray digest
            = QCryptographicHash::hash(m_picture.toUtf8(), QCryptographicHash::Sha256).toHex();
        const QByteArray url = m_host->url().toUtf8() + "artwork/" + digest;
        CURL *const curl = curl_easy_init();
        curl_easy_setopt(curl, CURLOPT_URL, url.constData());
        curl_easy_setopt(
            curl, CURLOPT_WRITEFUNCTION,
            +[](char *, std::size_t, std::size_t size, void *) { return size; });
        EXPECT_EQ(curl_easy_perform(curl), CURLE_OK);
        long code = 0;
        curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &code);
        curl_easy_cleanup(curl);
        return code;
    }
    void allow(bool allowed)
    {
        const auto answer
            = RpcClient(m_host->url())
                  .call(QStringLiteral("setData"),
                      {{QStringLiteral("path"), QStringLiteral("settings:network/localAddresses")},
                          {QStringLiteral("role"), QStringLiteral("value")},
                          {QStringLiteral("value"), allowed}});
        EXPECT_EQ(answer.kind, RpcAnswer::Result) << answer.message.toStdString();
    }

    const QTemporaryDir m_folder;
    QString m_picture;
    ScriptedServer m_server {[](const ScriptedServer::Request &) {
        return ScriptedServer::Response {200, "\x89PNG\r\n\x1a\n", {}};
    }};
    std::unique_ptr<HostProcess> m_host;
};

TEST_F(HostPictures, AreNotFetchedFromInsideForAServiceOnTheInternet)
{
    ASSERT_TRUE(start({QStringLiteral("--connect-to"), QStringLiteral("a.example:80:1.1.1.1:80")}));
    EXPECT_EQ(fetch(), 502);
    EXPECT_EQ(m_server.connections(), 0);
}

TEST_F(HostPictures, AreFetchedFromInsideIfTheSettingAllowsIt)
{
    ASSERT_TRUE(start({}));
    EXPECT_EQ(fetch(), 502);
    allow(true);
    EXPECT_EQ(fetch(), 200);
    allow(false);
    m_picture += QLatin1Char('?'); // which no service has named
    EXPECT_EQ(fetch(), 404);
}

TEST_F(HostPictures, AreFetchedFromInsideForAServiceInside)
{
    ASSERT_TRUE(
        start({QStringLiteral("--connect-to"), QStringLiteral("a.example:80:127.0.0.1:80")}));
    EXPECT_EQ(fetch(), 200);
}

} // namespace
