// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMNodesWorker.h"
#include "api/values/VeskMediaData.h"
#include "api/values/VeskPlayLogicData.h"
#include "api/values/VeskValue.h"
#include "modules/tunein/TuneInSettings.h"

#include <QMutex>
#include <QTimer>

class CMListRowsNode;
class CMValueItem;
class PlayLogicInterface;
class TuneInBrowserContextNode;
class TuneInHttpClient;
class TuneInPlayerContextNode;

/// The plug-in's centre: settings, HTTP client, the tree of nodes under "TuneIn:", the state of the
/// network and of playback, and the reports about it. Create, use and delete it on the thread that
/// runs its requests, except where a function says otherwise; deleting it ends that thread's event
/// loop.
///
/// \a config is the host's configuration of this plug-in; only the service id is read from it.
class CMTuneInWorker : public CMNodesWorker {
    Q_OBJECT

public:
    explicit CMTuneInWorker(const QVariantHash &config);
    ~CMTuneInWorker() override;

    /// Never null. Any thread.
    TuneInHttpClient *httpClient() const { return m_httpClient; }
    /// The last known state of the network. Any thread: the worker's own gets false until the first
    /// state has arrived, others wait for it.
    bool networkStateConnected() const;
    const TuneInSettings &settings() const { return m_settings; }
    /// Media data with only the service id.
    VeskMediaData serviceMediaData() const;

    TuneInPlayerContextNode *playerContextNode() const { return m_playerContextNode; }
    TuneInPlayerContextNode *playerContextShowEpisodeNode() const
    {
        return m_playerContextShowEpisodeNode;
    }
    TuneInBrowserContextNode *browserContextNode() const { return m_browserContextNode; }
    CMListRowsNode *searchesNode() const { return m_searchesNode; }

    /// Tells TuneIn that a stream played, or with an \a error that it failed. \a guideId or \a
    /// streamUrl must not be empty. Blocks for the exchange; the outcome is only logged.
    void sendAutomaticStreamReport(
        const QString &guideId, const QString &streamUrl, const QString &error);
    /// Tells TuneIn for how many seconds the item played before it was \a stopped, else paused.
    /// Blocks for the exchange; the outcome is only logged.
    void sendDurationReport(const QString &guideId, int duration, bool stopped);

private Q_SLOTS:
    void on_networkStateConnectedItem_changed(const VeskValue &newValue);
    void on_listeningDurationTimer_timeout();
    void handleStateChange(const CMSetDataRequest &r);

private:
    void createTree();
    void createSearchNodes();
    void createTestTree();
    CMListRowsNode *createUnreliableStreams();
    void appendRedirect(
        CMListRowsNode *list, const QString &path, const QString &target, const char *title);

    void changeState(VeskPlayLogicState::Enum state);
    void noteStarted();
    void notePaused();
    void noteStopped();
    void decideStreamReport(const VeskPlayLogicData &data);
    bool takeReport(VeskPlayLogicState::Enum state, const QString &error);
    bool hasDurationToReport(qint64 seconds) const;

    // Owned by the node registry.
    TuneInPlayerContextNode *m_playerContextNode = nullptr;
    TuneInPlayerContextNode *m_playerContextShowEpisodeNode = nullptr;
    TuneInBrowserContextNode *m_browserContextNode = nullptr;
    CMListRowsNode *m_searchesNode = nullptr;

    /// Guards m_networkConnected and m_networkStateKnown.
    mutable QRecursiveMutex m_networkMutex;
    /// Fixed after construction.
    TuneInSettings m_settings;
    PlayLogicInterface *m_player;

    // Worker's thread only.
    VeskHash m_lastPlayId;
    bool m_errorReported = false;
    bool m_successReported = false;
    /// Seconds since the Unix epoch at which m_lastPlayId was first seen: TuneIn's listen id.
    qint64 m_playStartTime = 0;

    /// From here to the timer guarded by m_stateMutex. Times are in milliseconds; an interval of
    /// listening runs while m_playingSince is not 0.
    VeskPlayLogicState::Enum m_playState = VeskPlayLogicState::stopped;
    qint64 m_playingSince = 0;
    qint64 m_listenedMs = 0;
    QString m_guideId; ///< not guarded: worker's thread only
    bool m_paused = false;
    QTimer m_listeningDurationTimer;
    QRecursiveMutex m_stateMutex;

    CMValueItem *m_networkStateConnectedItem = nullptr;
    bool m_networkConnected = false;
    bool m_networkStateKnown = false;
    TuneInHttpClient *m_httpClient = nullptr;
};

/// The plug-in's only export. \a config points to a QVariantHash. The caller owns the worker.
extern "C" Q_DECL_EXPORT void *worker_create(const char *name, void *config);
