#include "host/player/PlayLogic.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "host/player/MediaPlayer.h"
#include "host/player/StreamReceivers.h"

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

/// The roles of the first row of an answer to a request for all of them.
VeskRoles rolesOfRow(const VeskRowsRoles &rows)
{
    VeskRoles roles;
    const QVariantList values = rows.rows().value(0).toList();
    for (int i = 0; i < values.size() && i < VeskRoles::all().size(); ++i) {
        if (!values.at(i).isNull())
            roles.insert(VeskRoles::all().at(i), values.at(i));
    }
    return roles;
}

bool isPlayable(const VeskRoles &roles)
{
    return roles.type() == VeskRolesType::Audio()
        && !roles.mediaData().activeResource().uri().isEmpty();
}

} // namespace

PlayLogic::PlayLogic(MediaPlayer *player, QObject *parent)
    : QObject(parent)
    , m_player(player)
{
    veskConnect(player, &MediaPlayer::audibleChanged, this, &PlayLogic::onAudible);
    veskConnect(player, &MediaPlayer::ended, this, &PlayLogic::onEnded);
    veskConnect(player, &MediaPlayer::gaveUp, this, &PlayLogic::onGaveUp);
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

void PlayLogic::play(const CMPath &screen, int row, Started started)
{
    const int request = ++m_request;
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(this, [this, request, reply, started = std::move(started)] {
        if (request != m_request) {
            return started(playerError(QT_TRANSLATE_NOOP(
                               "Player", "Something else was played in the meantime.")),
                {});
        }
        takeRow(*reply, started);
    });
    CMRoot()->request(
        CMGetRowsRequest(screen, VeskRoles::all(), row, row, CMReply<QVariant>(reply)));
}

void PlayLogic::takeRow(const CMReplyData<QVariant> &reply, const Started &started)
{
    if (!reply.error().isEmpty())
        return started(reply.error(), {});
    const VeskRowsRoles rows(reply.value().toHash());
    const VeskRoles roles = rolesOfRow(rows);
    if (rows.rows().isEmpty())
        return started(playerError(QT_TRANSLATE_NOOP("Player", "There is no such row.")), {});
    if (!isPlayable(roles)) {
        return started(
            playerError(QT_TRANSLATE_NOOP("Player", "There is nothing to play in this row.")), {});
    }
    end();
    m_playId = newPlayId();
    m_roles = roles;
    m_error = TrString();
    m_heard = false;
    m_streamTitle.clear();
    m_bitRate = roles.mediaData().activeResource().bitRate();
    VESK_INFO("playing " << m_roles.title());
    setState(VeskPlayLogicState::transitioning);
    started({}, m_playId);
    prePlay(m_playId);
}

/// Lets the one whose row it is find the stream, when the row wants that.
void PlayLogic::prePlay(const VeskHash &playId)
{
    const CMPath path = m_roles.mediaData().metaData().prePlayPath();
    if (path.isEmpty())
        return startPlayer();
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(this, [this, playId, reply] {
        if (playId != m_playId || m_state != VeskPlayLogicState::transitioning)
            return;
        if (!reply->error().isEmpty())
            return fail(reply->error().message());
        m_roles = VeskRoles(reply->value().toHash());
        if (!isPlayable(m_roles)) {
            return fail(
                playerText(QT_TRANSLATE_NOOP("Player", "There is nothing to play in this row.")));
        }
        startPlayer();
    });
    CMRoot()->request(
        CMSetDataRequest(path, VeskRoles::PrePlay(), m_roles.toHash(), CMReply<QVariant>(reply)));
}

void PlayLogic::startPlayer()
{
    const VeskMediaData media = m_roles.mediaData();
    const VeskResource resource = media.activeResource();
    m_bitRate = resource.bitRate();
    publish();
    m_player->play(
        {QUrl::fromEncoded(resource.uri().toUtf8(), QUrl::TolerantMode), media.metaData().live()});
}

CMError PlayLogic::pause()
{
    if (m_state == VeskPlayLogicState::stopped
        || (m_state == VeskPlayLogicState::transitioning && !m_heard))
        return playerError(QT_TRANSLATE_NOOP("Player", "Nothing is playing."));
    if (m_state == VeskPlayLogicState::paused)
        return {};
    m_player->pause();
    // A pause in the middle of a reconnect, or right after a resume.
    if (m_posted != VeskPlayLogicState::playing && m_posted != VeskPlayLogicState::paused)
        post(VeskPlayLogicState::playing);
    setState(VeskPlayLogicState::paused);
    return {};
}

CMError PlayLogic::resume()
{
    if (m_state == VeskPlayLogicState::stopped)
        return playerError(QT_TRANSLATE_NOOP("Player", "Nothing is paused."));
    if (m_state != VeskPlayLogicState::paused)
        return {};
    setState(VeskPlayLogicState::transitioning);
    m_player->resume();
    return {};
}

CMError PlayLogic::stop()
{
    ++m_request;
    end();
    m_error = TrString();
    publish();
    return {};
}

void PlayLogic::end()
{
    m_player->stop();
    if (m_state != VeskPlayLogicState::stopped)
        setState(VeskPlayLogicState::stopped);
    m_streamTitle.clear();
}

void PlayLogic::onAudible(bool audible)
{
    if (audible)
        setState(VeskPlayLogicState::playing);
    else if (m_state == VeskPlayLogicState::playing)
        setState(VeskPlayLogicState::transitioning);
}

void PlayLogic::onEnded()
{
    end();
}

void PlayLogic::onGaveUp(const TrString &problem)
{
    fail(problem);
}

void PlayLogic::fail(const TrString &problem)
{
    VESK_WARN("cannot play " << m_roles.title() << ": " << problem);
    m_player->stop();
    m_error = problem;
    m_streamTitle.clear();
    m_state = VeskPlayLogicState::stopped;
    post(VeskPlayLogicState::stopped,
        problem.sourceText().isEmpty() ? QStringLiteral("error") : problem.toString());
    publish();
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
    data.setTrackRoles(m_roles);
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
    return m_roles.mediaData().metaData().playbackStateChangePath();
}

void PlayLogic::forgetPosts()
{
    m_posted = VeskPlayLogicState::stopped;
}

void PlayLogic::postAgain()
{
    // To one who knows of no playing, a pause or a stop would end a time that never began.
    if (m_state == VeskPlayLogicState::playing && m_posted != VeskPlayLogicState::playing)
        post(VeskPlayLogicState::playing);
}

void PlayLogic::publish()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_data.setState(m_state);
        m_data.setPlayId(m_playId);
        m_data.setError(m_error.toString());
        m_data.setTrackRoles(m_roles);
    }
    Q_EMIT changed();
}

VeskPlayLogicData PlayLogic::currentData() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_data;
}

QVariantHash PlayLogic::state() const
{
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
        {QStringLiteral("error"), m_error.toString()}};
}
