#pragma once

#include "api/nodes/CMReply.h"
#include "api/player/PlayLogicInterface.h"
#include "api/values/CMError.h"
#include "api/values/CMPath.h"

#include <QObject>
#include <QVariantHash>

#include <functional>
#include <memory>
#include <mutex>

class MediaPlayer;

/// What plays, why, and who is told: fetches the row that is to be played, runs the step before
/// playing that the row names, hands its first resource to the player, and posts what happens to
/// the row's state-change path. Knows nothing of streams. Main thread, but for currentData().
///
/// What is posted begins with "playing", or with "stopped" and an error when a play never got that
/// far. An error comes with "stopped" in one post; between two plays that were heard there is
/// always a "stopped"; a "paused" always follows a "playing".
class PlayLogic : public QObject, public PlayLogicInterface {
    Q_OBJECT

public:
    /// Called once: with the play's id, or with why the row is not played.
    using Started = std::function<void(const CMError &error, const VeskHash &playId)>;

    /// \a player must outlive it.
    explicit PlayLogic(MediaPlayer *player, QObject *parent = nullptr);
    ~PlayLogic() override;

    /// Plays \a row of \a screen in place of what plays. Another play() meanwhile wins.
    void play(const CMPath &screen, int row, Started started);
    /// Each returns why it cannot be done; an empty error when it is done, or was done already.
    CMError pause();
    CMError resume();
    CMError stop();

    /// Where what happens to the present play is posted; empty when nobody wants to know.
    CMPath stateChangePath() const;
    /// Whoever was told is gone: what is posted from now on reaches one that knows nothing.
    void forgetPosts();
    /// The new one is there: posts what it has to know, unless it was posted to it already.
    void postAgain();
    /// Whether somebody still works on what was posted; postsAnswered() tells when nobody does.
    bool hasUnansweredPosts() const { return m_unanswered > 0; }

    VeskPlayLogicData currentData() const override;
    /// Everything that is shown of the player, texts in the current language.
    QVariantHash state() const;

Q_SIGNALS:
    void changed();
    void postsAnswered();

private:
    using State = VeskPlayLogicState::Enum;

    void takeRow(const CMReplyData<QVariant> &reply, const Started &started);
    void prePlay(const VeskHash &playId);
    void startPlayer();
    void onAudible(bool audible);
    void onEnded();
    void onGaveUp(const TrString &problem);
    void fail(const TrString &problem);
    void end();
    void setState(State state);
    void post(State state, const QString &error = {});
    void publish();

    MediaPlayer *const m_player;
    int m_request = 0; ///< counts play(), so that an earlier one is known when its row comes
    State m_state = VeskPlayLogicState::stopped;
    State m_posted = VeskPlayLogicState::stopped; ///< what they know to whom it is posted
    bool m_heard = false; ///< the present play came so far as to be heard
    int m_unanswered = 0;
    VeskHash m_playId; ///< empty while nothing was played
    VeskRoles m_roles;
    TrString m_error;
    QString m_streamTitle;
    int m_bitRate = 0;

    mutable std::mutex m_mutex;
    /// Guarded by m_mutex.
    VeskPlayLogicData m_data;
};
