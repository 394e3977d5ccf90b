// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/TrString.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMQueryNode.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskValuePaths.h"

#include <QThread>

// A plug-in with one row in its root, whose title shows the plug-in's arguments.
namespace {

class RootNode : public CMListRowsNode {
public:
    RootNode(const CMPath &path, const QVariant &searches)
        : CMListRowsNode(path)
        , m_searches(searches)
    {
    }

    QVariant getRoleData(const QString &role, const Params &params) override
    {
        return role == VeskRoles::Search() ? m_searches : CMListRowsNode::getRoleData(role, params);
    }

private:
    const QVariant m_searches;
};

class GoodWorker : public CMNodesWorker {
public:
    explicit GoodWorker(const QVariantHash &config)
        : CMNodesWorker(config, QStringLiteral("Good"))
    {
        const CMPath searches = addPrefix(QStringLiteral("searches"));
        const CMPath found = addPrefix(QStringLiteral("found"));
        CMListRowsNode::create(nodes(), searches)
            ->rowsAppend(addPrefix(QStringLiteral("searches/query")));
        CMQueryNode *query
            = CMQueryNode::create(nodes(), addPrefix(QStringLiteral("searches/query")));
        query->setQuery(QStringLiteral("q"));
        query->setQueryPath(found);
        CMListRowsNode *results = CMListRowsNode::create(nodes(), found);
        results->setTitle(TrString("Good", "Found"));
        results->setCopyPathParams(true);
        results->rowsAppend(addPrefix(QStringLiteral("searches")));
        addSong();

        VeskRoles searchRoles;
        searchRoles.setPath(searches);
        auto *root = new RootNode(addPrefix(QString()), searchRoles);
        root->setNodes(nodes());
        root->setTitle(TrString("Good", "Good plug-in"));
        VeskRoles row;
        row.setType(VeskRolesType::Header());
        row.setTitle(TrString("Good", "Made by the plug-in"));
        row.insert(VeskRoles::Id(), config.value(VeskService_Id()));
        row.insert(VeskRoles::Icon(), config.value(VeskService_Id())); // an address in some tests
        row.insert(VeskRoles::Description(), QThread::currentThread()->objectName());
        row.insert(VeskRoles::Value(), CMRoot()->getValue(VeskSystemMemberIdPath()));
        root->rowsAppend(row);
    }

private:
    /// A row of audio that never plays.
    void addSong()
    {
        VeskResource resource;
        resource.setUri(QStringLiteral("http://127.0.0.1:1/"));
        VeskList<VeskResource> resources;
        resources.append(resource);
        VeskMediaData media;
        media.setResources(resources);
        VeskRoles song;
        song.setType(VeskRolesType::Audio());
        song.setTitle(TrString("Good", "A song"));
        song.setMediaData(media);
        CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("songs")))->rowsAppend(song);
    }
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    return new GoodWorker(*static_cast<const QVariantHash *>(config));
}
