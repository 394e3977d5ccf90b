// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/ClientRequest.h"

#include "host/http/ServerThread.h"

#include <boost/asio/buffer.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/websocket/rfc6455.hpp>

#include <algorithm>
#include <limits>

namespace http = boost::beast::http;

namespace {

/// What a path offers besides the resources, by its method.
struct Route {
    const char *path;
    const char *methods;
};

constexpr Route Routes[] = {{"/", "GET, HEAD"}, {"/jsonrpc", "POST"}, {"/ws", "GET"}};

bool allows(const QByteArray &methods, const QByteArray &method)
{
    return QByteArray(methods).replace(", ", ",").split(',').contains(method);
}

QByteArray bytesOf(boost::beast::string_view text)
{
    return {text.data(), static_cast<int>(text.size())};
}

ClientRequest::Refusal noHttp()
{
    return {400, "this is no HTTP"};
}

} // namespace

ClientRequest::ClientRequest(ServerThread &server, const Ends &ends, bool isTls)
    : m_server(server)
    , m_ends(ends)
    , m_isTls(isTls)
    , m_client(ends.peer)
    , m_isStranger(!isLoopbackAddress(ends.peer) && !server.isProxy(ends.peer))
{
    m_caller.role = AccessRole::None;
    m_parser.header_limit(MaxHead);
    // Judged later: a request that is refused for another reason is told that one.
    m_parser.body_limit(std::numeric_limits<std::uint64_t>::max());
    m_parser.eager(false);
}

QByteArray ClientRequest::header(http::field name) const
{
    return header(bytesOf(http::to_string(name)).constData());
}

/// All headers of that name, joined by commas; null without one. Where one is expected, two match
/// nothing.
QByteArray ClientRequest::header(const char *name) const
{
    QByteArray joined;
    const auto range = m_parser.get().equal_range(name);
    for (auto it = range.first; it != range.second; ++it)
        joined = joined.isNull() ? QByteArray("") + bytesOf(it->value())
                                 : joined + ", " + bytesOf(it->value());
    return joined;
}

QByteArray ClientRequest::method() const
{
    return bytesOf(m_parser.get().method_string());
}

QByteArray ClientRequest::target() const
{
    return bytesOf(m_parser.get().target());
}

std::optional<ClientRequest::Refusal> ClientRequest::takeHead(const QByteArray &head)
{
    if (auto refusal = parseHead(head))
        return refusal;
    identify();
    if (auto refusal = judge())
        return refusal;
    m_parser.body_limit(static_cast<std::uint64_t>(m_server.limits.bodySize));
    m_parser.eager(true);
    return {};
}

std::optional<ClientRequest::Refusal> ClientRequest::parseHead(const QByteArray &head)
{
    if (!isStrictHead(head))
        return noHttp();
    boost::system::error_code error;
    m_parser.put(
        boost::asio::buffer(head.constData(), static_cast<std::size_t>(head.size())), error);
    const auto version = m_parser.get().version();
    if (error == http::error::bad_version || (!error && version != 10 && version != 11))
        return Refusal {505, "this is no HTTP/1"};
    if (error || !m_parser.is_header_done() || !hasPlainFraming())
        return noHttp();
    return {};
}

/// Whether it is said once, in the simplest way, where the body ends (RFC 9112, section 6). Beast
/// refuses a head with both; it takes a list of equal lengths, and codings that it does not know.
bool ClientRequest::hasPlainFraming() const
{
    const QByteArray length = header(http::field::content_length);
    const QByteArray coding = header(http::field::transfer_encoding);
    const bool isNumber = std::all_of(
        length.begin(), length.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
    return (length.isNull() || (isNumber && !length.isEmpty()))
        && (coding.isNull() || (coding.toLower() == "chunked" && length.isNull()));
}

void ClientRequest::identify()
{
    const bool isProxy = m_server.isProxy(m_ends.peer);
    for (const char *name : {"X-Forwarded-For", "X-Forwarded-Proto", "X-Forwarded-Host",
             "X-Real-IP", "Forwarded", "Via"})
        m_isForwarded = m_isForwarded || !header(name).isNull();
    if (isProxy) {
        m_client = forwardedClient(
            m_ends.peer, header("X-Forwarded-For"), m_server.access.names.proxies);
    }
    m_isSecure = m_isTls || (isProxy && header("X-Forwarded-Proto").toLower() == "https");

    m_isStranger = !isLocal();
    if (!m_isStranger) {
        m_caller = {};
        return;
    }
    const QByteArray token
        = tokenIn(header(http::field::cookie), header(http::field::authorization));
    if (token.isEmpty() || !m_server.access.findToken)
        return;
    if (const auto found = m_server.access.findToken(token)) {
        m_caller = *found;
        m_isStranger = false;
    }
}

/// A proxy on this machine comes from the same address as the programs on it. One that was not told
/// to say for whom it asks may give itself away all the same: by the base path, or by the old
/// version of HTTP that nginx speaks unless it is told otherwise.
bool ClientRequest::isLocal() const
{
    const QByteArray path = QByteArray::fromPercentEncoding(target());
    // A host that nobody shares has no proxy.
    const bool isOldProxy = !isHttp11() && m_server.access.isForOthers();
    return isLoopbackAddress(m_ends.peer) && isLoopbackAddress(m_ends.local)
        && isLoopbackHost(header(http::field::host), m_ends.port) && !m_isForwarded && !isOldProxy
        && withoutBasePath(path, m_server.access.names.basePath) == path;
}

std::optional<ClientRequest::Refusal> ClientRequest::judge()
{
    if (m_server.active() > m_server.limits.connections)
        return Refusal {503, "too many connections"};
    if (!isNamed())
        return Refusal {403, "wrong host"};
    if (auto refusal = judgeTarget())
        return refusal;
    if (auto refusal = judgeOrigin())
        return refusal;
    return judgePurpose();
}

bool ClientRequest::isNamed() const
{
    const QByteArray host = header(http::field::host);
    const bool isOwnName = isLoopbackAddress(m_ends.local)
        ? isLoopbackHost(host, m_ends.port)
        : isMachineHost(host, m_ends.port, m_ends.local, m_server.machine);
    return isOwnName || isAllowedHost(host, m_server.access.names.hosts);
}

std::optional<ClientRequest::Refusal> ClientRequest::judgeTarget()
{
    m_target = target();
    if (!m_target.startsWith('/')) {
        // With the whole address, as for a proxy (RFC 9112, section 3.2.2).
        const QByteArray whole = "http://" + header(http::field::host);
        if (!m_target.startsWith(whole + "/"))
            return Refusal {400, "wrong target"};
        m_target.remove(0, whole.size());
    }
    m_path = withoutBasePath(QByteArray::fromPercentEncoding(m_target.split('?').first()),
        m_server.access.names.basePath);
    if (m_path.contains('\0'))
        return Refusal {400, "wrong target"};
    return {};
}

std::optional<ClientRequest::Refusal> ClientRequest::judgeOrigin()
{
    const QByteArray host = header(http::field::host);
    const QByteArray origin = header(http::field::origin);
    const bool isDirect = !isLoopbackAddress(m_ends.peer) && !m_server.isProxy(m_ends.peer);
    if (isDirect && !m_isTls && !m_server.access.plainHttp) {
        if (method() != "GET" && method() != "HEAD")
            return Refusal {403, "TLS is needed"};
        return Refusal {308, "TLS is needed", {{"Location", "https://" + host + m_target}}};
    }
    if (!origin.isNull() && !isSameOrigin(origin, host, m_isSecure)
        && !m_server.access.names.origins.contains(origin))
        return Refusal {403, "wrong origin"};
    const bool isRemote = m_isStranger || !m_caller.deviceId.isEmpty();
    const QByteArray client = m_isStranger ? networkOf(m_client) : m_caller.deviceId.toLatin1();
    if (isRemote && !m_server.pace.take(client, !m_isStranger, std::chrono::steady_clock::now()))
        return Refusal {429, "too many requests", {{"Retry-After", "1"}}};
    if (m_isStranger && !isOpenPath(m_path))
        return refusalOfStranger();
    return {};
}

ClientRequest::Refusal ClientRequest::refusalOfStranger() const
{
    const QByteArray authorization = header(http::field::authorization);
    const bool isVisit
        = m_path == "/" && m_parser.get().method() == http::verb::get && authorization.isNull();
    Refusal refusal {
        401, "pair this device first", {{"WWW-Authenticate", "Bearer realm=\"vesk\""}}};
    if (isVisit) // below whatever path a proxy serves this
        refusal = {303, "pair this device first", {{"Location", "pair"}}};
    refusal.isWrongToken = !tokenIn(header(http::field::cookie), authorization).isEmpty();
    return refusal;
}

std::optional<ClientRequest::Refusal> ClientRequest::judgePurpose()
{
    const QByteArray known = methods();
    if (known.isEmpty())
        return Refusal {404, "there is nothing here"};
    if (!allows(known, method()))
        return Refusal {405, "wrong method", {{"Allow", known}}};
    if (method() == "POST" && !isJsonContentType(header(http::field::content_type)))
        return Refusal {415, "application/json is needed"};
    if (m_parser.content_length().value_or(0)
        > static_cast<std::uint64_t>(m_server.limits.bodySize))
        return Refusal {413, "the body is too large"};
    return {};
}

QByteArray ClientRequest::methods() const
{
    QByteArray known;
    for (const Route &route : Routes) {
        if (m_path == route.path)
            return route.methods;
    }
    for (const HttpResource *resource : m_server.resources) {
        if (resource->owns(m_path))
            known += (known.isEmpty() ? "" : ", ") + resource->methods();
    }
    return known;
}

std::optional<ClientRequest::Refusal> ClientRequest::takeBody(QByteArray &bytes)
{
    if (isWhole() || bytes.isEmpty())
        return {};
    boost::system::error_code error;
    const std::size_t used = m_parser.put(
        boost::asio::buffer(bytes.constData(), static_cast<std::size_t>(bytes.size())), error);
    bytes.remove(0, static_cast<int>(used));
    if (error == http::error::body_limit)
        return Refusal {413, "the body is too large"};
    if (error && error != http::error::need_more)
        return noHttp();
    // What is left is the beginning of a chunk's head or of trailers.
    if (!isWhole() && bytes.size() >= MaxHead)
        return noHttp();
    return {};
}

bool ClientRequest::wantsContinue() const
{
    return header(http::field::expect).toLower() == "100-continue" && !isWhole();
}

bool ClientRequest::isHead() const
{
    return m_parser.is_header_done() && m_parser.get().method() == http::verb::head;
}

bool ClientRequest::isUpgrade() const
{
    return boost::beast::websocket::is_upgrade(m_parser.get())
        && !header(http::field::sec_websocket_key).isEmpty()
        && header(http::field::sec_websocket_version) == "13";
}

bool ClientRequest::mayBeFollowed() const
{
    const auto &request = m_parser.get();
    return request.keep_alive() && request.method() == http::verb::get && isHttp11();
}

HttpResource *ClientRequest::resource() const
{
    for (HttpResource *resource : m_server.resources) {
        if (resource->owns(m_path) && allows(resource->methods(), method()))
            return resource;
    }
    return nullptr;
}

HttpRequest ClientRequest::forResource() const
{
    HttpRequest told;
    told.path = m_path;
    told.host = header(http::field::host);
    told.acceptEncoding = header(http::field::accept_encoding);
    told.ifNoneMatch = header(http::field::if_none_match);
    told.method = method();
    told.body = body();
    told.peer = QString::fromLatin1(m_client);
    told.isSecure = m_isSecure;
    told.caller = m_caller;
    return told;
}
