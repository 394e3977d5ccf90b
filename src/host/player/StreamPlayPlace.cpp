// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// The part of StreamPlay that deals with places: in a file, and behind live.

#include "api/core/ThreadCheck.h"
#include "host/player/AudioOutput.h"
#include "host/player/PlaceFinder.h"
#include "host/player/PlayerText.h"
#include "host/player/StreamPlay.h"
#include "host/player/StreamSupply.h"

#include <algorithm>

namespace {

using Milliseconds = std::chrono::milliseconds;
using Microseconds = std::chrono::microseconds;
using Clock = std::chrono::steady_clock;

/// How close to the end of a file a place may be.
constexpr Milliseconds NearEnd {500};

TrString noPlaces()
{
    return playerText(QT_TRANSLATE_NOOP(
        "Player", "This does not say how long it is: it can only be heard from its beginning."));
}

} // namespace

void StreamPlay::watchPlace()
{
    connect(m_supply.get(), &StreamSupply::fileKnown, this, &StreamPlay::takeFile);
    connect(m_supply.get(), &StreamSupply::durationKnown, this, [this](Microseconds duration) {
        m_hasSegments = true;
        PlayPlace place = m_place;
        place.duration = std::chrono::duration_cast<Milliseconds>(duration);
        place.isSeekable = duration.count() > 0;
        setPlace(place);
    });
    connect(m_supply.get(), &StreamSupply::keptTooMuch, this, &StreamPlay::leave);
    connect(m_supply.get(), &StreamSupply::rejoined, this,
        [this](Milliseconds age) { setBehind(std::min(m_place.behind, age)); });
}

void StreamPlay::takeFile(const StreamFile &file)
{
    m_file = file.url;
    const MediaLayout layout = mediaLayout(file.head, file.begin, file.size);
    if (!layout.needsEnd() || m_finder)
        return takeLayout(layout);
    m_layout = layout;
    m_finder = std::make_unique<PlaceFinder>(file.url, layout, std::nullopt, m_times.http);
    connect(m_finder.get(), &QThread::finished, this, &StreamPlay::onFound);
    m_finder->start();
}

void StreamPlay::takeLayout(const MediaLayout &layout)
{
    m_layout = layout;
    PlayPlace place = m_place;
    place.isSeekable = layout.isKnown() && layout.duration.count() > 0;
    if (place.isSeekable)
        place.duration = std::chrono::duration_cast<Milliseconds>(layout.duration);
    else
        place.refusal = noPlaces();
    setPlace(place);
}

void StreamPlay::setPlace(const PlayPlace &place)
{
    m_place = place;
    if (m_clock->setFile(place))
        Q_EMIT placeChanged();
}

void StreamPlay::seek(Milliseconds position, int number)
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_output || !m_place.isSeekable || !m_place.duration) {
        Q_EMIT sought(m_place.refusal.isEmpty() ? noPlaces() : m_place.refusal, number);
        return;
    }
    const Milliseconds last = std::max(*m_place.duration - NearEnd, Milliseconds(0));
    position = std::clamp(position, Milliseconds(0), last);
    m_seek = number;
    m_finder.reset();
    if (m_hasSegments) {
        goTo({position});
        Q_EMIT sought({}, number);
        return;
    }
    m_finder = std::make_unique<PlaceFinder>(m_file, m_layout, position, m_times.http);
    connect(m_finder.get(), &QThread::finished, this, &StreamPlay::onFound);
    m_finder->start();
}

void StreamPlay::onFound()
{
    if (!m_finder || !m_finder->isFinished())
        return; // of an earlier one
    const std::unique_ptr<PlaceFinder> finder = std::move(m_finder);
    if (m_layout.needsEnd())
        takeLayout(finder->layout());
    if (!finder->time())
        return;
    if (finder->problem().isEmpty())
        goTo({*finder->time(), m_file, finder->place().offset, finder->place().time,
            finder->layout().head});
    Q_EMIT sought(finder->problem(), m_seek);
}

/// Replaces what is buffered of the file by what comes from \a start on.
void StreamPlay::goTo(const StreamStart &start)
{
    m_source.start = start;
    cutSupply();
    m_output->flush();
    m_clock->begin(start.position, {});
    supply();
}

void StreamPlay::rejoinLive(int number)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_output && (m_heldSince || m_place.behind.count() > 0)) {
        leave();
        if (!m_isPaused)
            supply();
    }
    Q_EMIT sought({}, number);
}

/// The station is paused: keeps what it sends, as long as it is not too far behind live.
void StreamPlay::hold(Milliseconds keep)
{
    const Milliseconds left = keep - m_place.behind;
    if (left.count() <= 0 || !m_supply)
        return leave();
    if (m_heldSince)
        return;
    m_heldSince = Clock::now();
    m_holdEnd.start(left);
    m_supply->keep();
}

void StreamPlay::release()
{
    if (!m_heldSince)
        return;
    m_holdEnd.stop();
    const auto since = *std::exchange(m_heldSince, std::nullopt);
    setBehind(m_place.behind + std::chrono::duration_cast<Milliseconds>(Clock::now() - since));
    m_supply->keepNoMore();
}

/// Disconnects the station and drops what is buffered of it.
void StreamPlay::leave()
{
    m_holdEnd.stop();
    m_heldSince.reset();
    cutSupply();
    m_output->flush();
    setBehind({});
}

void StreamPlay::setBehind(Milliseconds behind)
{
    PlayPlace place = m_place;
    place.behind = behind;
    setPlace(place);
}
