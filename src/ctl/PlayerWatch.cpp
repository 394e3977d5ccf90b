#include "ctl/PlayerWatch.h"

#include "api/web/VeskJson.h"

#include <csignal>
#include <glib-unix.h>
#include <libsoup/soup.h>

#include <vector>

namespace {

constexpr guint RetrySeconds = 1;
constexpr guint ConnectTimeoutSeconds = 10;
constexpr guint64 MaxMessage = guint64(4) * 1024 * 1024;

const char StateRequest[] = R"({"jsonrpc":"2.0","id":1,"method":"player.state","params":{}})";

/// A write to a pipe that nobody reads fails instead of ending the process.
class BrokenPipes {
public:
    BrokenPipes()
    {
        struct sigaction ignore = {};
        ignore.sa_handler = SIG_IGN;
        ::sigaction(SIGPIPE, &ignore, &m_former);
    }
    ~BrokenPipes() { ::sigaction(SIGPIPE, &m_former, nullptr); }

    BrokenPipes(const BrokenPipes &) = delete;
    BrokenPipes &operator=(const BrokenPipes &) = delete;

private:
    struct sigaction m_former = {};
};

} // namespace

struct PlayerWatch::Private {
    Private(const QString &host, Show showState, std::function<void()> tellLost)
        : url(host.toUtf8() + "ws")
        , show(std::move(showState))
        , lost(std::move(tellLost))
        , cancellable(g_cancellable_new())
        , session(soup_session_new())
    {
        soup_session_set_proxy_resolver(session, nullptr);
        soup_session_set_timeout(session, ConnectTimeoutSeconds);
    }

    ~Private()
    {
        for (const guint source : signalSources)
            g_source_remove(source);
        for (const guint source : {reader, retry}) {
            if (source)
                g_source_remove(source);
        }
        g_cancellable_cancel(cancellable);
        while (connecting)
            g_main_context_iteration(nullptr, TRUE);
        disconnect();
        g_object_unref(session);
        g_object_unref(cancellable);
    }

    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;

    void connect()
    {
        SoupMessage *message = soup_message_new(SOUP_METHOD_GET, url.constData());
        if (!message)
            return end(NoHost, QStringLiteral("that is no address"));
        connecting = true;
        soup_session_websocket_connect_async(session, message, nullptr, nullptr, G_PRIORITY_DEFAULT,
            cancellable, &Private::connected, this);
        g_object_unref(message);
    }

    void disconnect()
    {
        if (!connection)
            return;
        g_signal_handlers_disconnect_by_data(connection, this);
        if (soup_websocket_connection_get_state(connection) == SOUP_WEBSOCKET_STATE_OPEN)
            soup_websocket_connection_close(connection, SOUP_WEBSOCKET_CLOSE_NORMAL, nullptr);
        g_clear_object(&connection);
    }

    void end(End how, const QString &why = {})
    {
        result = how;
        problem = why;
        ended = true;
    }

    /// The host ended, or there is none yet.
    void retryLater(const QString &why)
    {
        disconnect();
        if (!wasThere)
            return end(NoHost, why);
        if (isThere)
            lost();
        isThere = false;
        retry = g_timeout_add_seconds(RetrySeconds, &Private::retryNow, this);
    }

    void receive(const QByteArray &bytes)
    {
        VeskError error;
        const QVariantHash message = VeskJson::parse(bytes, error).toHash();
        const QString method = message.value(QStringLiteral("method")).toString();
        if (method == QLatin1String("player.changed"))
            return take(message.value(QStringLiteral("params")).toHash());
        if (message.value(QStringLiteral("id")).toInt() != 1)
            return;
        if (message.contains(QStringLiteral("result")))
            return take(message.value(QStringLiteral("result")).toHash());
        const QVariantHash failure = message.value(QStringLiteral("error")).toHash();
        end(Refused, failure.value(QStringLiteral("message")).toString());
    }

    void take(const QVariantHash &state)
    {
        wasThere = true;
        isThere = true;
        if (!show(state))
            end(Ended);
    }

    static void connected(GObject *session, GAsyncResult *result, gpointer data)
    {
        auto *self = static_cast<Private *>(data);
        self->connecting = false;
        GError *error = nullptr;
        self->connection
            = soup_session_websocket_connect_finish(SOUP_SESSION(session), result, &error);
        if (!self->connection) {
            const QString why = QString::fromUtf8(error->message);
            const bool cancelled = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
            g_error_free(error);
            if (!cancelled)
                self->retryLater(why);
            return;
        }
        soup_websocket_connection_set_max_incoming_payload_size(self->connection, MaxMessage);
        g_signal_connect(self->connection, "message", G_CALLBACK(&Private::message), data);
        g_signal_connect(self->connection, "closed", G_CALLBACK(&Private::closed), data);
        soup_websocket_connection_send_text(self->connection, StateRequest);
    }

    static void message(
        SoupWebsocketConnection *, SoupWebsocketDataType type, GBytes *message, gpointer data)
    {
        if (type != SOUP_WEBSOCKET_DATA_TEXT)
            return;
        gsize size = 0;
        const void *bytes = g_bytes_get_data(message, &size);
        static_cast<Private *>(data)->receive(
            QByteArray(static_cast<const char *>(bytes), static_cast<int>(size)));
    }

    static void closed(SoupWebsocketConnection *, gpointer data)
    {
        static_cast<Private *>(data)->retryLater(QStringLiteral("what answers is no vesk-host"));
    }

    static gboolean retryNow(gpointer data)
    {
        auto *self = static_cast<Private *>(data);
        self->retry = 0;
        self->connect();
        return G_SOURCE_REMOVE;
    }

    static gboolean signalCame(gpointer data)
    {
        static_cast<Private *>(data)->end(Ended);
        return G_SOURCE_CONTINUE;
    }

    static gboolean readerGone(gint, GIOCondition, gpointer data)
    {
        auto *self = static_cast<Private *>(data);
        self->reader = 0;
        self->end(Ended);
        return G_SOURCE_REMOVE;
    }

    const QByteArray url;
    const Show show;
    const std::function<void()> lost;
    GCancellable *const cancellable;
    SoupSession *const session;
    SoupWebsocketConnection *connection = nullptr;
    bool connecting = false;
    /// Sources of the main context; 0 for none.
    guint retry = 0;
    guint reader = 0;
    std::vector<guint> signalSources;
    bool wasThere = false;
    bool isThere = false;
    bool ended = false;
    End result = Ended;
    QString problem;
};

PlayerWatch::PlayerWatch(const QString &host, int output, Show show, std::function<void()> lost)
    : d(std::make_unique<Private>(host, std::move(show), std::move(lost)))
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        d->signalSources.push_back(g_unix_signal_add(signal, &Private::signalCame, d.get()));
    if (output >= 0) {
        d->reader = g_unix_fd_add(
            output, static_cast<GIOCondition>(G_IO_ERR | G_IO_HUP), &Private::readerGone, d.get());
    }
}

PlayerWatch::~PlayerWatch() = default;

PlayerWatch::End PlayerWatch::run(QString &problem)
{
    const BrokenPipes broken;
    d->connect();
    while (!d->ended)
        g_main_context_iteration(nullptr, TRUE);
    problem = d->problem;
    return d->result;
}
