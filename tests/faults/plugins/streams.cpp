// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/TrString.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMUINode.h"

// A plug-in that offers whatever stream it is asked for: the screen
// "Streams:play?live=true&url=ADDRESS" has one row, whose stream is at that address.
namespace {

class StreamNode : public CMUINode {
public:
    using CMUINode::CMUINode;

    QVariant getRoleData(const QString &role, const Params &params) override
    {
        if (role == VeskRoles::Type())
            return VeskRolesType::Audio();
        if (role == VeskRoles::MediaData())
            return mediaData(params);
        return CMUINode::getRoleData(role, params);
    }

private:
    static VeskMediaData mediaData(const Params &params)
    {
        VeskResource resource;
        resource.setUri(params.value(QStringLiteral("url")));
        VeskList<VeskResource> resources;
        resources.append(resource);
        VeskMetaData meta;
        meta.setLive(params.value(QStringLiteral("live")) == QLatin1String("true"));
        VeskMediaData media;
        media.setMetaData(meta);
        media.setResources(resources);
        return media;
    }
};

class StreamsWorker : public CMNodesWorker {
public:
    explicit StreamsWorker(const QVariantHash &config)
        : CMNodesWorker(config, QStringLiteral("Streams"))
    {
        const CMPath row = addPrefix(QStringLiteral("play/row"));
        auto *stream = new StreamNode(row);
        stream->setTitle(TrString("Streams", "A stream"));
        stream->setNodes(nodes());
        CMListRowsNode *screen = CMListRowsNode::create(nodes(), addPrefix(QStringLiteral("play")));
        screen->setCopyPathParams(true);
        screen->rowsAppend(row);
    }
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    return new StreamsWorker(*static_cast<const QVariantHash *>(config));
}
