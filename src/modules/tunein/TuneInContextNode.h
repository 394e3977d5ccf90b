// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMActivateNode.h"
#include "api/nodes/CMListRowsNode.h"

class CMTuneInWorker;
class TuneInSettings;
class VeskUrl;

/// The entry of a context menu that adds an item to TuneIn's favorites or removes it. Reading its
/// title asks TuneIn whether the item is a favorite; activating the entry then does what the title
/// said. The path's parameters name the item. Worker's thread only, which every exchange blocks.
class TuneInAddRemovePresetsNode : public CMActivateNode {
    Q_OBJECT

public:
    static TuneInAddRemovePresetsNode *create(CMTuneInWorker *worker, const CMPath &path);
    ~TuneInAddRemovePresetsNode() override;

    /// Whether the station or show \a id is a favorite of this device's account. False when the
    /// exchange fails.
    bool isPreset(const QString &id);
    QVariant getRoleData(const QString &role, const Params &params) override;

public Q_SLOTS:
    void on_node_invoke(const CMSetDataRequest &request);

private:
    TuneInAddRemovePresetsNode(CMTuneInWorker *worker, const CMPath &path);

    VeskUrl presetUrl(const QString &id) const;
    void announceChange(const QString &guideId);

    CMTuneInWorker *m_tiWorker;
    const TuneInSettings *m_settings;
    /// "add" or "remove", as the last title said; empty before the first.
    QString m_command;
};

/// The player's context menu: favorites, the stream choice with \a addTuneBrowse, and the problem
/// report if the settings enable it. Its rows get the parameters that it is opened with.
class TuneInPlayerContextNode : public CMListRowsNode {
public:
    static TuneInPlayerContextNode *create(
        CMTuneInWorker *tiWorker, const CMPath &path, bool addTuneBrowse);
    ~TuneInPlayerContextNode() override;

private:
    TuneInPlayerContextNode(CMTuneInWorker *worker, const CMPath &path, bool addTuneBrowse);

    CMTuneInWorker *m_tiWorker;
    const TuneInSettings *m_settings;
};

/// The context menu of a row in the browser: favorites.
class TuneInBrowserContextNode : public CMListRowsNode {
public:
    static TuneInBrowserContextNode *create(CMTuneInWorker *tiWorker, const CMPath &path);
    ~TuneInBrowserContextNode() override;

private:
    TuneInBrowserContextNode(CMTuneInWorker *worker, const CMPath &path);

    CMTuneInWorker *m_tiWorker;
    const TuneInSettings *m_settings;
};
