// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMUINode.h"
#include "api/nodes/CMValueItem.h"
#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/VeskValuePaths.h"

#include <QThread>
#include <QUuid>

#include <cstdlib>
#include <stdexcept>

// A plug-in that reads settings in each possible way: one once, one with each request, and one that
// it subscribes to.
namespace {

VeskValue settingAt(const CMPath &path)
{
    return VeskValue(VeskHash(CMRoot()->getValue(path).toHash()));
}

/// Answers with the result of a function, after the milliseconds in the parameter "ms".
class SayingNode : public CMUINode {
public:
    using Say = std::function<QVariant()>;

    SayingNode(const CMPath &path, Say say)
        : CMUINode(path)
        , m_say(std::move(say))
    {
    }

    bool getDataRequest(const CMGetDataRequest &request) override
    {
        QThread::msleep(request.path().param(QStringLiteral("ms")).toULong());
        request.reply().setValue(QVariantList {m_say()});
        return true;
    }

    bool setDataRequest(const CMSetDataRequest &request) override
    {
        QThread::msleep(request.path().param(QStringLiteral("ms")).toULong());
        request.reply().setValue(m_say());
        return true;
    }

private:
    const Say m_say;
};

class ReadingWorker : public CMNodesWorker {
public:
    explicit ReadingWorker(const QVariantHash &config)
        : CMNodesWorker(config, QStringLiteral("Reading"))
        , m_kept(settingAt(VeskTuneInPartnerIdPath()).string_())
        , m_followed(settingAt(VeskTuneInEnabledFixItWizardPath()).bool_())
    {
        if (m_kept == QLatin1String("fatal"))
            std::abort();
        if (m_kept == QLatin1String("wrong"))
            throw std::runtime_error("a wrong id");
        connect(new CMValueItem(VeskTuneInEnabledFixItWizardPath(), this), &CMValueItem::changed,
            this, [this](const VeskValue &value) { m_followed = value.bool_(); });
        auto *root = CMListRowsNode::create(nodes(), addPrefix(QString()));
        root->setTitle(TrString("Reading", "Reading"));
        // A list that contains the setting, and so forwards its changes.
        root->rowsAppend(VeskTuneInPartnerIdPath());
        root->rowsAppend(VeskTuneInEnabledFixItWizardPath());
        add("instance", [this] { return m_instance; });
        add("kept", [this] { return m_kept; });
        add("followed", [this] { return m_followed; });
        add("fresh", [] { return settingAt(VeskTuneInBrowseIndexUrlPath()).string_(); });
    }

private:
    void add(const char *path, SayingNode::Say say)
    {
        (new SayingNode(addPrefix(QString::fromLatin1(path)), std::move(say)))->setNodes(nodes());
    }

    const QString m_instance = QUuid::createUuid().toString();
    const QString m_kept;
    bool m_followed;
};

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *config)
{
    return new ReadingWorker(*static_cast<const QVariantHash *>(config));
}
