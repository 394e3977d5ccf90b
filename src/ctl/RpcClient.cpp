// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/RpcClient.h"

#include "api/web/VeskJson.h"
#include "base/Result.h"
#include "ctl/HostTransport.h"

#include <libsoup/soup.h>

#include <deque>
#include <map>
#include <optional>
#include <vector>

namespace {

/// Longer than the minute after which the host itself gives up a call.
constexpr guint AnswerTimeoutMs = 90000;
/// Queued notifications; further ones are dropped.
constexpr size_t MaxNews = 1000;

QString noHost()
{
    return QStringLiteral("what answers is no vesk-host");
}

RpcAnswer failed(const QString &why)
{
    RpcAnswer answer;
    answer.message = why;
    return answer;
}

RpcAnswer refused(HostRefusal refusal, const QString &fingerprint)
{
    RpcAnswer answer;
    answer.kind = RpcAnswer::Refused;
    answer.refusal = refusal;
    answer.fingerprint = fingerprint;
    return answer;
}

RpcAnswer readAnswer(const QVariantHash &message)
{
    RpcAnswer answer;
    if (!message.contains(QStringLiteral("error"))) {
        answer.kind = RpcAnswer::Result;
        answer.result = message.value(QStringLiteral("result"));
        return answer;
    }
    const QVariantHash error = message.value(QStringLiteral("error")).toHash();
    const QVariantHash data = error.value(QStringLiteral("data")).toHash();
    answer.kind = RpcAnswer::Error;
    answer.message = error.value(QStringLiteral("message")).toString();
    answer.code = error.value(QStringLiteral("code")).toInt();
    answer.name = data.value(QStringLiteral("name")).toString();
    answer.title = data.value(QStringLiteral("title")).toString();
    answer.problem = data.value(QStringLiteral("problem")).toString();
    return answer;
}

} // namespace

struct RpcClient::Private {
    Private(const QString &host, const HostAccess &access)
        : context(g_main_context_ref_thread_default())
        , transport(host, access)
        , cancellable(g_cancellable_new())
    {
    }

    ~Private()
    {
        disconnect();
        freeLeft();
        g_object_unref(cancellable);
        g_main_context_unref(context);
    }

    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;

    /// Returns an answer that says why there is no connection.
    Result<void, RpcAnswer> connect()
    {
        freeLeft();
        SoupMessage *message = transport.request(SOUP_METHOD_GET, "ws");
        if (!message)
            return failure(failed(QStringLiteral("that is no address")));
        connecting = true;
        problem.clear();
        g_cancellable_reset(cancellable);
        soup_session_websocket_connect_async(transport.session(), message, nullptr, nullptr,
            G_PRIORITY_DEFAULT, cancellable, &Private::connected, this);
        while (connecting)
            g_main_context_iteration(context, TRUE);
        const guint status = soup_message_get_status(message);
        const HostRefusal refusal = transport.refusalOf(message);
        g_object_unref(message);
        if (connection)
            return {};
        if (refusal != HostRefusal::None)
            return failure(refused(refusal, transport.certificate().fingerprint));
        if (status >= 200)
            problem = QStringLiteral("%1 (HTTP code %2)").arg(noHost(), QString::number(status));
        return failure(failed(problem));
    }

    void disconnect()
    {
        if (!connection)
            return;
        g_signal_handlers_disconnect_by_data(connection, this);
        if (soup_websocket_connection_get_state(connection) == SOUP_WEBSOCKET_STATE_OPEN)
            soup_websocket_connection_close(connection, SOUP_WEBSOCKET_CLOSE_NORMAL, nullptr);
        // A callback of this connection may be on the stack, so it is freed later.
        left.push_back(connection);
        connection = nullptr;
    }

    void freeLeft()
    {
        for (SoupWebsocketConnection *old : left)
            g_object_unref(old);
        left.clear();
    }

    void fail(const QString &why)
    {
        disconnect();
        problem = why;
    }

    void receive(const QByteArray &bytes)
    {
        VeskError error;
        const QVariantHash message = VeskJson::parse(bytes, error).toHash();
        if (message.value(QStringLiteral("jsonrpc")).toString() != QLatin1String("2.0"))
            return fail(noHost());
        const QString method = message.value(QStringLiteral("method")).toString();
        if (!method.isEmpty()) {
            if (news.size() < MaxNews)
                news.push_back({method, message.value(QStringLiteral("params")).toHash()});
            return;
        }
        const int id = message.value(QStringLiteral("id")).toInt();
        const auto call = sent.find(id);
        if (call != sent.end()) {
            arrived.push_back({std::move(call->second), readAnswer(message)});
            sent.erase(call);
        } else if (id == awaited) {
            answer = readAnswer(message);
        }
    }

    /// Returns the call's id, or an answer that says why there is no connection.
    Result<int, RpcAnswer> request(const QString &method, const QVariantHash &params)
    {
        if (!connection) {
            if (const auto connected = connect(); !connected)
                return failure(connected.error());
        }
        const QByteArray text = VeskJson::write(QVariantHash {
            {QStringLiteral("jsonrpc"), QStringLiteral("2.0")}, {QStringLiteral("id"), ++lastId},
            {QStringLiteral("method"), method}, {QStringLiteral("params"), params}});
        soup_websocket_connection_send_text(connection, text.constData());
        return lastId;
    }

    /// The answers of calls that will get none now.
    void failSent()
    {
        for (auto &[id, answered] : sent)
            arrived.push_back({std::move(answered), failed(problem)});
        sent.clear();
    }

    void cancelSent()
    {
        for (const auto &[id, answered] : sent) {
            const QByteArray text
                = VeskJson::write(QVariantHash {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
                    {QStringLiteral("method"), QStringLiteral("cancel")},
                    {QStringLiteral("params"), QVariantHash {{QStringLiteral("id"), id}}}});
            if (connection)
                soup_websocket_connection_send_text(connection, text.constData());
        }
        sent.clear();
        arrived.clear();
    }

    static void connected(GObject *session, GAsyncResult *result, gpointer data)
    {
        auto *self = static_cast<Private *>(data);
        self->connecting = false;
        GError *error = nullptr;
        self->connection
            = soup_session_websocket_connect_finish(SOUP_SESSION(session), result, &error);
        if (!self->connection) {
            self->problem = QString::fromUtf8(error->message);
            g_error_free(error);
            return;
        }
        soup_websocket_connection_set_max_incoming_payload_size(self->connection, MaxAnswer);
        g_signal_connect(self->connection, "message", G_CALLBACK(&Private::message), data);
        g_signal_connect(self->connection, "closed", G_CALLBACK(&Private::closed), data);
    }

    static void message(
        SoupWebsocketConnection *, SoupWebsocketDataType type, GBytes *message, gpointer data)
    {
        auto *self = static_cast<Private *>(data);
        if (type != SOUP_WEBSOCKET_DATA_TEXT)
            return self->fail(noHost());
        gsize size = 0;
        const void *bytes = g_bytes_get_data(message, &size);
        self->receive(QByteArray(static_cast<const char *>(bytes), static_cast<int>(size)));
    }

    static void closed(SoupWebsocketConnection *, gpointer data)
    {
        static_cast<Private *>(data)->fail(QStringLiteral("the connection was closed"));
    }

    GMainContext *const context;
    HostTransport transport;
    GCancellable *const cancellable;
    SoupWebsocketConnection *connection = nullptr;
    /// Former connections, kept until no callback can use them.
    std::vector<SoupWebsocketConnection *> left;
    bool connecting = false;
    /// Why there is no connection.
    QString problem;
    int lastId = 0;
    /// The id of the call() that waits.
    int awaited = 0;
    std::optional<RpcAnswer> answer;
    /// The calls that were sent, by their ids, and the answers that have not been delivered.
    std::map<int, Answered> sent;
    struct Arrived {
        Answered answered;
        RpcAnswer answer;
    };
    std::deque<Arrived> arrived;
    struct News {
        QString method;
        QVariantHash params;
    };
    /// Queued notifications, the oldest first.
    std::deque<News> news;
    std::function<void()> slow;
    Notified notified;
};

RpcClient::RpcClient(const QString &host, const HostAccess &access)
    : d(std::make_unique<Private>(host, access))
{
}

RpcClient::~RpcClient() = default;

void RpcClient::setSlow(std::function<void()> slow)
{
    d->slow = std::move(slow);
}

void RpcClient::setNotified(Notified notified)
{
    d->notified = std::move(notified);
}

RpcAnswer RpcClient::call(const QString &method, const QVariantHash &params)
{
    d->answer.reset();
    d->news.clear();
    const auto id = d->request(method, params);
    if (!id)
        return id.error();
    d->awaited = *id;
    const ContextTimer slow(d->context, SlowMs, [this] {
        if (d->slow)
            d->slow();
    });
    const ContextTimer tooLate(
        d->context, AnswerTimeoutMs, [this] { d->fail(QStringLiteral("it does not answer")); });
    // Notifications after the answer are newer, and stay queued for waitUntil().
    while (!d->answer && d->connection)
        g_main_context_iteration(d->context, TRUE);
    return d->answer ? *d->answer : failed(d->problem);
}

void RpcClient::send(const QString &method, const QVariantHash &params, Answered answered)
{
    const auto id = d->request(method, params);
    if (id)
        d->sent.emplace(*id, std::move(answered));
    else
        d->arrived.push_back({std::move(answered), id.error()});
}

void RpcClient::waitForAnswers(const std::function<bool()> &enough)
{
    const ContextTimer slow(d->context, SlowMs, [this] {
        if (d->slow)
            d->slow();
    });
    std::optional<ContextTimer> tooLate;
    const auto waitOn = [&] {
        tooLate.emplace(
            d->context, AnswerTimeoutMs, [this] { d->fail(QStringLiteral("it does not answer")); });
    };
    waitOn();
    while ((!d->sent.empty() || !d->arrived.empty()) && !(enough && enough())) {
        if (!d->arrived.empty()) {
            const Private::Arrived first = std::move(d->arrived.front());
            d->arrived.pop_front();
            first.answered(first.answer);
            waitOn();
        } else if (d->connection) {
            g_main_context_iteration(d->context, TRUE);
        } else {
            d->failSent();
        }
    }
    d->cancelSent();
}

bool RpcClient::waitUntil(const std::function<bool()> &done)
{
    while (!done()) {
        if (!d->news.empty()) {
            const Private::News first = d->news.front();
            d->news.pop_front();
            if (d->notified)
                d->notified(first.method, first.params);
        } else if (d->connection) {
            g_main_context_iteration(d->context, TRUE);
        } else {
            return false;
        }
    }
    return true;
}

bool RpcClient::isConnected() const
{
    return d->connection;
}

void RpcClient::close()
{
    g_cancellable_cancel(d->cancellable);
    d->fail(QStringLiteral("the connection was closed"));
}
