#pragma once

#include "api/nodes/CMNodesWorker.h"

class CMListRowsNode;

/// The host's own worker, with the prefix "host": `host:services` is the screen from which clients
/// find what there is, one row per plug-in. `host:` leads there. Main thread.
class ServicesWorker : public CMNodesWorker {
    Q_OBJECT

public:
    ServicesWorker();

    /// A row that opens the plug-in's root.
    void addService(const CMPath &root);
    /// A row that tells that \a file is no service, and why.
    void addFailed(const QString &file, const QString &reason);

private:
    CMListRowsNode *m_services;
};
