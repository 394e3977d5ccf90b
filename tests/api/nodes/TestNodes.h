// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMUINode.h"
#include "api/values/VeskRowsRoles.h"
#include "tests/support/WorkerThread.h"

#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <memory>
#include <utility>
#include <vector>

/// \file
/// Nodes and workers whose handlers a test defines in place, and one-line requests.

/// Milliseconds after which a wait counts as failed.
constexpr int Patience = 20000;

inline CMPath path(const char *text)
{
    return CMPath::fromEncoded(QString::fromUtf8(text));
}

inline TrString text(const char *sourceText)
{
    return TrString("Test", sourceText);
}

/// The response to a request, as its caller sees it. Copies share the response.
class Answer {
public:
    bool isThere() const { return m_data->isFinished(); }
    bool wait() const { return m_data->waitForFinished(Patience); }
    /// Waits and runs this thread's event loop meanwhile.
    bool spin() const
    {
        return spinUntil([this] { return m_data->isFinished(); }, Patience);
    }
    QVariant value() const { return m_data->value(); }
    QVariantList list() const { return value().toList(); }
    VeskRowsRoles rows() const { return VeskRowsRoles(VeskHash(value().toHash())); }
    QString errorName() const { return m_data->error().name(); }
    QString errorText() const { return m_data->error().message().toString(); }
    bool isError() const { return !m_data->error().isEmpty(); }
    const std::shared_ptr<CMReplyData<QVariant>> &data() const { return m_data; }
    /// The reply for the request. To be called once.
    CMReply<QVariant> reply() const { return CMReply<QVariant>(m_data); }

private:
    std::shared_ptr<CMReplyData<QVariant>> m_data = std::make_shared<CMReplyData<QVariant>>();
};

inline Answer getData(CMAbstractWorker &worker, const CMPath &to, const QStringList &roles)
{
    const Answer answer;
    worker.request(CMGetDataRequest(to, roles, answer.reply()));
    return answer;
}

inline Answer getRows(
    CMAbstractWorker &worker, const CMPath &to, const QStringList &roles, int first, int last)
{
    const Answer answer;
    worker.request(CMGetRowsRequest(to, roles, first, last, answer.reply()));
    return answer;
}

inline Answer setData(
    CMAbstractWorker &worker, const CMPath &to, const QString &role, const QVariant &value)
{
    const Answer answer;
    worker.request(CMSetDataRequest(to, role, value, answer.reply()));
    return answer;
}

inline Answer matchRow(
    CMAbstractWorker &worker, const CMPath &to, const QString &role, const QVariant &value)
{
    const Answer answer;
    worker.request(CMMatchRowRequest(to, role, value, answer.reply()));
    return answer;
}

/// A node whose request handlers are functions of the test.
class ScriptNode : public CMUINode {
public:
    using Handler = std::function<bool(const CMRequest &)>;

    static ScriptNode *create(CMNodes *nodes, const CMPath &path, Handler handler = nullptr)
    {
        auto *node = new ScriptNode(path, std::move(handler));
        node->setNodes(nodes);
        return node;
    }

    using CMNode::setServesBelow;

    bool request(const CMRequest &request) override
    {
        return m_handler ? m_handler(request) : CMUINode::request(request);
    }
    void rowsPathAdd(const CMPath &path) override { added.push_back(path); }
    void rowsPathRemove(const CMPath &path) override { removed.push_back(path); }

    std::vector<CMPath> added;
    std::vector<CMPath> removed;

private:
    ScriptNode(const CMPath &path, Handler handler)
        : CMUINode(path)
        , m_handler(std::move(handler))
    {
    }

    const Handler m_handler;
};

/// A worker whose nodes the test creates.
class ScriptWorker : public CMNodesWorker {
public:
    using Build = std::function<void(ScriptWorker &)>;

    explicit ScriptWorker(const QString &name, const Build &build = nullptr)
        : CMNodesWorker(QVariantHash(), name)
    {
        if (build)
            build(*this);
    }

    using CMWorker::stop;
};

/// A ScriptWorker on a thread of its own.
class ScriptThread : public WorkerThread {
public:
    explicit ScriptThread(const QString &name, const ScriptWorker::Build &build = nullptr)
        : WorkerThread([name, build] { return new ScriptWorker(name, build); })
    {
    }

    ScriptWorker &worker() const { return *static_cast<ScriptWorker *>(object()); }
};

/// Blocks the threads that wait() until it is opened, which happens once.
class Gate {
public:
    void open() { m_promise.set_value(); }
    bool wait() const
    {
        return m_future.wait_for(std::chrono::milliseconds(Patience)) == std::future_status::ready;
    }

private:
    std::promise<void> m_promise;
    std::shared_future<void> m_future = m_promise.get_future().share();
};
