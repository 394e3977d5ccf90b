// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/nodes/CMReply.h"
#include "api/player/PlayLogicInterface.h"
#include "api/values/CMError.h"
#include "api/values/CMPath.h"
#include "host/player/RowSearch.h"
#include "host/player/SpokenExcuses.h"
#include "host/player/StreamTrials.h"

#include <QObject>
#include <QVariantHash>

#include <functional>
#include <memory>

class ChosenStreams;
class MediaPlayer;

/// What plays and why, and the posts about it: fetches the row that is to be played, runs the step
/// before playing that the row names, hands its first resource to the player, goes on to the row's
/// other streams when that is not heard, and posts what happens to the row's state-change path.
/// Knows nothing of how streams are played. Main thread, but for currentData().
///
/// What is posted begins with "playing", or with "stopped" and an error when a play never got that
/// far, however many streams were tried. An error comes with "stopped" in one post, in the words of
/// the source; when the step before playing failed it comes without resources, because there was no
/// stream. When the sound output breaks, the stream is not at fault: nothing is posted but the end
/// of what was heard. Between two plays that were heard there is always a "stopped"; a "paused"
/// always follows a "playing".
class PlayLogic : public QObject, public PlayLogicInterface {
    Q_OBJECT

public:
    /// Called once: with the play's id, or with why the row is not played.
    using Started = std::function<void(const CMError &error, const VeskHash &playId)>;

    /// \a player must outlive it.
    explicit PlayLogic(MediaPlayer *player, QObject *parent = nullptr);
    ~PlayLogic() override;

    /// Which streams were chosen by hand; must outlive it. Without them nothing is remembered.
    void setChosenStreams(ChosenStreams *chosen) { m_chosen = chosen; }
    /// What is said of a service that could not answer; without it, what its plug-in says.
    void setFaultWords(RowSearch::FaultWords words) { m_faultWords = std::move(words); }
    /// What is not played but told in words.
    void setExcuses(const SpokenExcuses &excuses) { m_excuses = excuses; }
    void setTimes(const StreamTrials::Times &times) { m_trials.setTimes(times); }

    /// Plays a row in place of what plays, which goes on when there is no such row. Another play()
    /// meanwhile wins.
    void play(const RowAddress &address, Started started);
    /// Each returns why it cannot be done; an empty error when it is done, or was done already.
    CMError pause();
    CMError resume();
    CMError stop();

    /// Where what happens to the present play is posted; empty when its row names no such path.
    CMPath stateChangePath() const;
    /// The plug-in's process is gone: the next one knows nothing of earlier posts.
    void forgetPosts();
    /// The next process is ready: posts "playing" to it if something plays and it was not told yet.
    void postAgain();
    /// Whether a post is still to be answered; postsAnswered() follows when none is.
    bool hasUnansweredPosts() const { return m_unanswered > 0; }

    VeskPlayLogicData currentData() const override;
    /// Everything that is shown of the player, texts in the current language.
    QVariantHash state() const;

Q_SIGNALS:
    void changed();
    void postsAnswered();

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
    void end();
    void setState(State state);
    void post(State state, const QString &error = {});
    void publish();

    MediaPlayer *const m_player;
    ChosenStreams *m_chosen = nullptr;
    RowSearch::FaultWords m_faultWords;
    SpokenExcuses m_excuses;
    StreamTrials m_trials;
    int m_request = 0; ///< counts play(), to drop the rows of earlier calls
    State m_state = VeskPlayLogicState::stopped;
    State m_posted = VeskPlayLogicState::stopped; ///< the last that was posted
    bool m_heard = false; ///< the present play came so far as to be heard
    int m_unanswered = 0;
    VeskHash m_playId; ///< empty while nothing was played
    VeskRoles m_row; ///< as it was in the list
    VeskRoles m_stream; ///< the row of the stream that is tried: the same, or one of its streams
    VeskRoles m_roles; ///< what the step before playing made of it
    VeskRoles m_firstRoles; ///< those of the first stream, once it is known
    int m_step = 0; ///< counts the steps before playing, to drop the answers of earlier ones
    bool m_started = false; ///< the player has the stream
    TrString m_playerProblem;
    TrString m_failure; ///< why a stream cannot be played, the first if it is that one
    TrString m_error;
    QString m_streamTitle;
    int m_bitRate = 0;

    mutable VeskMutex m_mutex;
    VeskPlayLogicData m_data VESK_GUARDED_BY(m_mutex);
};
