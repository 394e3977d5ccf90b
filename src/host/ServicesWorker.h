#pragma once

#include "api/nodes/CMNodesWorker.h"

class CMListRowsNode;

/// The host's own worker, with the prefix "host": `host:services` is the screen from which clients
/// find what there is, one row per plug-in; `host:` leads there. `host:settings` has one row per
/// setting of the host. Main thread.
class ServicesWorker : public CMNodesWorker {
    Q_OBJECT

public:
    ServicesWorker();

    /// A row that opens the plug-in's root.
    void addService(const CMPath &root);
    /// A row for the value at \a path.
    void addSetting(const CMPath &path);
    /// A row that tells that \a file is no service, and why.
    void addFailed(const QString &file, const QString &reason);

private:
    CMListRowsNode *m_services;
    CMListRowsNode *m_settings;
};
