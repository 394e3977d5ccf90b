// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMValueItem.h"

#include "api/values/VeskRoles.h"

CMValueItem::CMValueItem(const CMPath &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
{
    qRegisterMetaType<VeskValue>("VeskValue");
    CMRootWorker *root = CMRoot();
    if (!root)
        return;
    m_subscription = root->subscribe(m_path, this, [this](const CMChange &) { read(); });
    // Through the event loop, so that the creator can connect to changed() first.
    QMetaObject::invokeMethod(this, &CMValueItem::read, Qt::QueuedConnection);
}

CMValueItem::~CMValueItem() = default;

void CMValueItem::read()
{
    CMRootWorker *root = CMRoot();
    if (m_reading || !root) {
        m_readAgain = true;
        return;
    }
    m_reading = true;
    m_readAgain = false;
    const auto answer = std::make_shared<CMReplyData<QVariant>>();
    root->request(CMGetDataRequest(m_path, {VeskRoles::Value()}, CMReply<QVariant>(answer)));
    answer->whenFinished(this, [this, answer] {
        m_reading = false;
        if (m_readAgain)
            QMetaObject::invokeMethod(this, &CMValueItem::read, Qt::QueuedConnection);
        take(answer->error().isEmpty() ? answer->value().toList().value(0) : QVariant());
    });
}

void CMValueItem::take(const QVariant &answered)
{
    const VeskValue value(VeskHash(answered.toHash()));
    if (value.isEmpty() || value == m_last)
        return;
    m_last = value;
    Q_EMIT changed(value);
}
