// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMUINode.h"
#include "api/store/VeskStore.h"

#include <cstdlib>

// A plug-in that keeps what it is told to, under the key "key" of the path.
namespace {

class KeepingNode : public CMUINode {
public:
    KeepingNode(const CMPath &path, VeskStore *store)
        : CMUINode(path)
        , m_store(store)
    {
        setServesBelow(true);
    }

    /// Answers with the value as text, null for none.
    bool getDataRequest(const CMGetDataRequest &request) override
    {
        const QString key = request.path().param(QStringLiteral("key"));
        const QVariant value = m_store->contains(key)
            ? QVariant(QString::fromUtf8(m_store->value(key)))
            : QVariant();
        request.reply().setValue(QVariantList {value});
        return true;
    }

    /// Answers once the value is kept; at "crash" after the write was only sent.
    bool setDataRequest(const CMSetDataRequest &request) override
    {
        const QString foreign = request.path().param(QStringLiteral("foreign"));
        if (!foreign.isEmpty()) {
            CMRoot()->request(CMSetDataRequest(CMPath::fromEncoded(foreign), VeskRoles::Value(),
                QVariantHash {{QStringLiteral("stolen"), QByteArray("1")}}, request.reply()));
            return true;
        }
        const QString key = request.path().param(QStringLiteral("key"));
        m_store->write({{key, request.value().toString().toUtf8()}},
            [reply = request.reply()](const CMError &error) {
                if (error.isEmpty())
                    reply.setValue(true);
                else
                    reply.setError(error);
            });
        if (request.path().hasParam(QStringLiteral("crash")))
            std::abort();
        return true;
    }

private:
    VeskStore *const m_store;
};

class KeepingWorker : public CMNodesWorker {
public:
    explicit KeepingWorker(const QVariantHash &config)
        : CMNodesWorker(config, QStringLiteral("Keeping"))
        , m_store(config, this)
    {
        CMListRowsNode::create(nodes(), addPrefix(QString()))
            ->setTitle(TrString("Keeping", "Keeping"));
        (new KeepingNode(addPrefix(QStringLiteral("kept")), &m_store))->setNodes(nodes());
    }

private:
    VeskStore m_store;
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    return new KeepingWorker(*static_cast<const QVariantHash *>(config));
}
