#include "ctl/PlayerWatch.h"

#include <gmock/gmock.h>

#include <csignal>
#include <libsoup/soup.h>
#include <unistd.h>
#include <vector>

namespace {

using testing::ElementsAre;

/// A host of which only the WebSocket is there, in the main loop that the watch runs: each
/// connection's first message is answered with the next of the given lists of messages. An empty
/// message closes.
class WatchedHost {
public:
    using Messages = std::vector<std::string>;

    explicit WatchedHost(std::vector<Messages> connections)
        : m_connections(std::move(connections))
        , m_server(soup_server_new(nullptr, nullptr))
    {
        soup_server_add_websocket_handler(
            m_server, "/ws", nullptr, nullptr, &WatchedHost::opened, this, nullptr);
        EXPECT_TRUE(soup_server_listen_local(m_server, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr));
    }

    ~WatchedHost()
    {
        for (SoupWebsocketConnection *connection : m_open) {
            g_signal_handlers_disconnect_by_data(connection, this);
            g_object_unref(connection);
        }
        soup_server_disconnect(m_server);
        g_object_unref(m_server);
    }

    WatchedHost(const WatchedHost &) = delete;
    WatchedHost &operator=(const WatchedHost &) = delete;

    QString url() const
    {
        GSList *uris = soup_server_get_uris(m_server);
        const int port = g_uri_get_port(static_cast<GUri *>(uris->data));
        g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(&g_uri_unref));
        return QStringLiteral("http://127.0.0.1:%1/").arg(port);
    }

    /// What came over all connections.
    std::vector<std::string> received;

private:
    static void opened(SoupServer *, SoupServerMessage *, const char *,
        SoupWebsocketConnection *connection, gpointer data)
    {
        auto *self = static_cast<WatchedHost *>(data);
        self->m_open.push_back(SOUP_WEBSOCKET_CONNECTION(g_object_ref(connection)));
        g_signal_connect(connection, "message", G_CALLBACK(&WatchedHost::message), data);
    }

    static void message(
        SoupWebsocketConnection *connection, SoupWebsocketDataType, GBytes *message, gpointer data)
    {
        auto *self = static_cast<WatchedHost *>(data);
        gsize size = 0;
        const void *bytes = g_bytes_get_data(message, &size);
        self->received.emplace_back(static_cast<const char *>(bytes), size);
        if (self->m_connections.empty())
            return;
        const Messages answers = self->m_connections.front();
        self->m_connections.erase(self->m_connections.begin());
        for (const std::string &answer : answers) {
            if (answer.empty())
                soup_websocket_connection_close(
                    connection, SOUP_WEBSOCKET_CLOSE_GOING_AWAY, nullptr);
            else if (answer == "binary")
                soup_websocket_connection_send_binary(connection, "\0\xff", 2);
            else
                soup_websocket_connection_send_text(connection, answer.c_str());
        }
    }

    std::vector<Messages> m_connections;
    std::vector<SoupWebsocketConnection *> m_open;
    SoupServer *const m_server;
};

std::string stateAnswer(const char *title)
{
    return std::string(R"({"jsonrpc":"2.0","id":1,"result":{"title":")") + title + "\"}}";
}

std::string change(const char *title)
{
    return std::string(R"({"jsonrpc":"2.0","method":"player.changed","params":{"title":")") + title
        + "\"}}";
}

struct Watched {
    PlayerWatch::End end;
    QString problem;
    QStringList titles;
    int losses;
};

/// Watches until that many states came; \a each is called with each of them.
Watched watch(
    const WatchedHost &host, int count, const std::function<void()> &each = {}, int output = -1)
{
    Watched watched {};
    PlayerWatch playerWatch(
        host.url(), output,
        [&](const QVariantHash &state) {
            watched.titles.append(state.value(QStringLiteral("title")).toString());
            if (each)
                each();
            return watched.titles.size() < count;
        },
        [&] { ++watched.losses; });
    watched.end = playerWatch.run(watched.problem);
    return watched;
}

TEST(PlayerWatchTest, ShowsTheStateAndEachChange)
{
    WatchedHost host({{stateAnswer("a"), change("b"), change("c")}});
    const Watched watched = watch(host, 3);
    EXPECT_EQ(watched.end, PlayerWatch::Ended);
    EXPECT_EQ(watched.titles.join(QLatin1Char(' ')), QStringLiteral("a b c"));
    EXPECT_EQ(watched.losses, 0);
    EXPECT_THAT(host.received,
        ElementsAre(R"({"jsonrpc":"2.0","id":1,"method":"player.state","params":{}})"));
}

TEST(PlayerWatchTest, PassesOverWhatIsNoNews)
{
    WatchedHost host({{"binary", "{", "[]", "null", "{}", "\"\"", R"({"id":2,"result":{}})",
        R"({"method":"changed","params":{}})", R"({"method":["player.changed"],"params":7})",
        stateAnswer("a"), R"({"method":"player.changed","params":[[[]]]})"}});
    const Watched watched = watch(host, 2);
    EXPECT_EQ(watched.end, PlayerWatch::Ended);
    EXPECT_EQ(watched.titles, (QStringList {QStringLiteral("a"), QString()}));
}

TEST(PlayerWatchTest, TakesAnErrorForAnAnswer)
{
    WatchedHost host({{R"({"jsonrpc":"2.0","id":1,"error":{"code":-32601,"message":"No."}})"}});
    const Watched watched = watch(host, 1);
    EXPECT_EQ(watched.end, PlayerWatch::Refused);
    EXPECT_EQ(watched.problem, QStringLiteral("No."));
}

TEST(PlayerWatchTest, WhoNeverTellsAStateIsNoHost)
{
    WatchedHost host({{""}});
    const Watched watched = watch(host, 1);
    EXPECT_EQ(watched.end, PlayerWatch::NoHost);
    EXPECT_FALSE(watched.problem.isEmpty());
}

TEST(PlayerWatchTest, AMessageWithoutEndIsNotTaken)
{
    WatchedHost host({{stateAnswer(std::string(5 * 1024 * 1024, 'x').c_str())}});
    const Watched watched = watch(host, 1);
    EXPECT_EQ(watched.end, PlayerWatch::NoHost);
    EXPECT_EQ(watched.titles, QStringList());
}

TEST(PlayerWatchTest, ComesBackToAHostThatWasGone)
{
    WatchedHost host({{stateAnswer("a"), ""}, {stateAnswer("b"), change("c")}});
    const Watched watched = watch(host, 3);
    EXPECT_EQ(watched.end, PlayerWatch::Ended);
    EXPECT_EQ(watched.titles.join(QLatin1Char(' ')), QStringLiteral("a b c"));
    EXPECT_EQ(watched.losses, 1);
}

TEST(PlayerWatchTest, EndsBySignal)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        WatchedHost host({{stateAnswer("a")}});
        const Watched watched = watch(host, 1000, [signal] { ::raise(signal); });
        EXPECT_EQ(watched.end, PlayerWatch::Ended);
        EXPECT_EQ(watched.titles.size(), 1);
    }
}

TEST(PlayerWatchTest, EndsWhenTheReaderOfItsOutputGoes)
{
    int pipe[2] = {-1, -1};
    ASSERT_EQ(::pipe(pipe), 0);
    WatchedHost host({{stateAnswer("a")}});
    const Watched watched = watch(
        host, 1000, [&pipe] { ::close(pipe[0]); }, pipe[1]);
    EXPECT_EQ(watched.end, PlayerWatch::Ended);
    EXPECT_EQ(watched.titles.size(), 1);
    ::close(pipe[1]);
}

} // namespace
