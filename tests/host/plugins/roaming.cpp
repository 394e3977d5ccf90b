// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMUINode.h"

#include <QUuid>

#include <functional>
#include <memory>
#include <vector>

// A plug-in that answers at "player:roaming" too, keeps requests unanswered, and counts those that
// are cancelled.
namespace {

class FunctionNode : public CMUINode {
public:
    using Handle = std::function<void(const CMRequest &)>;

    FunctionNode(const CMPath &path, Handle handle)
        : CMUINode(path)
        , m_handle(std::move(handle))
    {
    }

    bool getDataRequest(const CMGetDataRequest &request) override { return handle(request); }
    bool matchRowRequest(const CMMatchRowRequest &request) override { return handle(request); }
    bool setDataRequest(const CMSetDataRequest &request) override { return handle(request); }

private:
    bool handle(const CMRequest &request)
    {
        m_handle(request);
        return true;
    }

    const Handle m_handle;
};

class RoamingWorker : public CMNodesWorker {
public:
    explicit RoamingWorker(const QVariantHash &config)
        : CMNodesWorker(config, QStringLiteral("Roaming"))
    {
        CMListRowsNode::create(nodes(), addPrefix(QString()));
        add("instance", [this](const CMRequest &request) { answer(request, m_instance); });
        add("wait", [this](const CMRequest &request) {
            m_waiting.push_back(request);
            request.whenCancelled(
                this, [this, request] { m_cancelled += request.isCancelled() ? 1 : 100; });
        });
        add("waiting", [this](const CMRequest &request) {
            answer(request, static_cast<int>(m_waiting.size()));
        });
        add("cancelled", [this](const CMRequest &request) { answer(request, m_cancelled); });
        add("answer", [this](const CMRequest &request) {
            for (const CMRequest &waiting : m_waiting)
                answer(waiting, QStringLiteral("late"));
            m_waiting.clear();
            answer(request, 1);
        });
        add("add", [this](const CMRequest &request) {
            roam(CMPath::fromEncoded(request.path().param(QStringLiteral("path"))));
            answer(request, 1);
        });
        add("remove", [this](const CMRequest &request) {
            m_roaming.clear();
            answer(request, 1);
        });
        add("change", [this](const CMRequest &request) {
            CMSubscribe().changed(CMPath::fromEncoded(request.path().param(QStringLiteral("path"))),
                CMSubscribe::ValueChanged(), -1, -1);
            answer(request, 1);
        });
        roam(CMPath(QStringLiteral("player"), QStringLiteral("roaming")));
    }

private:
    static void answer(const CMRequest &request, const QVariant &value)
    {
        request.reply().setValue(QVariantList {value});
    }

    void add(const char *base, FunctionNode::Handle handle)
    {
        (new FunctionNode(addPrefix(QString::fromLatin1(base)), std::move(handle)))
            ->setNodes(nodes());
    }

    void roam(const CMPath &path)
    {
        auto node = std::make_unique<FunctionNode>(
            path, [this](const CMRequest &request) { answer(request, m_instance); });
        node->setNodes(nodes());
        m_roaming.push_back(std::move(node));
    }

    const QString m_instance = QUuid::createUuid().toString();
    std::vector<CMRequest> m_waiting;
    int m_cancelled = 0;
    std::vector<std::unique_ptr<FunctionNode>> m_roaming;
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    return new RoamingWorker(*static_cast<const QVariantHash *>(config));
}
