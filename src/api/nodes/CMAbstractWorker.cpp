// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMAbstractWorker.h"

#include "api/values/VeskRoles.h"
#include "api/values/variants.h"

#include <utility>

namespace {

constexpr unsigned long GetValueMilliseconds = 30000;

}

CMAbstractWorker::~CMAbstractWorker() = default;

void CMAbstractWorker::post(CMRequest request)
{
    this->request(std::move(request));
}

void CMAbstractWorker::connectChange(const CMPath &) { }

void CMAbstractWorker::disconnectChange(const CMPath &) { }

void CMAbstractWorker::languageChanged() { }

QVariant CMAbstractWorker::getValue(const CMPath &path)
{
    const auto answer = std::make_shared<CMReplyData<QVariant>>();
    // The request is a temporary: keeping a copy of its reply here would keep a dropped request
    // from ending with its error.
    request(CMGetDataRequest(path, {VeskRoles::Value()}, CMReply<QVariant>(answer)));
    if (!answer->waitForFinished(GetValueMilliseconds) || !answer->error().isEmpty())
        return QVariant();
    const QVariantList values = veskListIn(answer->value());
    return values.isEmpty() ? QVariant() : values.first();
}
