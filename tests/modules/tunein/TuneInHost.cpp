// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInHost.h"

#include "api/core/Mutex.h"
#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/HttpClient.h"

#include <gtest/gtest.h>

namespace {

const QByteArray NotFound = R"({"head":{"status":"404","fault":"Invalid method"},"body":[]})";
constexpr unsigned long Deadline = 60000;

using ReplyData = std::shared_ptr<CMReplyData<QVariant>>;

/// Sends the request that \a make builds around a reply and waits for the answer.
template <class Make>
Answer ask(const Make &make)
{
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    CMRoot()->request(make(CMReply<QVariant>(data)));
    Answer answer;
    answer.finished = data->waitForFinished(Deadline);
    EXPECT_TRUE(answer.finished) << "a request was not answered";
    if (answer.finished) {
        answer.error = data->error();
        answer.value = data->value();
    }
    return answer;
}

} // namespace

void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}

void PrintTo(const QVariant &value, std::ostream *out)
{
    *out << (value.typeName() ? value.typeName() : "null") << ' ' << value;
}

void PrintTo(const CMPath &path, std::ostream *out)
{
    *out << path.toEncoded().toStdString();
}

void PrintTo(const VeskHash &hash, std::ostream *out)
{
    *out << hash;
}

QString Answer::errorText() const
{
    return error.isEmpty() ? QString() : error.message().toString();
}

QStringList RowsAnswer::texts(int column) const
{
    QStringList result;
    for (const QVariantList &row : rows)
        result.append(TrString::fromVariant(row.value(column)).toString());
    return result;
}

struct TuneInHost::Script {
    VeskMutex mutex;
    QMap<QByteArray, ScriptedServer::Response> byPath VESK_GUARDED_BY(mutex);
    ScriptedServer::Response other VESK_GUARDED_BY(mutex);

    ScriptedServer::Response find(const ScriptedServer::Request &request)
    {
        const VeskMutexLock lock(mutex);
        return byPath.value(request.path(), other);
    }
};

TuneInHost::TuneInHost(const QStringList &prefixes)
    : m_script(std::make_shared<Script>())
{
    answerAll(NotFound);
    for (const QString &prefix : prefixes)
        m_root.addWorker(prefix, &m_values);
    const auto text = [this](const CMPath &path, const QString &value) {
        m_values.define(path, VeskValue::fromString(value), CMValuesWorker::Writable);
    };
    const auto flag = [this](const CMPath &path, bool value) {
        m_values.define(path, VeskValue::fromBool(value), CMValuesWorker::Writable);
    };
    text(VeskTuneInPartnerIdPath(), "partner"_s);
    text(VeskTuneInBrowseIndexUrlPath(), "http://opml.radiotime.com/"_s);
    text(VeskTuneInSupportedStreamsPath(), "mp3,aac"_s);
    flag(VeskTuneInEnabledFixItWizardPath(), false);
    flag(VeskChildElementsInSingleListPath(), false);
    text(VeskUILanguagePath(), "en"_s);
    text(VeskSystemMemberIdPath(), "ABC"_s);
    text(VeskNetworkStateEthernetMAC(), "00:1A:2B:3C:4D:5E"_s);
    flag(VeskNetworkStateConnected(), true);
    openServer();
}

TuneInHost::~TuneInHost()
{
    HttpClient::setConnectTo({});
    m_root.removeWorker(&m_values);
}

void TuneInHost::set(const CMPath &path, const QString &text)
{
    ASSERT_TRUE(m_values.setValue(path, VeskValue::fromString(text)));
}

void TuneInHost::set(const CMPath &path, bool on)
{
    ASSERT_TRUE(m_values.setValue(path, VeskValue::fromBool(on)));
}

void TuneInHost::answer(const QByteArray &path, const QByteArray &body)
{
    ScriptedServer::Response response;
    response.body = body;
    answer(path, response);
}

void TuneInHost::answer(const QByteArray &path, const ScriptedServer::Response &response)
{
    const VeskMutexLock lock(m_script->mutex);
    m_script->byPath.insert(path, response);
}

void TuneInHost::answerAll(const QByteArray &body)
{
    ScriptedServer::Response response;
    response.body = body;
    answerAll(response);
}

void TuneInHost::answerAll(const ScriptedServer::Response &response)
{
    const VeskMutexLock lock(m_script->mutex);
    m_script->byPath.clear();
    m_script->other = response;
}

void TuneInHost::closeServer()
{
    m_server.reset();
}

void TuneInHost::openServer()
{
    const std::shared_ptr<Script> script = m_script;
    m_server = std::make_unique<ScriptedServer>(
        [script](const ScriptedServer::Request &request) { return script->find(request); });
    HttpClient::setConnectTo({QString::fromLatin1(m_server->connectTo("opml.radiotime.com"))});
}

RowsAnswer TuneInHost::rows(const QString &path, const QStringList &roles, int first, int last)
{
    RowsAnswer result;
    static_cast<Answer &>(result) = ask([&](const CMReply<QVariant> &reply) {
        return CMGetRowsRequest(CMPath::fromEncoded(path), roles, first, last, reply);
    });
    const VeskRowsRoles value(VeskHash(result.value.toHash()));
    result.count = value.rowsCount();
    result.roles = value.roles();
    const QVariantList rows = value.rows();
    for (const QVariant &row : rows)
        result.rows.append(row.toList());
    return result;
}

Answer TuneInHost::data(const QString &path, const QStringList &roles)
{
    return ask([&](const CMReply<QVariant> &reply) {
        return CMGetDataRequest(CMPath::fromEncoded(path), roles, reply);
    });
}

QVariant TuneInHost::role(const QString &path, const QString &role)
{
    const Answer answer = data(path, {role});
    EXPECT_TRUE(answer.error.isEmpty()) << path.toStdString() << ": " << answer.error;
    return answer.value.toList().value(0);
}

Answer TuneInHost::setData(const QString &path, const QString &role, const QVariant &value)
{
    return ask([&](const CMReply<QVariant> &reply) {
        return CMSetDataRequest(CMPath::fromEncoded(path), role, value, reply);
    });
}

QByteArray screen(const QByteArray &elements)
{
    return R"({"head":{"title":"Screen","status":"200"},"body":[)" + elements + "]}";
}

CMPath path(const QString &text, const QMap<QString, QString> &params)
{
    CMPath result = CMPath::fromEncoded(text);
    for (auto it = params.constBegin(); it != params.constEnd(); ++it)
        result.addParam(it.key(), it.value());
    return result;
}
