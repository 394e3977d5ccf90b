// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/store/VeskStore.h"

#include "api/core/ThreadCheck.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskRoles.h"

VeskStore::VeskStore(const QVariantHash &config, QObject *parent)
    : QObject(parent)
{
    const QVariantHash store = config.value(QStringLiteral("store")).toHash();
    m_path = CMPath::fromEncoded(store.value(QStringLiteral("path")).toString());
    const QVariantHash values = store.value(QStringLiteral("values")).toHash();
    for (auto it = values.constBegin(); it != values.constEnd(); ++it)
        m_values.insert(it.key(), it.value().toByteArray());
}

void VeskStore::write(const Changes &changes, Done done)
{
    VESK_ASSERT_OWN_THREAD();
    QVariantHash sent;
    for (auto it = changes.constBegin(); it != changes.constEnd(); ++it)
        sent.insert(it.key(), it->isNull() ? QVariant() : QVariant(*it));
    const auto answer = std::make_shared<CMReplyData<QVariant>>();
    // Before it is sent, so that even an answer that is there at once comes through the event loop.
    answer->whenFinished(this, [this, changes, answer, done = std::move(done)] {
        const CMError error = answer->error();
        for (auto it = changes.constBegin(); error.isEmpty() && it != changes.constEnd(); ++it) {
            if (it->isNull())
                m_values.remove(it.key());
            else
                m_values.insert(it.key(), *it);
        }
        done(error);
    });
    CMRoot()->request(
        CMSetDataRequest(m_path, VeskRoles::Value(), sent, CMReply<QVariant>(answer)));
}
