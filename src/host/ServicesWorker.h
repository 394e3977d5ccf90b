// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/nodes/CMNodesWorker.h"

class CMListRowsNode;
struct PluginDescriptor;

/// The host's own worker, with the prefix "host": `host:services` is the screen from which clients
/// find what there is, one row per plug-in; `host:` leads there. `host:settings` has one row per
/// setting that a listener may want to change, under headings; `host:settings/advanced`, to which
/// its last row leads, has the others. Main thread.
class ServicesWorker : public CMNodesWorker {
    Q_OBJECT

public:
    ServicesWorker();

    /// A row that opens the plug-in's root, with what \a descriptor says of its screens.
    void addService(const CMPath &root, const PluginDescriptor &descriptor);
    /// Adds a heading and a row for each of the values to `host:settings`.
    void addSettings(const TrString &heading, const QList<CMPath> &paths);
    /// Adds a row for each of the values to `host:settings/advanced`, and the row that leads there.
    void addAdvancedSettings(const QList<CMPath> &paths);
    /// A row that says that \a file could not be loaded, and why.
    void addFailed(const QString &file, const QString &reason);

private:
    CMListRowsNode *m_services;
    CMListRowsNode *m_settings;
    CMListRowsNode *m_advanced;
};
