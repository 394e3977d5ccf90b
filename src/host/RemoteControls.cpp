// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/RemoteControls.h"

#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"
#include "host/library/Library.h"
#include "host/mpris/Mpris.h"
#include "host/player/PlayLogic.h"
#include "host/sound/PlayerVolume.h"

#include <QPointer>

#include <algorithm>
#include <cmath>

namespace {

using std::chrono::milliseconds;

VeskPlayLogicState::Enum playState(const QVariantHash &state)
{
    return static_cast<VeskPlayLogicState::Enum>(state.value(QStringLiteral("state")).toInt());
}

} // namespace

RemoteControls::RemoteControls(PlayLogic *logic, QObject *parent)
    : MprisPlayer(parent)
    , m_logic(logic)
{
    veskConnect(logic, &PlayLogic::changed, this, &RemoteControls::follow);
    veskConnect(logic, &PlayLogic::moved, this, &MprisPlayer::moved);
}

RemoteControls::~RemoteControls() = default;

void RemoteControls::offer()
{
    m_mpris = std::make_unique<Mpris>(this);
}

void RemoteControls::follow()
{
    const QVariant playId = m_logic->state().value(QStringLiteral("playId"));
    if (playId.isValid() && playId != m_playId) {
        m_playId = playId;
        ++m_number;
    }
    Q_EMIT changed();
}

MprisState RemoteControls::state() const
{
    VESK_ASSERT_OWN_THREAD();
    const QVariantHash now = m_logic->state();
    MprisState state;
    state.canPlay = !m_logic->row().isEmpty();
    if (m_volume && m_volume->isMuted())
        state.volume = 0;
    else if (m_volume)
        state.volume = static_cast<double>(m_volume->volume()) / PlayerVolume::Loudest;
    state.canGoNext = !m_presets.isEmpty();
    state.canGoPrevious = !m_presets.isEmpty();
    if (playState(now) == VeskPlayLogicState::stopped)
        return state;
    state.status
        = playState(now) == VeskPlayLogicState::paused ? MprisState::Paused : MprisState::Playing;
    state.canPause = true;
    state.canSeek = m_logic->place().isSeekable;
    state.track = track(now);
    return state;
}

MprisTrack RemoteControls::track(const QVariantHash &state) const
{
    const auto text
        = [&state](const char *name) { return state.value(QString::fromLatin1(name)).toString(); };
    const QString station = text("title");
    const QString streamTitle = text("streamTitle");
    MprisTrack track;
    track.number = m_number;
    if (const auto duration = m_logic->place().duration)
        track.length = *duration;
    track.artUrl = text("icon");
    if (streamTitle.isEmpty()) {
        track.title = station;
        return track;
    }
    const QString dash = QStringLiteral(" - ");
    const int split = streamTitle.indexOf(dash);
    track.artist = streamTitle.left(std::max(split, 0)).trimmed();
    track.title = track.artist.isEmpty() ? streamTitle : streamTitle.mid(split + dash.size());
    track.album = station;
    return track;
}

std::chrono::microseconds RemoteControls::position() const
{
    return m_logic->place().position.value_or(milliseconds(0));
}

void RemoteControls::setPresets(const QVector<VeskRoles> &rows)
{
    VESK_ASSERT_OWN_THREAD();
    m_presets = rows;
    Q_EMIT changed();
}

void RemoteControls::followPresets(Library *library)
{
    const auto ask = [this, library] {
        library->presets([self = QPointer<RemoteControls>(this)](
                             const Result<QVector<Library::Preset>, QString> &presets) {
            if (!self || !presets)
                return;
            QVector<VeskRoles> rows;
            for (const Library::Preset &preset : *presets)
                rows.append(preset.row);
            self->setPresets(rows);
        });
    };
    connect(library, &Library::presetsChanged, this, ask);
    ask();
}

void RemoteControls::useVolume(PlayerVolume *volume)
{
    m_volume = volume;
    veskConnect(volume, &PlayerVolume::changed, this, &MprisPlayer::changed);
}

void RemoteControls::play()
{
    if (playState(m_logic->state()) != VeskPlayLogicState::stopped)
        m_logic->resume();
    else if (const VeskRoles row = m_logic->row(); !row.isEmpty())
        m_logic->playRow(row, [](const CMError &, const VeskHash &) {});
}

void RemoteControls::pause()
{
    if (playState(m_logic->state()) != VeskPlayLogicState::stopped && !m_logic->pause().isEmpty())
        m_logic->stop();
}

void RemoteControls::stop()
{
    m_logic->stop();
}

void RemoteControls::goNext()
{
    goBy(1);
}

void RemoteControls::goPrevious()
{
    goBy(-1);
}

void RemoteControls::goBy(int step)
{
    if (m_presets.isEmpty())
        return;
    const CMPath path = m_logic->row().path();
    const auto present = std::find_if(m_presets.begin(), m_presets.end(),
        [&path](const VeskRoles &row) { return !path.isEmpty() && row.path() == path; });
    const int count = m_presets.size();
    int next = step > 0 ? 0 : count - 1;
    if (present != m_presets.end())
        next = (static_cast<int>(present - m_presets.begin()) + step + count) % count;
    m_logic->playRow(m_presets.at(next), [](const CMError &, const VeskHash &) {});
}

void RemoteControls::seekTo(std::chrono::microseconds position)
{
    m_logic->seek(std::chrono::duration_cast<milliseconds>(position), [](const CMError &) {});
}

void RemoteControls::seekBy(std::chrono::microseconds offset)
{
    m_logic->seekBy(std::chrono::duration_cast<milliseconds>(offset), [](const CMError &) {});
}

void RemoteControls::setVolume(double volume)
{
    if (!m_volume)
        return;
    m_volume->setVolume(static_cast<int>(std::lround(volume * PlayerVolume::Loudest)));
    if (m_volume->volume() > 0)
        m_volume->setMuted(false);
}
