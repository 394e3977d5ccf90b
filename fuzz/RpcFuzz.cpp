// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRoles.h"
#include "api/web/VeskJson.h"
#include "fuzz/fuzzing.h"
#include "host/http/HttpRules.h"
#include "host/rpc/JsonRpcDispatcher.h"
#include "host/rpc/RpcMethods.h"

#include <QCoreApplication>

#include <log4cplus/initializer.h>

#include <memory>

// JSON-RPC messages from clients: each gets one response, which is valid JSON-RPC, or an empty one
// when it contains notifications only.

namespace {

class Peer : public MessagePeer {
public:
    void send(const QByteArray &message) override
    {
        VeskError error;
        VeskJson::parse(message, error);
        FUZZ_REQUIRE(error.isEmpty());
    }
};

CMPath path(const char *text)
{
    return CMPath::fromEncoded(QString::fromLatin1(text));
}

/// A host without sockets: values, a list, and the methods that browse them.
class Host {
public:
    Host()
        : m_application(m_argc, m_argv)
        , m_worker({}, QStringLiteral("Test"))
        , m_methods(&m_rpc)
    {
        m_values.define(path("settings:name"), VeskValue::fromString(QStringLiteral("old")),
            CMValuesWorker::Writable, TrString("Test", "Name"));
        m_values.define(path("settings:on"), VeskValue::fromBool(true), CMValuesWorker::Writable,
            TrString("Test", "On"));
        m_root.addWorker(QStringLiteral("settings"), &m_values);
        CMListRowsNode *list
            = CMListRowsNode::create(m_worker.nodes(), m_worker.addPrefix(QStringLiteral("list")));
        VeskRoles row;
        row.setType(VeskRolesType::Audio());
        row.setPath(m_worker.addPrefix(QStringLiteral("x?a=b c")));
        list->rowsAppend(row);
        list->rowsAppend(path("settings:name"));
    }

    /// The response to \a message; empty when it contains notifications only.
    QByteArray handle(const QByteArray &message, MessagePeer *peer)
    {
        QByteArray answer;
        int answers = 0;
        m_rpc.handle(message, {peer, peer, {}}, [&](const QByteArray &bytes) {
            answer = bytes;
            ++answers;
        });
        for (int turn = 0; answers == 0 && turn < MostTurns; ++turn)
            QCoreApplication::processEvents();
        FUZZ_REQUIRE(answers == 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return answer;
    }

private:
    static constexpr int MostTurns = 10000;

    int m_argc = 1;
    char m_name[5] = "fuzz";
    char *m_argv[2] = {m_name, nullptr};
    log4cplus::Initializer m_logging;
    QCoreApplication m_application;
    CMRootWorker m_root;
    CMValuesWorker m_values;
    CMNodesWorker m_worker;
    JsonRpcDispatcher m_rpc;
    RpcMethods m_methods;
};

void requireAnswer(const QVariant &value, const JsonRpcRequest &request)
{
    const QVariantHash answer = value.toHash();
    FUZZ_REQUIRE(answer.value(QStringLiteral("jsonrpc")) == QStringLiteral("2.0"));
    const bool failed = answer.contains(QStringLiteral("error"));
    FUZZ_REQUIRE(failed != answer.contains(QStringLiteral("result")));
    FUZZ_REQUIRE(answer.contains(QStringLiteral("id")) && answer.size() == 3);
    FUZZ_REQUIRE(
        VeskJson::write(answer.value(QStringLiteral("id"))) == VeskJson::write(request.id));
    if (failed) {
        const QVariantHash error = answer.value(QStringLiteral("error")).toHash();
        FUZZ_REQUIRE(error.value(QStringLiteral("code")).toInt() < 0);
        FUZZ_REQUIRE(!error.value(QStringLiteral("message")).toString().isEmpty());
    }
    FUZZ_REQUIRE(failed || !request.isInvalid);
}

void requireAnswers(const QByteArray &bytes, const JsonRpcMessage &message)
{
    QVector<JsonRpcRequest> asked;
    for (const JsonRpcRequest &request : message.requests) {
        if (!request.isNotification)
            asked.append(request);
    }
    FUZZ_REQUIRE(bytes.isEmpty() == asked.isEmpty());
    if (asked.isEmpty())
        return;
    VeskError error;
    const QVariant answer = VeskJson::parse(bytes, error);
    FUZZ_REQUIRE(error.isEmpty());
    if (!message.isBatch)
        return requireAnswer(answer, asked.first());
    const QVariantList answers = answer.toList();
    FUZZ_REQUIRE(answers.size() == asked.size());
    for (int i = 0; i < answers.size(); ++i)
        requireAnswer(answers.at(i), asked.at(i));
}

/// The checks of HTTP headers: an accepted host is this machine, and an accepted content type is
/// JSON.
void requireRules(const QByteArray &text)
{
    if (isLoopbackHost(text, 8765)) {
        const QByteArray name = text.toLower().replace(":8765", "");
        FUZZ_REQUIRE(name == "127.0.0.1" || name == "localhost" || name == "[::1]");
        FUZZ_REQUIRE(isSameOrigin("http://" + text, text, false));
        FUZZ_REQUIRE(!isSameOrigin("https://" + text, text, false));
    }
    if (isJsonContentType(text))
        FUZZ_REQUIRE(text.toLower().contains("application/json"));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto &host = *new Host;
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    requireRules(bytes);
    const JsonRpcMessage message = parseJsonRpc(bytes);
    FUZZ_REQUIRE(!message.requests.isEmpty());
    FUZZ_REQUIRE(message.requests.size() <= JsonRpcMessage::MaxBatch);
    requireAnswers(host.handle(bytes, nullptr), message);
    Peer peer;
    requireAnswers(host.handle(bytes, &peer), message);
    return 0;
}
