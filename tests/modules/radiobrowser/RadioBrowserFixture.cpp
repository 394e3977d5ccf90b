// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/radiobrowser/RadioBrowserFixture.h"

#include "api/web/VeskJson.h"
#include "api/web/VeskUrl.h"

namespace {

constexpr unsigned long Deadline = 60000;

using ReplyData = std::shared_ptr<CMReplyData<QVariant>>;

template <class Make>
ReplyData ask(const Make &make)
{
    auto data = std::make_shared<CMReplyData<QVariant>>();
    CMRoot()->request(make(CMReply<QVariant>(data)));
    EXPECT_TRUE(data->waitForFinished(Deadline)) << "a request was not answered";
    return data;
}

} // namespace

QStringList RadioBrowserRows::titles() const
{
    QStringList titles;
    for (const VeskRoles &row : rows)
        titles.append(row.title().toString());
    return titles;
}

RadioBrowserFixture::RadioBrowserFixture()
{
    m_root.addWorker(text("settings"), &m_values);
}

RadioBrowserFixture::~RadioBrowserFixture()
{
    stop();
    m_root.removeWorker(&m_values);
}

void RadioBrowserFixture::start(const QString &server)
{
    startWithConfig({{text("server"), server}}, [] {
        ADD_FAILURE() << "a look-up where a server is configured";
        return QStringList();
    });
}

void RadioBrowserFixture::startWithServers(const QStringList &servers)
{
    startWithConfig({}, [servers] { return servers; });
}

void RadioBrowserFixture::startWithConfig(
    const QVariantHash &config, RadioBrowserServers::LookUp lookUp)
{
    stop(); // its name is taken until then
    m_thread = std::make_unique<WorkerThread>([&, clock = m_clock]() -> QObject * {
        return new RadioBrowserWorker(config, lookUp, [clock] { return clock->now(); });
    });
}

void RadioBrowserFixture::define(const CMPath &path, const QString &text)
{
    m_values.define(path, VeskValue::fromString(text), CMValuesWorker::Writable);
}

QString RadioBrowserFixture::addressOf(const ScriptedServer &server)
{
    return QStringLiteral("http://127.0.0.1:%1").arg(server.port());
}

RadioBrowserRows RadioBrowserFixture::rows(const QString &path, int first, int last)
{
    const ReplyData data = ask([&](const CMReply<QVariant> &reply) {
        return CMGetRowsRequest(CMPath::fromEncoded(path), VeskRoles::all(), first, last, reply);
    });
    RadioBrowserRows result;
    result.fullError = data->error();
    if (!data->error().isEmpty())
        result.error = data->error().message().toString();
    const VeskRowsRoles answer(VeskHash(data->value().toHash()));
    result.count = answer.rowsCount();
    result.screen = answer.roles();
    const QVariantList rows = answer.rows();
    for (const QVariant &values : rows) {
        VeskRoles row;
        for (int i = 0; i < VeskRoles::all().size(); ++i) {
            const QVariant value = values.toList().value(i);
            if (!value.isNull())
                row.insert(VeskRoles::all().at(i), value);
        }
        result.rows.append(row);
    }
    return result;
}

QVariant RadioBrowserFixture::role(const QString &path, const QString &role)
{
    const ReplyData data = ask([&](const CMReply<QVariant> &reply) {
        return CMGetDataRequest(CMPath::fromEncoded(path), {role}, reply);
    });
    EXPECT_TRUE(data->error().isEmpty()) << data->error();
    return data->value().toList().value(0);
}

CMError RadioBrowserFixture::setData(const CMPath &path, const QString &role, const QVariant &value)
{
    const ReplyData data = ask(
        [&](const CMReply<QVariant> &reply) { return CMSetDataRequest(path, role, value, reply); });
    return data->error();
}

QVariantHash radioBrowserStation(int number, const QVariantHash &fields)
{
    QVariantHash station {
        {text("stationuuid"),
            QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 10, QLatin1Char('0'))},
        {text("name"), QStringLiteral("Station %1").arg(number)},
        {text("url_resolved"), QStringLiteral("http://stream.example/%1").arg(number)},
        {text("codec"), text("MP3")},
        {text("bitrate"), 128},
        {text("hls"), 0},
        {text("country"), text("Germany")},
        {text("tags"), text("jazz,blues")},
        {text("favicon"), text("https://icons.example/1.png")},
    };
    for (auto it = fields.constBegin(); it != fields.constEnd(); ++it)
        station.insert(it.key(), it.value());
    return station;
}

ScriptedServer::Handler radioBrowserAnswer(const QVariantList &entries)
{
    ScriptedServer::Response response;
    response.body = VeskJson::write(entries);
    return [response](const ScriptedServer::Request &) { return response; };
}

ScriptedServer::Handler radioBrowserCode(int code)
{
    ScriptedServer::Response response;
    response.code = code;
    response.body = "{}";
    return [response](const ScriptedServer::Request &) { return response; };
}

QStringList queryOf(const ScriptedServer::Request &request)
{
    QStringList items;
    const auto query
        = VeskUrl(text("http://host") + QString::fromLatin1(request.target)).queryItems();
    for (const auto &item : query)
        items.append(item.first + QLatin1Char('=') + item.second);
    return items;
}
