// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PlaceFinder.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/player/PlayerText.h"

#include <algorithm>

VESK_LOGGER("Player")

namespace {

using Clock = std::chrono::steady_clock;

/// Receives one part of a file, and checks that it is the one that was asked for.
class PartReceiver : public HttpStreamReceiver {
public:
    PartReceiver(
        const MediaSearch::Piece &piece, qint64 fileSize, const std::function<bool()> &goOn)
        : m_piece(piece)
        , m_fileSize(fileSize)
        , m_goOn(goOn)
    {
    }

    bool begin(const HttpStreamHead &head) override
    {
        if (head.code == 200)
            return refuse(playerText(QT_TRANSLATE_NOOP("Player",
                "The server of this sends no parts of it: it can only be heard from its "
                "beginning.")));
        if (head.code == 416)
            return refuse(playerText(
                QT_TRANSLATE_NOOP("Player", "The file at the server is shorter than it said.")));
        if (head.code != 206)
            return refuse(
                playerText(QT_TRANSLATE_NOOP("Player", "The stream's server refused it (code %1)."),
                    {QString::number(head.code)}));
        if (head.offset != m_piece.offset || (head.fileSize >= 0 && head.fileSize != m_fileSize))
            return refuse(playerText(
                QT_TRANSLATE_NOOP("Player", "The stream's server sent another part of the file.")));
        return true;
    }
    bool take(const char *data, std::size_t size) override
    {
        const auto room = static_cast<std::size_t>(m_piece.length - m_bytes.size());
        m_bytes.append(data, static_cast<int>(std::min(size, room)));
        // A server that sends more than it was asked for.
        return size <= room;
    }
    bool goOn() override { return m_goOn(); }

    bool isComplete() const { return m_bytes.size() == m_piece.length; }
    const QByteArray &bytes() const { return m_bytes; }
    const TrString &problem() const { return m_problem; }

private:
    bool refuse(const TrString &problem)
    {
        m_problem = problem;
        return false;
    }

    const MediaSearch::Piece m_piece;
    const qint64 m_fileSize;
    const std::function<bool()> &m_goOn;
    QByteArray m_bytes;
    TrString m_problem;
};

TrString tooSlow()
{
    return playerText(
        QT_TRANSLATE_NOOP("Player", "The stream's server is too slow to find the place."));
}

Result<QByteArray, TrString> fetch(HttpStream &http, const QUrl &url,
    const MediaSearch::Piece &piece, qint64 fileSize, const std::function<bool()> &goOn)
{
    PartReceiver receiver(piece, fileSize, goOn);
    HttpStream::Request request;
    request.url = url;
    request.offset = piece.offset;
    request.length = piece.length;
    const HttpStreamResult result = http.get(request, receiver);
    if (receiver.isComplete())
        return receiver.bytes();
    if (!receiver.problem().isEmpty())
        return failure(receiver.problem());
    if (!result.problem.isEmpty())
        return failure(result.problem);
    if (result.kind == HttpStreamResult::Refused || result.kind == HttpStreamResult::Interrupted)
        return failure(tooSlow());
    return failure(
        playerText(QT_TRANSLATE_NOOP("Player", "The file at the server is shorter than it said.")));
}

/// \a goOn until \a time has passed.
std::function<bool()> bounded(const std::function<bool()> &goOn)
{
    return [goOn, until = Clock::now() + LongestSearch] { return goOn() && Clock::now() < until; };
}

} // namespace

Result<void, TrString> completeLayout(
    HttpStream &http, const QUrl &url, MediaLayout &layout, const std::function<bool()> &goOn)
{
    if (!layout.needsEnd())
        return {};
    // A page of Ogg has up to 64 KiB, and the last one may be incomplete.
    const qint64 length = std::min<qint64>(2 * MediaSearch::PieceSize, layout.size - layout.begin);
    const auto bytes = fetch(http, url, {layout.size - length, length}, layout.size, bounded(goOn));
    if (!bytes)
        return failure(bytes.error());
    layout.takeEnd(*bytes);
    if (layout.needsEnd())
        return failure(
            playerText(QT_TRANSLATE_NOOP("Player", "The file does not say how long it is.")));
    return {};
}

Result<MediaPlace, TrString> findPlace(HttpStream &http, const QUrl &url, const MediaLayout &layout,
    std::chrono::microseconds time, const std::function<bool()> &goOn)
{
    const std::function<bool()> goOnSearching = bounded(goOn);
    MediaSearch search(layout, time);
    while (const auto piece = search.next()) {
        const auto bytes = fetch(http, url, *piece, layout.size, goOnSearching);
        if (!bytes)
            return failure(bytes.error());
        search.take(*bytes);
    }
    if (!search.place())
        return failure(
            playerText(QT_TRANSLATE_NOOP("Player", "This place cannot be found in the file.")));
    return *search.place();
}

PlaceFinder::PlaceFinder(const QUrl &url, const MediaLayout &layout,
    std::optional<std::chrono::microseconds> time, const HttpStream::Times &times)
    : m_url(url)
    , m_layout(layout)
    , m_time(time)
    , m_http(times)
{
}

PlaceFinder::~PlaceFinder()
{
    m_http.interrupt();
    wait();
}

void PlaceFinder::run()
{
    veskSetThreadName(QStringLiteral("PlaceFinder"));
    const auto goOn = [] { return true; };
    if (const auto complete = completeLayout(m_http, m_url, m_layout, goOn); !complete) {
        m_problem = complete.error();
        VESK_INFO("the length of the file is not known: " << m_problem);
        return;
    }
    if (!m_time)
        return;
    const auto place = findPlace(m_http, m_url, m_layout, *m_time, goOn);
    if (place)
        m_place = *place;
    else
        m_problem = place.error();
}
