#include "bench/Plugin.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/HttpClient.h"
#include "bench/Answers.h"

namespace {

ScriptedServer::Response serve(const ScriptedServer::Request &request)
{
    ScriptedServer::Response response;
    response.headers = {{"Content-Type", "application/json; charset=utf-8"}};
    response.body = request.path() == "/Describe.ashx" ? genresAnswer() : rootAnswer();
    return response;
}

} // namespace

Surroundings::Surroundings()
    : m_server(serve)
{
    m_root.addWorker(QStringLiteral("settings"), &m_values);
    m_root.addWorker(QStringLiteral("system"), &m_values);
    m_root.addWorker(QStringLiteral("network"), &m_values);
    m_values.define(VeskTuneInPartnerIdPath(), VeskValue::fromString(QStringLiteral("local")));
    m_values.define(VeskTuneInBrowseIndexUrlPath(), VeskValue::fromString(QString()));
    m_values.define(
        VeskTuneInSupportedStreamsPath(), VeskValue::fromString(QStringLiteral("mp3,aac,ogg")));
    m_values.define(VeskTuneInEnabledFixItWizardPath(), VeskValue::fromBool(true));
    m_values.define(VeskChildElementsInSingleListPath(), VeskValue::fromBool(true));
    m_values.define(VeskUILanguagePath(), VeskValue::fromString(QStringLiteral("en-US")));
    m_values.define(VeskSystemMemberIdPath(),
        VeskValue::fromString(QStringLiteral("0123456789abcdef0123456789abcdef")));
    m_values.define(VeskNetworkStateEthernetMAC(), VeskValue::fromString(QString()));
    m_values.define(VeskNetworkStateConnected(), VeskValue::fromBool(true));
    HttpClient::setConnectTo({QString::fromLatin1(m_server.connectTo("opml.radiotime.com"))});
}

Surroundings::~Surroundings()
{
    m_root.removeWorker(&m_values);
}

QByteArray Surroundings::rootUrl() const
{
    return "http://127.0.0.1:" + QByteArray::number(m_server.port()) + "/Browse.ashx";
}

Plugin::Plugin()
{
    m_thread = std::make_unique<WorkerThread>([] {
        QVariantHash config {{VeskService_Id(), QStringLiteral("tunein")}};
        return static_cast<CMTuneInWorker *>(worker_create("tunein", &config));
    });
    // The state arrives through the worker's event loop; from here the question waits for it.
    worker()->networkStateConnected();
}
