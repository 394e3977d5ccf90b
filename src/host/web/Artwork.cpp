// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/web/Artwork.h"

#include "api/core/log.h"
#include "host/web/ImageType.h"

VESK_LOGGER("Host.Web")

namespace {

constexpr char Prefix[] = "/artwork/";
constexpr unsigned long CacheBytes = 16 * 1024 * 1024;

HttpResponse failure(unsigned code, const QByteArray &reason)
{
    return {code, "text/plain; charset=utf-8", reason + "\n", {}};
}

HttpResponse picture(const HttpClientResult &result)
{
    if (result.status() != HttpClientStatus::Success || result.code() != 200)
        return failure(502, "the picture cannot be fetched");
    const QByteArray type = imageTypeOf(result.data());
    if (type.isEmpty())
        return failure(502, "this is no picture");
    return {200, type, result.data(),
        {{"Cache-Control", "private, max-age=86400"},
            {"Content-Security-Policy", "default-src 'none'; sandbox"},
            {"Cross-Origin-Resource-Policy", "same-origin"}}};
}

} // namespace

Artwork::Artwork()
    : m_client(std::make_unique<HttpClient>(nullptr, HttpClient::Default, true))
{
    m_client->setCacheSize(CacheBytes);
}

Artwork::~Artwork()
{
    // The client calls back for each exchange that it cancels; there is nothing to respond to.
    m_waiting.clear();
    m_client.reset();
}

bool Artwork::owns(const QByteArray &path) const
{
    return path.startsWith(Prefix);
}

void Artwork::get(const HttpRequest &request, Respond respond)
{
    VESK_ASSERT_THREAD(m_thread);
    const QByteArray url = m_urls.find(request.path.mid(static_cast<int>(sizeof Prefix) - 1));
    if (url.isEmpty())
        return respond(failure(404, "no service named this picture"));
    if (m_waiting.contains(url)) {
        m_waiting[url].append(std::move(respond));
        return;
    }
    if (m_waiting.size() >= MaxRunning)
        return respond(failure(503, "too many pictures at a time"));
    m_waiting.insert(url, {std::move(respond)});
    HttpClientOptions options;
    options.setTimeoutMs(TimeoutMs);
    options.setReadSizeLimit(MaxBytes);
    options.setGuarded(true);
    m_client->get(VeskUrl(QString::fromUtf8(url)), options,
        [this, url](const HttpClientResult &result) { fetched(url, result); });
}

void Artwork::fetched(const QByteArray &url, const HttpClientResult &result)
{
    const HttpResponse response = picture(result);
    if (response.code != 200)
        VESK_DEBUG("no picture at " << result.url() << ": " << result.status());
    const QVector<Respond> waiting = m_waiting.take(url);
    for (const Respond &respond : waiting)
        respond(response);
}
