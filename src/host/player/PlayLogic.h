// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/nodes/CMReply.h"
#include "api/player/PlayLogicInterface.h"
#include "api/values/CMError.h"
#include "api/values/CMPath.h"
#include "host/player/PlayPlace.h"
#include "host/player/RowSearch.h"
#include "host/player/SpokenExcuses.h"
#include "host/player/StreamTrials.h"

#include <QObject>
#include <QTimer>
#include <QVariantHash>

#include <chrono>
#include <functional>
#include <memory>

class ChosenStreams;
class EpisodePlaces;
class MediaPlayer;

/// Plays rows: fetches a row, runs its pre-play request (prePlayPath), hands its first resource to
/// the MediaPlayer, falls back to the row's other streams when that one brings no sound, and posts
/// state changes to the row's playbackStateChangePath. Does not know how streams are played. Main
/// thread, except for currentData().
///
/// Posts of a play begin with "playing", or consist of one "stopped" with an error if the play
/// never became audible, however many streams were tried. An error is posted together with
/// "stopped", as untranslated source text; after a failed pre-play request the posted roles have no
/// resources, because there was no stream. A broken sound output is no fault of the stream: then
/// only the "stopped" that ends an audible play is posted, without an error. There is always a
/// "stopped" between two audible plays, and a "paused" always follows a "playing".
class PlayLogic : public QObject, public PlayLogicInterface {
    Q_OBJECT

public:
    /// Called once, on the main thread: with the play's id, or with the error because of which the
    /// row is not played.
    using Started = std::function<void(const CMError &error, const VeskHash &playId)>;

    /// \a player must outlive this object.
    explicit PlayLogic(MediaPlayer *player, QObject *parent = nullptr);
    ~PlayLogic() override;

    /// The streams that users chose for stations; must outlive this object. Null: none are
    /// remembered.
    void setChosenStreams(ChosenStreams *chosen) { m_chosen = chosen; }
    /// Where episodes were left; must outlive this object. Null: each begins at its beginning.
    void setEpisodePlaces(EpisodePlaces *places) { m_places = places; }
    /// Texts for services that could not respond; without them the plug-in's own error is shown.
    void setFaultWords(RowSearch::FaultWords words) { m_faultWords = std::move(words); }
    /// Addresses of spoken messages, for which an error text is shown instead.
    void setExcuses(const SpokenExcuses &excuses) { m_excuses = excuses; }
    void setTimes(const StreamTrials::Times &times) { m_trials.setTimes(times); }

    /// Plays a row. The current play goes on until the row was fetched, and also if that fails. A
    /// later play() or a stop() before the row was fetched supersedes this one, whose \a started
    /// then gets an error.
    void play(const RowAddress &address, Started started);
    /// Plays a row that was kept from row(), without looking it up; as play() otherwise.
    void playRow(const VeskRoles &row, const Started &started);
    /// Each returns an error when it is impossible in the current state; an empty one when it was
    /// done or there was nothing to do.
    CMError pause();
    CMError resume();
    CMError stop();

    /// Called once: with an error, whose text is for the user, if the place cannot be reached; the
    /// play goes on where it was then.
    using Sought = std::function<void(const CMError &error)>;
    /// Goes to a place in a file, counted from its beginning or from where it is.
    void seek(std::chrono::milliseconds position, Sought sought);
    void seekBy(std::chrono::milliseconds offset, const Sought &sought);
    /// Rejoins a station live that is behind; nothing to do for one that is not.
    void rejoinLive(Sought sought);
    /// Where the play is.
    PlayPlace place() const;

    /// The row of the current play, or of the last one, as its screen lists it; empty before the
    /// first.
    const VeskRoles &row() const { return m_row; }
    /// Whether the last play ended because the sound output failed, and nothing happened since.
    bool endedByOutput() const { return m_outputFailedAt == m_step; }

    /// How often something was to be played or stopped so far, by whomever.
    int requests() const { return m_request; }

    /// Where the state changes of the current play are posted; empty if its row has no such path.
    CMPath stateChangePath() const;
    /// The plug-in process has ended: a new one does not know the earlier posts.
    void forgetPosts();
    /// The new plug-in process is ready: posts "playing" to it if something plays and that was not
    /// posted yet.
    void postAgain();
    /// Whether a post still waits for its response; postsAnswered() is emitted when none does any
    /// more.
    bool hasUnansweredPosts() const { return m_unanswered > 0; }

    /// A snapshot for plug-ins, texts translated. Any thread.
    VeskPlayLogicData currentData() const override;
    /// The player's state for user interfaces, texts in the current language.
    QVariantHash state() const;

Q_SIGNALS:
    /// state() or currentData() changed.
    void changed();
    /// The first sound of a play of \a row.
    void heard(const VeskRoles &row);
    /// stop() was called: the listener wants silence, also if nothing played. Before changed().
    void stopRequested();
    void postsAnswered();
    /// The place has changed by more than the time that passes, whether or not state() tells.
    void moved();

private:
    using State = VeskPlayLogicState::Enum;

    void takeRow(const CMError &error, const VeskRoles &row, const Started &started);
    TrString refusalOf(const VeskRoles &row) const;
    void tryStream(const VeskRoles &stream);
    void prePlay(const VeskRoles &stream);
    void startPlayer(const VeskRoles &stream);
    void onAudible(bool audible);
    void onProblem(const TrString &problem);
    void onGaveUp(const TrString &problem);
    void onExhausted();
    void onOutputFailed(const TrString &problem);
    void fail(const TrString &problem);
    void stopWith(const TrString &problem);
    TrString problem() const;
    CMError refusalToSeek() const;
    void finishSeek(const CMError &error);
    void onSought(const TrString &problem);
    void onEnded();
    void keepPlace();
    void end();
    void conclude();
    void setState(State state);
    void post(State state, const QString &error = {});
    void publish();

    MediaPlayer *const m_player;
    ChosenStreams *m_chosen = nullptr;
    RowSearch::FaultWords m_faultWords;
    SpokenExcuses m_excuses;
    StreamTrials m_trials;
    int m_request = 0; ///< of the latest play(), to drop the rows of earlier calls
    State m_state = VeskPlayLogicState::stopped;
    State m_posted = VeskPlayLogicState::stopped; ///< the last state that was posted
    bool m_heard = false; ///< the current play has been audible
    /// Posts that wait for their responses.
    int m_unanswered = 0;
    VeskHash m_playId; ///< empty before the first play
    VeskRoles m_row; ///< as the screen lists it
    VeskRoles m_stream; ///< the row that is tried: m_row or one of its other streams
    VeskRoles m_roles; ///< m_stream after its pre-play request
    VeskRoles m_firstRoles; ///< m_roles of the first stream, once it is known; else empty
    int m_step = 0; ///< of the latest pre-play request, to drop the responses of earlier ones
    int m_outputFailedAt = -1; ///< m_step then
    bool m_started = false; ///< the stream was handed to the player
    /// The player's last problemChanged().
    TrString m_playerProblem;
    /// The error of the first stream, or of another one while the first has none.
    TrString m_failure;
    /// Why the play ended; empty while it lasts and after stop().
    TrString m_error;
    QString m_streamTitle;
    int m_bitRate = 0;
    EpisodePlaces *m_places = nullptr;
    QTimer m_keepPlace; ///< runs while a file plays
    Sought m_sought; ///< of the seek() that is under way

    mutable VeskMutex m_mutex;
    VeskPlayLogicData m_data VESK_GUARDED_BY(m_mutex);
};
