// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMNodesWorker.h"
#include "api/values/VeskHash.h"
#include "modules/radiobrowser/RadioBrowserClient.h"
#include "modules/radiobrowser/RadioBrowserDns.h"
#include "modules/radiobrowser/RadioBrowserFavorites.h"

#include <memory>

/// Radio Browser, the community's open directory of radio stations
/// (https://www.radio-browser.info): the tree of nodes under "RadioBrowser:", and the count of what
/// is listened to; and favorites, where the host keeps a store for them. Create and delete it on
/// the thread that runs its requests, which it never blocks.
///
/// The directory's servers are looked up, unless \a config has a "server", or the host the setting
/// settings:radiobrowser/server: the address of the one to use. Both are read once.
class RadioBrowserWorker : public CMNodesWorker {
    Q_OBJECT

public:
    explicit RadioBrowserWorker(const QVariantHash &config,
        RadioBrowserServers::LookUp lookUp = &lookUpRadioBrowserServers,
        RadioBrowserServers::Now now = &RadioBrowserServers::Clock::now);
    ~RadioBrowserWorker() override;

    static CMPath serverSettingPath();

private:
    void createTree();
    void createMenu(const CMPath &path, const VeskMediaData &media);
    void useConfiguredServer();
    /// The player reports what it does with a station.
    void handleStateChange(const CMSetDataRequest &request);

    std::unique_ptr<RadioBrowserClient> m_client;
    RadioBrowserFavorites m_favorites;
    VeskHash m_countedPlay; ///< the play whose click was counted last
};

/// The plug-in's one entry. \a config points to a QVariantHash. The caller owns the worker.
extern "C" Q_DECL_EXPORT void *worker_create(const char *name, void *config);
