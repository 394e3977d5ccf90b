// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMNodesWorker.h"
#include "modules/stations/StationsFolder.h"
#include "modules/stations/StationsImport.h"
#include "modules/stations/StationsList.h"
#include "modules/stations/StationsRows.h"
#include "modules/stations/StationsScreens.h"

/// The listener's own stations: the tree of nodes under "Stations:". Create and delete it on the
/// thread that runs its requests, which it never blocks for longer than reading a file takes.
///
/// \a config has the store in which the list is kept (see VeskStore), and the "folder" with files
/// of the listener's, if there is one.
class StationsWorker : public CMNodesWorker {
    Q_OBJECT

public:
    explicit StationsWorker(const QVariantHash &config);
    ~StationsWorker() override;

    StationsImport *import() { return &m_import; }

private:
    using Build = StationsScreen (StationsScreens::*)(const StationsScreens::Params &) const;

    void createTree();
    StationsScreenNode *createScreen(const char *base, Build build);
    StationsNode *createNode(const char *base);
    CMContainerNode *createSearches();
    /// An action of a row: "do/" and its name.
    void act(const CMSetDataRequest &request);
    /// The player reports what it does with an address that is on trial.
    void handleStateChange(const CMSetDataRequest &request);
    VeskRoles exported(const CMPath &path) const;
    void announce(const CMPath &path);

    StationsList m_list;
    StationsFolder m_folder;
    const StationsRows m_rows;
    StationsScreens m_screens;
    StationsImport m_import;
};

/// The plug-in's one entry, by the name that hosts look for. \a config points to a QVariantHash.
/// The caller owns the worker.
extern "C" Q_DECL_EXPORT void *worker_create(const char *name, void *config);
