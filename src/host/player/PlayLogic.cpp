// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PlayLogic.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"
#include "host/player/ChosenStreams.h"
#include "host/player/MediaPlayer.h"
#include "host/player/PlayerText.h"

#include <QUuid>

VESK_LOGGER("Player")

namespace {

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

/// A row that is played as it is says by its kind alone that it is a broadcast.
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
    veskConnect(player, &MediaPlayer::ended, this, &PlayLogic::end);
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

void PlayLogic::takeRow(const CMError &error, const VeskRoles &row, const Started &started)
{
    if (!error.isEmpty())
        return started(error, {});
    if (!isPlayable(row)) {
        return started(
            playerError(QT_TRANSLATE_NOOP("Player", "There is nothing to play in this row.")), {});
    }
    end();
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
    if (const TrString refusal = refusalOf(row); !refusal.isEmpty())
        return fail(refusal);
    m_trials.begin(row, m_chosen ? m_chosen->streamOf(StreamChoice::itemOf(row)) : CMPath());
}

/// Why a row that is listed cannot be played, in its own words where it has some; empty when
/// nothing speaks against it.
TrString PlayLogic::refusalOf(const VeskRoles &row) const
{
    const QString uri = row.mediaData().activeResource().uri();
    const TrString refusal = m_excuses.wordsOf(QUrl::fromEncoded(uri.toUtf8()));
    return refusal.isEmpty() || row.description().isEmpty() ? refusal : row.description();
}

/// In place of the stream that was tried before.
void PlayLogic::tryStream(const VeskRoles &stream)
{
    if (m_started)
        m_player->stop();
    m_started = false;
    m_playerProblem = TrString();
    m_stream = stream;
    publish();
    prePlay(stream);
}

/// Runs the step before playing that \a stream names, in which its plug-in finds the stream's
/// address.
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
            fail(refusal); // what knows of no stream knows of no others
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
    m_player->play({QUrl::fromEncoded(resource.uri().toUtf8(), QUrl::TolerantMode),
        isStation(m_roles), false, m_excuses});
}

CMError PlayLogic::pause()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_state == VeskPlayLogicState::stopped
        || (m_state == VeskPlayLogicState::transitioning && !m_heard))
        return playerError(QT_TRANSLATE_NOOP("Player", "Nothing is playing."));
    if (m_state == VeskPlayLogicState::paused)
        return {};
    // A pause in the middle of a reconnect, or right after a resume.
    if (m_posted != VeskPlayLogicState::playing && m_posted != VeskPlayLogicState::paused)
        post(VeskPlayLogicState::playing);
    // Before the player knows, which then says that there is nothing to hear.
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
    end();
    m_error = TrString();
    publish();
    return {};
}

void PlayLogic::end()
{
    m_trials.end();
    ++m_step;
    m_player->stop();
    m_started = false;
    m_playerProblem = TrString();
    if (m_state != VeskPlayLogicState::stopped)
        setState(VeskPlayLogicState::stopped);
    m_streamTitle.clear();
}

void PlayLogic::onAudible(bool audible)
{
    // Said late, of what is paused or stopped by now.
    if (m_state != VeskPlayLogicState::transitioning && m_state != VeskPlayLogicState::playing)
        return;
    m_trials.noteAudible(audible);
    if (!audible)
        return setState(VeskPlayLogicState::transitioning);
    m_playerProblem = TrString();
    const bool isFirst = !m_heard;
    setState(VeskPlayLogicState::playing);
    if (isFirst && m_chosen && StreamChoice::isStream(m_row))
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
    // What is told in the end is about the stream that was to be played.
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

/// The stream is not at fault: a plug-in that measures listening gets the end of what had begun,
/// and no error.
void PlayLogic::onOutputFailed(const TrString &problem)
{
    stopWith(problem);
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
}

void PlayLogic::setState(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    m_heard |= state == VeskPlayLogicState::playing;
    VESK_INFO(VeskPlayLogicState::toString(state));
    // The beginning and the end of a break in what was heard, not the wait before the first sound
    // or after a pause.
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
    // A pause or a stop would end a "playing" that the new process never got.
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

/// What is being done about a fault.
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
    return {{QStringLiteral("state"), int(m_state)},
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
