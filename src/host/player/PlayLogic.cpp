// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PlayLogic.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"
#include "host/player/ChosenStreams.h"
#include "host/player/EpisodePlaces.h"
#include "host/player/MediaPlayer.h"
#include "host/player/PlayerText.h"

#include <QUuid>

VESK_LOGGER("Player")

namespace {

/// How much of an episode is heard again at most after the machine lost its power.
constexpr std::chrono::seconds KeepPlaceEvery {30};

QVariant seconds(const std::optional<std::chrono::milliseconds> &time)
{
    return time ? QVariant(static_cast<double>(time->count()) / 1000) : QVariant();
}

VeskHash newPlayId()
{
    VeskHash id;
    id.insert(QStringLiteral("id"), QUuid::createUuid().toString(QUuid::WithoutBraces));
    return id;
}

CMError playerError(const char *text)
{
    return CMError(playerText(text));
}

bool isPlayable(const VeskRoles &roles)
{
    return roles.type() == VeskRolesType::Audio()
        && !roles.mediaData().activeResource().uri().isEmpty();
}

/// Whether it is a live station. A row without a pre-play request may show that only by its audio
/// type.
bool isStation(const VeskRoles &roles)
{
    const VeskMetaData meta = roles.mediaData().metaData();
    return meta.live()
        || (meta.prePlayPath().isEmpty()
            && roles.audioType() == VeskRolesAudioType::AudioBroadcast());
}

VeskRoles withoutResources(VeskRoles roles)
{
    VeskMediaData media = roles.mediaData();
    media.setResources({});
    roles.setMediaData(media);
    return roles;
}

} // namespace

PlayLogic::PlayLogic(MediaPlayer *player, QObject *parent)
    : QObject(parent)
    , m_player(player)
{
    veskConnect(player, &MediaPlayer::audibleChanged, this, &PlayLogic::onAudible);
    veskConnect(player, &MediaPlayer::ended, this, &PlayLogic::onEnded);
    veskConnect(player, &MediaPlayer::sought, this, &PlayLogic::onSought);
    veskConnect(player, &MediaPlayer::placeChanged, this, &PlayLogic::publish);
    veskConnect(player, &MediaPlayer::problemChanged, this, &PlayLogic::onProblem);
    veskConnect(player, &MediaPlayer::gaveUp, this, &PlayLogic::onGaveUp);
    veskConnect(player, &MediaPlayer::outputFailed, this, &PlayLogic::onOutputFailed);
    veskConnect(&m_trials, &StreamTrials::next, this, &PlayLogic::tryStream);
    veskConnect(&m_trials, &StreamTrials::exhausted, this, &PlayLogic::onExhausted);
    veskConnect(&m_trials, &StreamTrials::goingOnChanged, this, &PlayLogic::publish);
    connect(player, &MediaPlayer::titleChanged, this, [this](const QString &title) {
        m_streamTitle = title;
        publish();
    });
    m_keepPlace.setInterval(KeepPlaceEvery);
    connect(&m_keepPlace, &QTimer::timeout, this, &PlayLogic::keepPlace);
    connect(player, &MediaPlayer::bitRateChanged, this, [this](int bitRate) {
        if (bitRate == m_bitRate)
            return;
        m_bitRate = bitRate;
        publish();
    });
}

PlayLogic::~PlayLogic() = default;

void PlayLogic::play(const RowAddress &address, Started started)
{
    VESK_ASSERT_OWN_THREAD();
    const int request = ++m_request;
    auto *search = new RowSearch(m_faultWords, this);
    search->start(address,
        [this, search, request, started = std::move(started)](
            const CMError &error, const VeskRoles &row) {
            search->deleteLater();
            if (request != m_request) {
                return started(playerError(QT_TRANSLATE_NOOP(
                                   "Player", "Something else was played in the meantime.")),
                    {});
            }
            takeRow(error, row, started);
        });
}

void PlayLogic::playRow(const VeskRoles &row, const Started &started)
{
    VESK_ASSERT_OWN_THREAD();
    ++m_request;
    takeRow({}, row, started);
}

void PlayLogic::takeRow(const CMError &error, const VeskRoles &row, const Started &started)
{
    if (!error.isEmpty())
        return started(error, {});
    if (!isPlayable(row)) {
        return started(
            playerError(QT_TRANSLATE_NOOP("Player", "There is nothing to play in this row.")), {});
    }
    keepPlace();
    // The sound of the play before may go on; everything else of it ends here.
    m_player->leave();
    conclude();
    m_playId = newPlayId();
    m_row = row;
    m_roles = row;
    m_firstRoles = {};
    m_error = TrString();
    m_failure = TrString();
    m_heard = false;
    m_streamTitle.clear();
    m_bitRate = row.mediaData().activeResource().bitRate();
    VESK_INFO("playing " << m_roles.title());
    setState(VeskPlayLogicState::transitioning);
    started({}, m_playId);
    // From here on the play exists: an error belongs to its state, not to \a started.
    if (const TrString refusal = refusalOf(row); !refusal.isEmpty())
        return fail(refusal);
    m_trials.begin(row, m_chosen ? m_chosen->streamOf(StreamChoice::itemOf(row)) : CMPath());
}

/// Why a row whose address is a spoken message cannot be played: the row's own description if it
/// has one, else the message's text. Empty for any other row.
TrString PlayLogic::refusalOf(const VeskRoles &row) const
{
    const QString uri = row.mediaData().activeResource().uri();
    const TrString refusal = m_excuses.wordsOf(QUrl::fromEncoded(uri.toUtf8()));
    return refusal.isEmpty() || row.description().isEmpty() ? refusal : row.description();
}

/// Plays another of the row's streams instead of the one tried so far.
void PlayLogic::tryStream(const VeskRoles &stream)
{
    if (m_started)
        m_player->leave();
    m_started = false;
    m_playerProblem = TrString();
    m_stream = stream;
    publish();
    prePlay(stream);
}

/// Sends the pre-play request of \a stream, with which the plug-in resolves the address to play.
/// Without one the row is played as it is.
void PlayLogic::prePlay(const VeskRoles &stream)
{
    const int step = ++m_step;
    const CMPath path = stream.mediaData().metaData().prePlayPath();
    if (path.isEmpty())
        return startPlayer(stream);
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(this, [this, step, path, reply] {
        if (step != m_step || m_state != VeskPlayLogicState::transitioning)
            return;
        const VeskRoles roles(reply->value().toHash());
        TrString refusal = reply->error().message();
        const VeskServiceFault fault = CMUnexplainedFault(*reply);
        if (m_faultWords && fault.isBareRefusal())
            refusal = m_faultWords(path, fault);
        if (reply->error().isEmpty() && !isPlayable(roles)) {
            refusal
                = playerText(QT_TRANSLATE_NOOP("Player", "There is nothing to play in this row."));
        }
        if (reply->error().isEmpty() && refusal.isEmpty())
            startPlayer(roles);
        else if (m_firstRoles.isEmpty() && m_stream.path() == m_row.path())
            fail(refusal); // a service without a first stream offers no other ones either
        else
            onGaveUp(refusal);
    });
    CMRoot()->request(
        CMSetDataRequest(path, VeskRoles::PrePlay(), stream.toHash(), CMReply<QVariant>(reply)));
}

void PlayLogic::startPlayer(const VeskRoles &stream)
{
    m_roles = stream;
    if (m_firstRoles.isEmpty())
        m_firstRoles = stream;
    m_started = true;
    m_trials.noteStarted(stream);
    const VeskResource resource = m_roles.mediaData().activeResource();
    m_bitRate = resource.bitRate();
    m_streamTitle.clear();
    publish();
    StreamSource source {QUrl::fromEncoded(resource.uri().toUtf8(), QUrl::TolerantMode),
        isStation(m_roles), false, m_excuses};
    if (source.live || !m_places || m_row.path().isEmpty())
        return m_player->play(source);
    m_places->find(m_row.path(), [this, step = m_step, source](std::chrono::milliseconds place) {
        if (step != m_step || !m_started)
            return;
        StreamSource file = source;
        file.start.position = place;
        m_player->play(file);
        if (m_state == VeskPlayLogicState::paused)
            m_player->pause();
    });
}

PlayPlace PlayLogic::place() const
{
    return m_started && m_state != VeskPlayLogicState::stopped ? m_player->place() : PlayPlace();
}

/// Why no other place can be reached; empty if one can.
CMError PlayLogic::refusalToSeek() const
{
    if (m_state == VeskPlayLogicState::stopped || !m_started)
        return playerError(QT_TRANSLATE_NOOP("Player", "Nothing is playing."));
    const PlayPlace now = place();
    if (isStation(m_roles)) {
        return playerError(QT_TRANSLATE_NOOP("Player",
            "This is live: there is no other place to go to. It can be paused for a while."));
    }
    if (!now.refusal.isEmpty())
        return CMError(now.refusal);
    if (!now.isSeekable) {
        return playerError(
            QT_TRANSLATE_NOOP("Player", "It is not known yet how long this is. Please try again."));
    }
    return {};
}

void PlayLogic::seek(std::chrono::milliseconds position, Sought sought)
{
    VESK_ASSERT_OWN_THREAD();
    if (const CMError error = refusalToSeek(); !error.isEmpty())
        return sought(error);
    finishSeek(
        playerError(QT_TRANSLATE_NOOP("Player", "Another place was asked for in the meantime.")));
    m_sought = std::move(sought);
    m_player->seek(position);
}

void PlayLogic::seekBy(std::chrono::milliseconds offset, const Sought &sought)
{
    const std::chrono::milliseconds now = place().position.value_or(std::chrono::milliseconds(0));
    seek(std::max(now + offset, std::chrono::milliseconds(0)), sought);
}

void PlayLogic::rejoinLive(Sought sought)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_state == VeskPlayLogicState::stopped || !m_started)
        return sought(playerError(QT_TRANSLATE_NOOP("Player", "Nothing is playing.")));
    if (!isStation(m_roles))
        return sought(playerError(QT_TRANSLATE_NOOP("Player", "This is not live.")));
    finishSeek(
        playerError(QT_TRANSLATE_NOOP("Player", "Another place was asked for in the meantime.")));
    m_sought = std::move(sought);
    m_player->rejoinLive();
}

void PlayLogic::finishSeek(const CMError &error)
{
    if (const Sought sought = std::exchange(m_sought, nullptr))
        sought(error);
}

void PlayLogic::onSought(const TrString &problem)
{
    if (problem.isEmpty()) {
        keepPlace();
        Q_EMIT moved();
    }
    finishSeek(problem.isEmpty() ? CMError() : CMError(problem));
}

/// Keeps where the episode is, to go on there another time.
void PlayLogic::keepPlace()
{
    const PlayPlace now = place();
    if (!m_places || !m_heard || !now.position || !now.duration || m_row.path().isEmpty())
        return;
    const bool isWorthIt = *now.position >= EpisodePlaces::Beginning
        && *now.duration - *now.position > EpisodePlaces::End;
    if (isWorthIt)
        m_places->keep(m_row.path(), *now.position);
    else
        m_places->forget(m_row.path());
}

/// Everything was heard: next time from the beginning.
void PlayLogic::onEnded()
{
    if (m_places && !m_row.path().isEmpty())
        m_places->forget(m_row.path());
    m_started = false;
    end();
}

CMError PlayLogic::pause()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_state == VeskPlayLogicState::stopped
        || (m_state == VeskPlayLogicState::transitioning && !m_heard))
        return playerError(QT_TRANSLATE_NOOP("Player", "Nothing is playing."));
    if (m_state == VeskPlayLogicState::paused)
        return {};
    // A pause during a reconnect or right after a resume: "paused" must follow a "playing".
    if (m_posted != VeskPlayLogicState::playing && m_posted != VeskPlayLogicState::paused)
        post(VeskPlayLogicState::playing);
    keepPlace();
    // Before m_player->pause(), whose audibleChanged(false) would otherwise count as a break.
    setState(VeskPlayLogicState::paused);
    m_trials.pause();
    m_playerProblem = TrString();
    m_player->pause();
    return {};
}

CMError PlayLogic::resume()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_state == VeskPlayLogicState::stopped)
        return playerError(QT_TRANSLATE_NOOP("Player", "Nothing is paused."));
    if (m_state != VeskPlayLogicState::paused)
        return {};
    setState(VeskPlayLogicState::transitioning);
    m_trials.resume();
    if (!m_started) {
        // Paused between two streams, while the pre-play request was unfinished or the stream had
        // failed.
        tryStream(m_stream);
        return {};
    }
    m_player->resume();
    return {};
}

CMError PlayLogic::stop()
{
    VESK_ASSERT_OWN_THREAD();
    ++m_request;
    Q_EMIT stopRequested();
    end();
    m_error = TrString();
    publish();
    return {};
}

void PlayLogic::end()
{
    keepPlace();
    m_player->stop();
    conclude();
}

/// All of the play but its sound is over.
void PlayLogic::conclude()
{
    m_trials.end();
    ++m_step;
    m_started = false;
    m_playerProblem = TrString();
    if (m_state != VeskPlayLogicState::stopped)
        setState(VeskPlayLogicState::stopped);
    m_streamTitle.clear();
}

void PlayLogic::onAudible(bool audible)
{
    // A late signal: the play was paused or stopped meanwhile.
    if (m_state != VeskPlayLogicState::transitioning && m_state != VeskPlayLogicState::playing)
        return;
    m_trials.noteAudible(audible);
    if (!audible) {
        keepPlace();
        return setState(VeskPlayLogicState::transitioning);
    }
    m_playerProblem = TrString();
    const bool isFirst = !m_heard;
    setState(VeskPlayLogicState::playing);
    if (isFirst)
        Q_EMIT heard(m_row);
    if (isFirst && m_chosen && StreamChoice::isStream(m_row))
        // The user picked this stream of the station, and it works.
        m_chosen->remember(StreamChoice::itemOf(m_row), m_row.path());
}

void PlayLogic::onProblem(const TrString &problem)
{
    if (m_state != VeskPlayLogicState::transitioning && m_state != VeskPlayLogicState::playing)
        return;
    m_playerProblem = problem;
    if (!problem.isEmpty())
        m_trials.noteTrouble();
    publish();
}

void PlayLogic::onGaveUp(const TrString &problem)
{
    m_started = false;
    m_playerProblem = TrString();
    // If all streams fail, the error of the first one is reported.
    if (m_failure.isEmpty() || m_roles.path() == m_firstRoles.path())
        m_failure = problem;
    if (m_state == VeskPlayLogicState::playing)
        setState(VeskPlayLogicState::transitioning);
    VESK_WARN("a stream of " << m_roles.title() << " cannot be played: " << problem);
    m_trials.noteFailure();
}

void PlayLogic::onExhausted()
{
    if (!m_firstRoles.isEmpty())
        m_roles = m_firstRoles;
    fail(m_failure);
}

/// The stream is not at fault: a plug-in that reports listening times gets the end of the play, but
/// no error.
void PlayLogic::onOutputFailed(const TrString &problem)
{
    stopWith(problem);
    m_outputFailedAt = m_step;
    if (m_posted != VeskPlayLogicState::stopped)
        post(VeskPlayLogicState::stopped);
    publish();
}

void PlayLogic::fail(const TrString &problem)
{
    stopWith(problem);
    post(VeskPlayLogicState::stopped, m_error.toSourceString());
    publish();
}

void PlayLogic::stopWith(const TrString &problem)
{
    keepPlace();
    VESK_WARN("cannot play " << m_roles.title() << ": " << problem);
    m_trials.end();
    ++m_step;
    m_player->stop();
    m_error = problem.isEmpty() ? playerText(QT_TRANSLATE_NOOP("Player", "This cannot be played."))
                                : problem;
    m_playerProblem = TrString();
    m_streamTitle.clear();
    m_state = VeskPlayLogicState::stopped;
    m_started = false;
    m_keepPlace.stop();
    finishSeek(CMError(m_error));
}

void PlayLogic::setState(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    m_heard |= state == VeskPlayLogicState::playing;
    VESK_INFO(VeskPlayLogicState::toString(state));
    if (state == VeskPlayLogicState::stopped)
        finishSeek(playerError(QT_TRANSLATE_NOOP("Player", "Nothing is playing.")));
    // A station has no place to keep.
    if (state == VeskPlayLogicState::playing && m_places && !isStation(m_roles))
        m_keepPlace.start();
    else
        m_keepPlace.stop();
    // "transitioning" is posted only for a break while playing, not for the wait before the first
    // sound or after a pause.
    const bool isNews
        = state != VeskPlayLogicState::transitioning || m_posted == VeskPlayLogicState::playing;
    if (isNews && state != m_posted)
        post(state);
    publish();
}

void PlayLogic::post(State state, const QString &error)
{
    m_posted = state;
    VeskPlayLogicData data;
    data.setState(state);
    data.setPlayId(m_playId);
    data.setError(error);
    // Without a stream from the pre-play request the row's own resources are not what was played.
    data.setTrackRoles(m_firstRoles.isEmpty() ? withoutResources(m_roles) : m_roles);
    const CMPath path = stateChangePath();
    if (path.isEmpty())
        return;
    ++m_unanswered;
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(this, [this, reply] {
        if (--m_unanswered == 0)
            Q_EMIT postsAnswered();
    });
    CMRoot()->request(
        CMSetDataRequest(path, VeskRoles::Activate(), data.toHash(), CMReply<QVariant>(reply)));
}

CMPath PlayLogic::stateChangePath() const
{
    VESK_ASSERT_OWN_THREAD();
    return m_roles.mediaData().metaData().playbackStateChangePath();
}

void PlayLogic::forgetPosts()
{
    VESK_ASSERT_OWN_THREAD();
    m_posted = VeskPlayLogicState::stopped;
}

void PlayLogic::postAgain()
{
    VESK_ASSERT_OWN_THREAD();
    // So that a later "paused" or "stopped" follows a "playing" in the new process too.
    if (m_state == VeskPlayLogicState::playing && m_posted != VeskPlayLogicState::playing)
        post(VeskPlayLogicState::playing);
}

void PlayLogic::publish()
{
    {
        const VeskMutexLock lock(m_mutex);
        m_data.setState(m_state);
        m_data.setPlayId(m_playId);
        m_data.setError(m_error.toString());
        m_data.setTrackRoles(m_roles);
    }
    Q_EMIT changed();
}

VeskPlayLogicData PlayLogic::currentData() const
{
    const VeskMutexLock lock(m_mutex);
    return m_data;
}

/// The text about a fault and the retry, while there is no sound.
TrString PlayLogic::problem() const
{
    const bool isMending = m_state == VeskPlayLogicState::transitioning && m_trials.isGoingOn();
    return isMending ? playerText(QT_TRANSLATE_NOOP("Player", "Trying another stream ..."))
                     : m_playerProblem;
}

QVariantHash PlayLogic::state() const
{
    VESK_ASSERT_OWN_THREAD();
    const VeskMediaData media = m_roles.mediaData();
    const bool shown = m_state != VeskPlayLogicState::stopped || !m_error.isEmpty();
    const VeskRoles roles = shown ? m_roles : VeskRoles();
    const PlayPlace now = place();
    return {{QStringLiteral("position"), seconds(now.position)},
        {QStringLiteral("duration"), seconds(now.duration)},
        {QStringLiteral("seekable"), now.isSeekable},
        {QStringLiteral("behind"), seconds(now.behind)}, {QStringLiteral("state"), int(m_state)},
        {QStringLiteral("playId"), shown ? QVariant(m_playId) : QVariant()},
        {QStringLiteral("title"), roles.title().toString()},
        {QStringLiteral("description"), roles.description().toString()},
        {QStringLiteral("icon"), roles.icon()},
        {QStringLiteral("uri"), roles.mediaData().activeResource().uri()},
        {QStringLiteral("bitrate"), shown ? m_bitRate : 0},
        {QStringLiteral("streamTitle"), m_streamTitle},
        {QStringLiteral("path"), roles.path().toEncoded()},
        {QStringLiteral("contextPath"),
            roles.mediaData().metaData().contentPlayContextPath().toEncoded()},
        {QStringLiteral("error"), m_error.toString()},
        {QStringLiteral("problem"), problem().toString()}};
}
