// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/HttpServer.h"

#include "directory/Compression.h"
#include "directory/FaultControl.h"
#include "directory/RequestHeads.h"
#include "directory/TappedStream.h"

#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace directory {

namespace {

constexpr char BodyKey[] = "vesk-request-body";
constexpr char ConnectionKey[] = "vesk-connection";
constexpr std::size_t LeastCompressed = 1024;

/// The body of a request as far as it has been received; dropped when it gets too long.
struct RequestBody {
    std::string bytes;
    bool tooLong = false;
};

/// Lives as long as the connection's stream and its last message.
struct Connection {
    bool secure = false;
    RequestHeads heads;
};

/// Each connection has an object of its own for the client's address: that is how a message leads
/// to its connection.
void setConnection(GSocketAddress *remote, const std::shared_ptr<Connection> &connection)
{
    g_object_set_data_full(G_OBJECT(remote), ConnectionKey,
        new std::shared_ptr<Connection>(connection),
        [](gpointer data) { delete static_cast<std::shared_ptr<Connection> *>(data); });
}

Connection &connectionOf(SoupServerMessage *message)
{
    GSocketAddress *remote = soup_server_message_get_remote_address(message);
    return **static_cast<std::shared_ptr<Connection> *>(
        g_object_get_data(G_OBJECT(remote), ConnectionKey));
}

/// Tells the log where the next request begins.
void onHeaders(SoupServerMessage *message, gpointer)
{
    RequestHeads &heads = connectionOf(message).heads;
    SoupMessageHeaders *headers = soup_server_message_get_request_headers(message);
    switch (soup_message_headers_get_encoding(headers)) {
    case SOUP_ENCODING_NONE:
        return heads.skipBody(0);
    case SOUP_ENCODING_CONTENT_LENGTH:
        return heads.skipBody(
            static_cast<std::uint64_t>(soup_message_headers_get_content_length(headers)));
    default:
        // Only libsoup knows where a chunked body ends, so no request may follow it.
        soup_message_headers_replace(
            soup_server_message_get_response_headers(message), "Connection", "close");
        return heads.skipBody(RequestHeads::UnknownLength);
    }
}

bool isControl(std::string_view target)
{
    const std::string_view path = target.substr(0, target.find('?'));
    return path == FaultControlPath || path == MelodyPath;
}

std::string targetOf(SoupServerMessage *message)
{
    GUri *uri = soup_server_message_get_uri(message);
    const char *query = g_uri_get_query(uri);
    return g_uri_get_path(uri) + (query ? '?' + std::string(query) : std::string());
}

ApiRequest requestOf(SoupServerMessage *message, const std::string &target, const std::string &body)
{
    ApiRequest request;
    request.method = soup_server_message_get_method(message);
    const std::size_t question = std::min(target.find('?'), target.size());
    request.path = percentDecoded(target.substr(0, question), false);
    request.query
        = Query::parse(std::string_view(target).substr(std::min(question + 1, target.size())));
    SoupMessageHeaders *headers = soup_server_message_get_request_headers(message);
    if (const char *host = soup_message_headers_get_one(headers, "Host"))
        request.host = host;
    const char *type = soup_message_headers_get_content_type(headers, nullptr);
    if (type && equalIgnoringCase(type, "application/x-www-form-urlencoded"))
        request.query.merge(Query::parse(body));
    if (const char *range = soup_message_headers_get_one(headers, "Range"))
        request.range = range;
    const char *titles = soup_message_headers_get_one(headers, "Icy-MetaData");
    request.wantsTitles = titles && std::string_view(titles) == "1";
    request.secure = connectionOf(message).secure;
    return request;
}

/// Whether the body is text, worth compressing, and the client accepts gzip.
bool compresses(SoupServerMessage *message, const Answer &answer)
{
    const bool text = answer.contentType.rfind("application/json", 0) == 0
        || answer.contentType.rfind("text/", 0) == 0;
    SoupMessageHeaders *headers = soup_server_message_get_request_headers(message);
    const char *accepted = soup_message_headers_get_list(headers, "Accept-Encoding");
    return text && answer.body.size() >= LeastCompressed && accepted && acceptsGzip(accepted);
}

void send(SoupServerMessage *message, const Answer &answer)
{
    soup_server_message_set_status(message, static_cast<guint>(answer.status), nullptr);
    SoupMessageHeaders *headers = soup_server_message_get_response_headers(message);
    for (const auto &header : answer.headers)
        soup_message_headers_append(headers, header.first.c_str(), header.second.c_str());
    soup_message_headers_append(headers, "Vary", "Accept-Encoding");
    const bool compress = compresses(message, answer);
    if (compress)
        soup_message_headers_append(headers, "Content-Encoding", "gzip");
    const std::string &body = compress ? compressed(answer.body, Compression::Gzip) : answer.body;
    soup_server_message_set_response(
        message, answer.contentType.c_str(), SOUP_MEMORY_COPY, body.data(), body.size());
}

/// libsoup closes the connection of a head that is too long without a response; this sends one.
void refuseHead(GIOStream *stream, GSocket *socket)
{
    static constexpr std::string_view Response
        = "HTTP/1.1 431 Request Header Fields Too Large\r\nContent-Length: 0\r\n"
          "Connection: close\r\n\r\n";
    auto *output = G_POLLABLE_OUTPUT_STREAM(g_io_stream_get_output_stream(stream));
    g_pollable_output_stream_write_nonblocking(
        output, Response.data(), Response.size(), nullptr, nullptr);
    g_socket_shutdown(socket, TRUE, TRUE, nullptr);
}

/// libsoup keeps connections alive only while the server has a listener of its own. This one is one
/// end of a socket pair, on which no connection ever arrives. Returns the other end, to be closed
/// later.
int addSilentListener(SoupServer *server)
{
    int pair[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0)
        throw std::runtime_error("no sockets are left");
    GError *error = nullptr;
    GSocket *socket = g_socket_new_from_fd(pair[0], &error);
    const bool added = socket
        && soup_server_listen_socket(
            server, socket, static_cast<SoupServerListenOptions>(0), &error);
    g_clear_object(&socket);
    g_clear_error(&error);
    if (!added) {
        close(pair[1]);
        throw std::runtime_error("the HTTP library accepts no listener");
    }
    return pair[1];
}

/// The faults of the other servers, each limited to the server's stream.
Faults faultsOf(const std::vector<OtherServer> &servers)
{
    Faults faults;
    for (const OtherServer &server : servers) {
        auto fault = Faults::parse(server.fault);
        if (!fault)
            continue; // the loader of the data file has checked it
        fault->path = "/stream/" + server.station.id + '/';
        faults.add(std::move(*fault));
    }
    return faults;
}

Delivery resetting()
{
    Delivery delivery;
    delivery.end = Delivery::End::Reset;
    return delivery;
}

} // namespace

HttpServer::HttpServer(Directory &directory, Faults &faults, RequestLog *log, unsigned idleSeconds)
    : m_directory(directory)
    , m_faults(faults)
    , m_othersFaults(faultsOf(directory.catalog().otherServers))
    , m_log(log)
    , m_idleSeconds(idleSeconds)
    , m_server(soup_server_new(nullptr, nullptr))
    , m_silence(addSilentListener(m_server))
{
    g_signal_connect(m_server, "request-started", G_CALLBACK(onStarted), this);
    soup_server_add_handler(m_server, nullptr, onRequest, this, nullptr);
}

HttpServer::~HttpServer()
{
    m_listeners.clear();
    m_deliveries.clear();
    m_streams.clear();
    soup_server_disconnect(m_server);
    g_object_unref(m_server);
    close(m_silence);
}

std::string HttpServer::listen(const std::string &address)
{
    return listenWith(address, nullptr);
}

std::string HttpServer::listenTls(
    const std::string &address, const std::string &certificate, const std::string &key)
{
    GTlsCertificate *loaded = loadCertificate(certificate, key);
    const std::unique_ptr<GTlsCertificate, decltype(&g_object_unref)> owner(loaded, g_object_unref);
    return listenWith(address, loaded);
}

std::string HttpServer::listenWith(const std::string &address, GTlsCertificate *certificate)
{
    const bool secure = certificate != nullptr;
    m_listeners.push_back(std::make_unique<Listener>(address, certificate, m_idleSeconds,
        [this, secure](GIOStream *stream, GSocketConnection *connection) {
            accept(stream, connection, secure);
        }));
    return m_listeners.back()->hostAndPort();
}

void HttpServer::accept(GIOStream *stream, GSocketConnection *connection, bool secure)
{
    if (m_faults.isDown())
        return reset(g_socket_connection_get_socket(connection));
    const auto state = std::make_shared<Connection>(Connection {
        secure, RequestHeads([log = m_log](std::string_view method, std::string_view target) {
            if (log && !isControl(target))
                log->write(method, target);
        })});
    // The tap is a part of the stream, so the stream and its socket are there whenever it is
    // called.
    GSocket *socket = g_socket_connection_get_socket(connection);
    Tap tap;
    tap.read = [state, stream, socket](std::string_view bytes) {
        const bool wasTooLong = state->heads.isTooLong();
        state->heads.feed(bytes);
        if (state->heads.isTooLong() && !wasTooLong)
            refuseHead(stream, socket);
    };
    // libsoup 3.2 does not close a connection that ends between two requests, but one that ends in
    // a request's head. It answers that with 400, which a client whose connection was idle would
    // take for the response to its next request: hence the shutdown before.
    tap.breaksOff = [state, socket] {
        const bool between = state->heads.isBetweenRequests();
        if (between)
            g_socket_shutdown(socket, TRUE, TRUE, nullptr);
        return between;
    };
    GIOStream *tapped = tappedStream(stream, socket, std::move(tap));
    GSocketAddress *local = g_socket_connection_get_local_address(connection, nullptr);
    GSocketAddress *remote = g_socket_connection_get_remote_address(connection, nullptr);
    if (local && remote) {
        setConnection(remote, state);
        soup_server_accept_iostream(m_server, tapped, local, remote, nullptr);
    }
    g_clear_object(&local);
    g_clear_object(&remote);
    g_object_unref(tapped);
}

void HttpServer::onStarted(SoupServer *, SoupServerMessage *message, gpointer)
{
    auto *body = new RequestBody;
    g_object_set_data_full(G_OBJECT(message), BodyKey, body,
        [](gpointer data) { delete static_cast<RequestBody *>(data); });
    soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
    g_signal_connect(message, "got-headers", G_CALLBACK(onHeaders), nullptr);
    g_signal_connect(message, "got-chunk", G_CALLBACK(onChunk), body);
}

void HttpServer::onChunk(SoupServerMessage *message, GBytes *chunk, gpointer data)
{
    auto *body = static_cast<RequestBody *>(data);
    if (body->tooLong)
        return;
    gsize size = 0;
    const auto *bytes = static_cast<const char *>(g_bytes_get_data(chunk, &size));
    if (body->bytes.size() + size <= MaxRequestBody) {
        body->bytes.append(bytes, size);
        return;
    }
    body->tooLong = true;
    body->bytes.clear();
    // The rest is read and dropped, and the connection is closed after the response.
    soup_message_headers_replace(
        soup_server_message_get_response_headers(message), "Connection", "close");
}

void HttpServer::onRequest(
    SoupServer *, SoupServerMessage *message, const char *, GHashTable *, gpointer self)
{
    static_cast<HttpServer *>(self)->serve(message);
}

void HttpServer::serve(SoupServerMessage *message)
{
    const auto *body = static_cast<RequestBody *>(g_object_get_data(G_OBJECT(message), BodyKey));
    const std::string target = targetOf(message);
    if (body->tooLong)
        return send(message, textAnswer(413, "The request's body is too long."));
    if (target.size() > MaxTarget)
        return send(message, textAnswer(414, "The request's target is too long."));
    ApiRequest request = requestOf(message, target, body->bytes);
    if (request.path == FaultControlPath)
        return send(message, changeFaults(request.method, body->bytes));
    if (request.path == MelodyPath)
        return send(message, m_directory.handle(request));
    const FaultyAnswer answer = answerFor(request, target);
    if (answer.answer.audio)
        play(message, answer.answer, answer.delivery.value_or(Delivery()), request.path);
    else if (answer.delivery)
        deliver(message, answer.answer, *answer.delivery);
    else
        send(message, answer.answer);
}

/// For a hop, replaces the request's path with that of its target.
FaultyAnswer HttpServer::answerFor(ApiRequest &request, const std::string &target)
{
    const std::optional<Hop> hop = hopOf(target);
    if (hop)
        request.path = percentDecoded(hop->target.substr(0, hop->target.find('?')), false);
    request.path = pathHere(m_directory.catalog(), request.host, request.path);
    if (m_faults.isDown(request.path))
        return {Answer(), resetting()};
    if (hop && !hop->location.empty())
        return {redirection(hop->location), std::nullopt};
    const auto sound = [this, &request] { return m_directory.handle(request); };
    std::optional<Fault> fault;
    if (!hop)
        fault = m_faults.take(request.path);
    if (!hop && !fault)
        fault = m_othersFaults.take(request.path);
    return fault ? spoil(*fault, target, sound) : FaultyAnswer {sound(), std::nullopt};
}

Answer HttpServer::changeFaults(const std::string &method, const std::string &body)
{
    const std::size_t before = m_faults.size();
    Answer answer = controlFaults(m_faults, method, body);
    if (method != "POST" || answer.status != 200)
        return answer;
    // New faults also act on streams that are running.
    for (auto stream = m_streams.begin(); stream != m_streams.end();) {
        AudioDelivery &running = **stream++;
        if (m_faults.isDown(running.path()))
            running.reset();
        else if (const auto disturbance = m_faults.takeDisturbance(running.path(), before))
            running.disturb(*disturbance);
    }
    return controlFaults(m_faults, "GET", {});
}

std::optional<Disturbance> HttpServer::disturbanceAt(const std::string &path)
{
    const std::optional<Disturbance> disturbance = m_faults.takeDisturbance(path);
    return disturbance ? disturbance : m_othersFaults.takeDisturbance(path);
}

void HttpServer::deliver(SoupServerMessage *message, const Answer &answer, const Delivery &delivery)
{
    const bool withBody = soup_server_message_get_method(message) != SOUP_METHOD_HEAD;
    GIOStream *stream = soup_server_message_steal_connection(message);
    const auto place = m_deliveries.emplace(m_deliveries.end());
    *place = std::make_unique<RawDelivery>(
        stream, answer, delivery, withBody, [this, place] { m_deliveries.erase(place); });
    (*place)->start();
}

void HttpServer::play(
    SoupServerMessage *message, const Answer &answer, Delivery delivery, const std::string &path)
{
    if (m_streams.size() >= MaxStreams) {
        Answer full = textAnswer(503, "Too many listen already.");
        full.headers.emplace_back("Retry-After", "5");
        return send(message, full);
    }
    if (soup_server_message_get_method(message) == SOUP_METHOD_HEAD)
        delivery.bodyBytes = 0;
    else if (!delivery.disturbance)
        delivery.disturbance = disturbanceAt(path);
    GIOStream *stream = soup_server_message_steal_connection(message);
    const auto place = m_streams.emplace(m_streams.end());
    try {
        *place = std::make_unique<AudioDelivery>(
            stream, answer, delivery, path, [this, place] { m_streams.erase(place); });
        (*place)->start();
    } catch (const std::runtime_error &) {
        m_streams.erase(place); // no encoder: the client sees the connection close
    }
}

} // namespace directory
