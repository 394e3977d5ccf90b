// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include "api/core/Language.h"
#include "api/web/VeskJson.h"
#include "ctl/CtlCommandLine.h"

#include <gtest/gtest.h>
#include <libsoup/soup.h>

#include <set>
#include <sstream>
#include <unistd.h>
#include <vector>

namespace {

const QString LanguageCall = QStringLiteral("getData settings:ui/language");

QString nameOf(const QString &method, const QVariantHash &params)
{
    QString name = method;
    if (params.contains(QStringLiteral("path")) && !params.contains(QStringLiteral("screen")))
        name += QLatin1Char(' ') + params.value(QStringLiteral("path")).toString();
    if (params.value(QStringLiteral("first")).toInt() > 0)
        name += QLatin1Char(' ') + params.value(QStringLiteral("first")).toString();
    return name;
}

} // namespace

struct FakeHost::Server {
    /// A response that its timer source sends.
    struct Late {
        Server *server;
        SoupWebsocketConnection *connection;
        QByteArray answer;
        guint source;
    };

    Server(FakeHost *owner, const TestAuthority::Certificate *certificate)
        : host(owner)
        , server(soup_server_new(nullptr, nullptr))
    {
        soup_server_add_handler(server, "/ws", &Server::checkAccess, this, nullptr);
        soup_server_add_handler(server, "/pair", &Server::pair, this, nullptr);
        soup_server_add_websocket_handler(
            server, "/ws", nullptr, nullptr, &Server::opened, this, nullptr);
        if (certificate)
            useCertificate(*certificate);
        const auto options = static_cast<SoupServerListenOptions>(
            SOUP_SERVER_LISTEN_IPV4_ONLY | (certificate ? SOUP_SERVER_LISTEN_HTTPS : 0));
        EXPECT_TRUE(soup_server_listen_local(server, 0, options, nullptr));
    }

    void useCertificate(const TestAuthority::Certificate &files)
    {
        GTlsCertificate *certificate = g_tls_certificate_new_from_files(
            files.certificateFile.constData(), files.keyFile.constData(), nullptr);
        ASSERT_TRUE(certificate);
        soup_server_set_tls_certificate(server, certificate);
        g_object_unref(certificate);
    }

    ~Server()
    {
        for (Late *answer : late) {
            g_source_remove(answer->source);
            delete answer;
        }
        for (SoupWebsocketConnection *connection : open) {
            g_signal_handlers_disconnect_by_data(connection, this);
            g_object_unref(connection);
        }
        soup_server_disconnect(server);
        g_object_unref(server);
    }

    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    static void checkAccess(
        SoupServer *, SoupServerMessage *message, const char *path, GHashTable *, gpointer data)
    {
        FakeHost *const owner = static_cast<Server *>(data)->host;
        const QByteArray sent = soup_message_headers_get_one(
            soup_server_message_get_request_headers(message), "Authorization");
        owner->m_authorizations.append(sent);
        const bool isOpen = owner->m_token.isEmpty() || qstrcmp(path, "/pair") == 0;
        const unsigned refusal
            = isOpen || sent == "Bearer " + owner->m_token ? 0 : SOUP_STATUS_UNAUTHORIZED;
        const unsigned status = owner->m_status ? owner->m_status : refusal;
        if (!owner->m_location.isEmpty()) {
            soup_message_headers_replace(soup_server_message_get_response_headers(message),
                "Location", owner->m_location.constData());
        }
        if (status)
            soup_server_message_set_status(message, status, nullptr);
    }

    static void pair(SoupServer *itself, SoupServerMessage *message, const char *path,
        GHashTable *query, gpointer data)
    {
        FakeHost *const owner = static_cast<Server *>(data)->host;
        checkAccess(itself, message, path, query, data);
        if (soup_server_message_get_status(message) != 0)
            return;
        const bool isPost = qstrcmp(soup_server_message_get_method(message), SOUP_METHOD_POST) == 0;
        QByteArray body = "<!DOCTYPE html><title>Pair</title>";
        if (isPost) {
            const SoupMessageBody *posted = soup_server_message_get_request_body(message);
            owner->m_posted.append(QByteArray(posted->data, static_cast<int>(posted->length)));
            body = owner->m_pairingBody;
        }
        soup_server_message_set_status(
            message, isPost ? owner->m_pairingStatus : owner->m_pageStatus, nullptr);
        soup_server_message_set_response(message, isPost ? "application/json" : "text/html",
            SOUP_MEMORY_COPY, body.constData(), static_cast<gsize>(body.size()));
    }

    static void opened(SoupServer *, SoupServerMessage *, const char *,
        SoupWebsocketConnection *connection, gpointer data)
    {
        auto *self = static_cast<Server *>(data);
        self->open.push_back(SOUP_WEBSOCKET_CONNECTION(g_object_ref(connection)));
        g_signal_connect(connection, "message", G_CALLBACK(&Server::message), data);
    }

    static void message(
        SoupWebsocketConnection *connection, SoupWebsocketDataType, GBytes *message, gpointer data)
    {
        auto *self = static_cast<Server *>(data);
        gsize size = 0;
        const void *bytes = g_bytes_get_data(message, &size);
        QString call;
        const QByteArray answer = self->host->answer(
            QByteArray(static_cast<const char *>(bytes), static_cast<int>(size)), call);
        if (call == self->host->m_revoking) {
            self->host->m_token = "nobody's";
            if (self->host->m_revokingResponds)
                soup_websocket_connection_send_text(connection, answer.constData());
            return soup_websocket_connection_close(
                connection, SOUP_WEBSOCKET_CLOSE_POLICY_VIOLATION, nullptr);
        }
        if (self->host->m_closing.value(call) > 0) {
            --self->host->m_closing[call];
            return soup_websocket_connection_close(
                connection, SOUP_WEBSOCKET_CLOSE_GOING_AWAY, nullptr);
        }
        const unsigned delay = self->host->m_delays.value(call);
        if (delay > 0) {
            auto *later = new Late {self, connection, answer, 0};
            later->source = g_timeout_add(delay, &Server::sendLate, later);
            self->late.insert(later);
            return;
        }
        soup_websocket_connection_send_text(connection, answer.constData());
        const QList<QByteArray> news = self->host->m_notifications.value(call);
        for (const QByteArray &text : news)
            soup_websocket_connection_send_text(connection, text.constData());
    }

    static gboolean sendLate(gpointer data)
    {
        auto *late = static_cast<Late *>(data);
        soup_websocket_connection_send_text(late->connection, late->answer.constData());
        late->server->late.erase(late);
        delete late;
        return G_SOURCE_REMOVE;
    }

    FakeHost *const host;
    SoupServer *const server;
    std::vector<SoupWebsocketConnection *> open;
    std::set<Late *> late;
};

FakeHost::FakeHost(const Results &results)
    : m_results(results)
    , m_server(std::make_unique<Server>(this, nullptr))
{
}

FakeHost::FakeHost(const TestAuthority::Certificate &certificate, const Results &results)
    : m_results(results)
    , m_server(std::make_unique<Server>(this, &certificate))
{
}

FakeHost::~FakeHost() = default;

QString FakeHost::url() const
{
    GSList *uris = soup_server_get_uris(m_server->server);
    const int port = g_uri_get_port(static_cast<GUri *>(uris->data));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(&g_uri_unref));
    return (soup_server_is_https(m_server->server) ? QStringLiteral("https://localhost:%1/")
                                                   : QStringLiteral("http://127.0.0.1:%1/"))
        .arg(port);
}

void FakeHost::setCertificate(const TestAuthority::Certificate &certificate)
{
    m_server->useCertificate(certificate);
}

void FakeHost::setToken(const QByteArray &token)
{
    m_token = token;
}

void FakeHost::setRevoking(const QString &call, bool responds)
{
    m_revoking = call;
    m_revokingResponds = responds;
}

void FakeHost::setStatus(unsigned status, const QByteArray &location)
{
    m_status = status;
    m_location = location;
}

void FakeHost::setPairing(unsigned status, const QByteArray &body)
{
    m_pairingStatus = status;
    m_pairingBody = body;
}

void FakeHost::setPageMissing()
{
    m_pageStatus = SOUP_STATUS_METHOD_NOT_ALLOWED;
}

int FakeHost::connections() const
{
    return static_cast<int>(m_server->open.size());
}

void FakeHost::setResult(const QString &call, const QByteArray &result)
{
    m_results.insert(call, result);
}

void FakeHost::setScreen(const QString &path, const QList<VeskRoles> &rows)
{
    m_screens.insert(path, rows);
}

void FakeHost::setDelay(const QString &call, unsigned milliseconds)
{
    m_delays.insert(call, milliseconds);
}

void FakeHost::setNotifications(const QString &call, const QList<QByteArray> &messages)
{
    m_notifications.insert(call, messages);
}

void FakeHost::notify(const QByteArray &message)
{
    for (SoupWebsocketConnection *connection : m_server->open)
        soup_websocket_connection_send_text(connection, message.constData());
}

void FakeHost::setClosing(const QString &call, int times)
{
    m_closing.insert(call, times);
}

void FakeHost::prepare(const QString &, const QVariantHash &) { }

QByteArray FakeHost::answer(const QByteArray &message, QString &call)
{
    VeskError error;
    const QVariantHash request = VeskJson::parse(message, error).toHash();
    EXPECT_EQ(request.value(QStringLiteral("jsonrpc")), QStringLiteral("2.0"));
    const QVariantHash params = request.value(QStringLiteral("params")).toHash();
    const QString method = request.value(QStringLiteral("method")).toString();
    call = nameOf(method, params);
    if (call != LanguageCall) {
        m_asked.append(call);
        m_lastParams = params;
        m_paramsOf.insert(method, params);
    }
    prepare(method, params);
    return "{\"jsonrpc\":\"2.0\",\"id\":" + request.value(QStringLiteral("id")).toByteArray() + ","
        + resultFor(call, method, params) + "}";
}

QByteArray FakeHost::resultFor(
    const QString &call, const QString &method, const QVariantHash &params)
{
    const QString path = params.value(QStringLiteral("path")).toString();
    if (m_results.contains(call) || method != QLatin1String("getRows")
        || !m_screens.contains(path)) {
        return m_results.value(call, R"("error":{"code":-32001,"message":"nothing there"})");
    }
    const QList<VeskRoles> screen = m_screens.value(path);
    const int first = params.value(QStringLiteral("first")).toInt();
    const int last = params.value(QStringLiteral("last"), first + 99).toInt();
    QVariantList rows;
    for (int i = first; i <= last && i < screen.size(); ++i) {
        QVariantList values;
        const QStringList roles = params.value(QStringLiteral("roles")).toStringList();
        for (const QString &role : roles)
            values.append(screen.at(i)[role]);
        rows.append(QVariant(values));
    }
    return "\"result\":"
        + VeskJson::write(QVariantHash {{QStringLiteral("rowsCount"), screen.size()},
            {QStringLiteral("rows"), rows}, {QStringLiteral("roles"), QVariantHash()}});
}

Outcome run(const QString &url, const QStringList &arguments, const Surroundings &around)
{
    const CtlCommandLine line = parseCtlCommandLine(arguments, url);
    if (!line.run)
        return {line.status, std::string(), line.text.toStdString()};
    std::ostringstream out;
    std::ostringstream errors;
    int pipe[2] = {-1, -1};
    EXPECT_EQ(::pipe(pipe), 0);
    EXPECT_EQ(::write(pipe[1], around.input.constData(), static_cast<size_t>(around.input.size())),
        around.input.size());
    ::close(pipe[1]);
    CtlTerminal terminal {out, errors};
    terminal.input = around.keyboard >= 0 ? around.keyboard : pipe[0];
    terminal.width = around.width;
    terminal.memory = around.memory;
    terminal.name = around.terminal;
    terminal.knownHosts = around.knownHosts;
    terminal.unicode = around.unicode;
    terminal.colours = around.colours;
    terminal.catalogues = around.catalogues;
    int status = 0;
    {
        HostSession session(line.options, terminal);
        if (const CtlResult<> result = line.run(session); !result)
            status = static_cast<int>(result.error());
    }
    ::close(pipe[0]);
    Language::setCurrent(QStringLiteral("en"), {});
    return {status, out.str(), errors.str()};
}

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

VeskRoles row(int type, const char *title, const char *path)
{
    VeskRoles roles;
    roles.setType(type);
    roles.insert(VeskRoles::Title(), QString::fromUtf8(title));
    roles.insert(VeskRoles::Path(), QString::fromUtf8(path));
    return roles;
}

VeskRoles serviceRow(const char *id, const char *title)
{
    VeskRoles service = row(1, title, (QByteArray(title) + ":").constData());
    service.insert(VeskRoles::Id(), QString::fromUtf8(id));
    return service;
}

VeskRoles withRole(VeskRoles service, const char *role, const char *path)
{
    service.insert(
        QString::fromUtf8(role), QVariantHash {{QStringLiteral("path"), QString::fromUtf8(path)}});
    return service;
}
