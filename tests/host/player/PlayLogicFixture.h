// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Language.h"
#include "api/nodes/CMActivateNode.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "host/player/MediaPlayer.h"
#include "host/player/PlayLogic.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

inline constexpr auto Stopped = VeskPlayLogicState::stopped;
inline constexpr auto Transitioning = VeskPlayLogicState::transitioning;
inline constexpr auto Playing = VeskPlayLogicState::playing;
inline constexpr auto Paused = VeskPlayLogicState::paused;

/// A player that the test drives. Like the real one, it reports silence from within pause(), and
/// nothing from stop().
class FakePlayer : public MediaPlayer {
public:
    FakePlayer()
    {
        connect(this, &MediaPlayer::audibleChanged, this, [this](bool now) { audible = now; });
    }
    void play(const StreamSource &source) override
    {
        calls.append(QStringLiteral("play ") + source.url.toString()
            + (source.live ? QStringLiteral(" live") : QString()));
        start = std::chrono::duration_cast<std::chrono::milliseconds>(source.start.position);
    }
    void pause() override
    {
        calls.append(QStringLiteral("pause"));
        if (audible)
            Q_EMIT audibleChanged(false);
    }
    void resume() override { calls.append(QStringLiteral("resume")); }
    void stop() override { audible = false; }
    void networkIsBack() override { }
    void seek(std::chrono::milliseconds position) override
    {
        calls.append(QStringLiteral("seek %1").arg(position.count()));
    }
    PlayPlace place() const override { return where; }

    PlayPlace where;
    std::chrono::milliseconds start {0}; ///< where the last source was to begin
    QStringList calls;
    bool audible = false;
};

/// Responds to a pre-play request with the roles it got, their address replaced; or with `error`
/// when that is set. While `hold` is set, the test responds with answer().
class PrePlayNode : public CMNode {
public:
    using CMNode::CMNode;

    bool setDataRequest(const CMSetDataRequest &request) override
    {
        EXPECT_EQ(request.role(), VeskRoles::PrePlay());
        held.append(request);
        if (!hold)
            answer();
        return true;
    }
    void answer()
    {
        const CMSetDataRequest request = held.takeFirst();
        request.replyData()->setServiceFault([fault = fault] { return fault; });
        if (!error.isEmpty())
            return request.reply().setError(error);
        VeskRoles roles(request.value().toHash());
        VeskMediaData media = roles.mediaData();
        VeskResource resource = media.activeResource();
        resource.setUri(text("http://stream/after"));
        VeskList<VeskResource> resources;
        resources.append(resource);
        media.setResources(resources);
        roles.setMediaData(media);
        roles.setPath(CMPath::fromEncoded(text("Test:after")));
        request.reply().setValue(roles.toHash());
    }

    bool hold = false;
    CMError error;
    VeskServiceFault fault;
    QList<CMSetDataRequest> held;
};

/// Records the playback states that are posted to it.
class StateNode : public CMNode {
public:
    using CMNode::CMNode;

    bool setDataRequest(const CMSetDataRequest &request) override
    {
        EXPECT_EQ(request.role(), VeskRoles::Activate());
        posts.append(VeskPlayLogicData(request.value().toHash()));
        request.reply().setValue({});
        return true;
    }

    QList<VeskPlayLogicData> posts;
};

/// A screen "Test:list": row 0 is a station with a pre-play step, 1 a file without one, 2 a folder,
/// 3 audio without an address, 4 an unavailable station, whose address is a spoken excuse.
class PlayLogicTest : public testing::Test {
protected:
    PlayLogicTest()
        : worker({}, text("Test"))
        , logic(&player)
    {
        prePlay = new PrePlayNode(worker.addPrefix(text("prePlay")));
        prePlay->setNodes(worker.nodes());
        states = new StateNode(worker.addPrefix(text("states")));
        states->setNodes(worker.nodes());
        CMListRowsNode *list
            = CMListRowsNode::create(worker.nodes(), worker.addPrefix(text("list")));
        list->rowsAppend(row("Station", "http://stream/before", true));
        list->rowsAppend(row("File", "http://stream/file", false));
        VeskRoles folder;
        folder.setType(VeskRolesType::Container());
        folder.setTitle(Language::ntr(text("Folder")));
        list->rowsAppend(folder);
        list->rowsAppend(row("Nothing", "", false));
        list->rowsAppend(row("Station", "http://e/Sorry.enUS.mp3", true));
        SpokenExcuses excuses;
        excuses.add(text("/sorry.*mp3"), Language::ntr(text("Sorry.")));
        logic.setExcuses(excuses);
        QObject::connect(&logic, &PlayLogic::changed, [this] { ++changes; });
    }

    VeskRoles row(const char *title, const char *uri, bool station)
    {
        VeskMetaData meta;
        meta.setLive(station);
        meta.setPlaybackStateChangePath(worker.addPrefix(text("states")));
        meta.setContentPlayContextPath(worker.addPrefix(text("menu?guideId=s1")));
        if (station)
            meta.setPrePlayPath(worker.addPrefix(text("prePlay")));
        VeskResource resource;
        resource.setUri(text(uri));
        resource.setBitRate(128000);
        VeskList<VeskResource> resources;
        resources.append(resource);
        VeskMediaData media;
        media.setMetaData(meta);
        media.setResources(resources);
        VeskRoles roles;
        roles.setTitle(Language::ntr(text(title)));
        roles.setDescription(Language::ntr(text("Words")));
        roles.setIcon(text("http://icon/"));
        roles.setType(VeskRolesType::Audio());
        roles.setPath(worker.addPrefix(text("row")));
        roles.setMediaData(media);
        return roles;
    }

    /// Plays a row and waits for the response; returns its id, or the error's message.
    QString play(int index, const char *list = "list")
    {
        QString answer;
        logic.play({worker.addPrefix(text(list)), index},
            [&answer](const CMError &error, const VeskHash &id) {
                answer = error.isEmpty() ? id[text("id")].toString() : error.message().toString();
            });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        return answer;
    }
    bool waitForPlayer(int calls)
    {
        return spinUntil([&] { return player.calls.size() >= calls; });
    }
    void beginAnew()
    {
        logic.forgetPosts();
        logic.postAgain();
    }
    /// The posted states with their errors, such as "2 0:error", in order. Waits until all have got
    /// a response.
    QString posts()
    {
        EXPECT_TRUE(spinUntil([this] { return !logic.hasUnansweredPosts(); }));
        QStringList list;
        for (const VeskPlayLogicData &post : states->posts) {
            list.append(QString::number(post.state())
                + (post.error().isEmpty() ? QString() : QLatin1Char(':') + post.error()));
        }
        return list.join(QLatin1Char(' '));
    }
    int state() const { return logic.state().value(text("state")).toInt(); }
    QString shown(const char *name) const { return logic.state().value(text(name)).toString(); }

    CMRootWorker root;
    CMNodesWorker worker;
    FakePlayer player;
    PlayLogic logic;
    PrePlayNode *prePlay;
    StateNode *states;
    int changes = 0;
};
