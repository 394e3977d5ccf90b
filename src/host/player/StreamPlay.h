// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/MediaLayout.h"
#include "host/player/PlayClock.h"
#include "host/player/StreamReader.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

class AlarmSound;
class AudioOutput;
class PlaceFinder;
class SoundOutput;
class SpareDecoder;
class StreamSupply;

/// One play, from the address to the sound output. Created on any thread, then moved to the play's
/// own thread (PlayThread) and used only there. It may block while a device, connection or decoder
/// opens or closes.
class StreamPlay : public QObject {
    Q_OBJECT

public:
    StreamPlay(StreamSource source, std::shared_ptr<SoundOutput> sound,
        std::shared_ptr<SpareDecoder> spare, const StreamReader::Times &times);
    /// Stops. An output file is complete afterwards.
    ~StreamPlay() override;

    void start();
    /// A file is held. A station is held too while it is not more than \a keep behind live, and
    /// then disconnected; at once with 0. \a step numbers the calls of pause() and resume() and
    /// comes back with audibleChanged(), so that late signals can be told from current ones.
    void pause(int step, std::chrono::milliseconds keep);
    void resume(int step);
    /// As MediaPlayer::seek() and rejoinLive(); \a number comes back with sought().
    void seek(std::chrono::milliseconds position, int number);
    void rejoinLive(int number);
    /// Where the play is. The object may outlive the play; any thread.
    std::shared_ptr<const PlayClock> clock() const { return m_clock; }
    /// The network is back: ends a delay before a retry.
    void tryNow();

Q_SIGNALS:
    /// \a step is that of the latest pause() or resume(); 0 before the first.
    void audibleChanged(bool audible, int step);
    void titleChanged(const QString &title);
    void bitRateChanged(int bitRate);
    /// Everything was heard.
    void ended();
    /// The source cannot be played.
    void gaveUp(const TrString &problem);
    /// A text for the user about a fault and the retry, while there is no sound; empty otherwise.
    void problemChanged(const TrString &problem);
    /// The sound output does not work.
    void outputFailed(const TrString &problem);
    /// clock()'s place has changed, other than by the time that passes.
    void placeChanged();
    /// \a problem is empty, or says why seek() was impossible.
    void sought(const TrString &problem, int number);

private:
    void supply();
    void watchPlace();
    void cutSupply();
    void takeFile(const StreamFile &file);
    void takeLayout(const MediaLayout &layout);
    void onFound();
    void goTo(const StreamStart &start);
    void setPlace(const PlayPlace &place);
    void hold(std::chrono::milliseconds keep);
    void release();
    void leave();
    void setBehind(std::chrono::milliseconds behind);
    void rejoin();
    void showProblem();

    StreamSource m_source; ///< only its start changes
    const std::shared_ptr<PlayClock> m_clock = std::make_shared<PlayClock>();
    MediaLayout m_layout; ///< of the file that plays, once it is known
    QUrl m_file; ///< its address
    bool m_hasSegments = false; ///< the file is one of HTTP Live Streaming
    PlayPlace m_place; ///< what m_clock knows of the file
    std::unique_ptr<PlaceFinder> m_finder;
    int m_seek = 0; ///< number of the seek() that m_finder works for
    bool m_isPaused = false;
    /// When a station was paused that is held.
    std::optional<std::chrono::steady_clock::time_point> m_heldSince;
    QTimer m_holdEnd {this}; ///< goes to the play's thread with this object
    const std::shared_ptr<SoundOutput> m_sound;
    const std::shared_ptr<SpareDecoder> m_spare;
    const StreamReader::Times m_times;
    int m_step = 0;
    std::unique_ptr<AudioOutput> m_output;
    std::unique_ptr<StreamSupply> m_supply;
    std::unique_ptr<AlarmSound> m_alarmSound; ///< in place of a supply
    TrString m_problem; ///< the last of the supply
    TrString m_shown; ///< the last problemChanged()
};
