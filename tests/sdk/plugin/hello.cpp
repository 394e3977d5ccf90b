// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include <api/core/Language.h>
#include <api/nodes/CMListRowsNode.h>
#include <api/nodes/CMNodesWorker.h>

namespace {

/// A service with one screen of one row.
class HelloWorker : public CMNodesWorker {
public:
    HelloWorker()
        : CMNodesWorker({}, QStringLiteral("Hello"))
    {
        CMListRowsNode *root = CMListRowsNode::create(nodes(), addPrefix(QString()));
        VeskRoles row;
        row.setTitle(Language::ntr(QStringLiteral("Hello from elsewhere")));
        root->rowsAppend(row);
    }
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *)
{
    return new HelloWorker;
}
