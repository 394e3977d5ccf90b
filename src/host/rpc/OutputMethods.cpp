// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/OutputMethods.h"

#include "host/rpc/JsonRpcDispatcher.h"
#include "host/rpc/RpcMethods.h"
#include "host/sound/Outputs.h"

namespace {

QVariantHash toJson(const ListedOutput &output)
{
    return {{QStringLiteral("output"), output.spec.text()},
        {QStringLiteral("name"), output.name.toString()},
        {QStringLiteral("current"), output.isCurrent},
        {QStringLiteral("available"), output.isAvailable}};
}

} // namespace

void addOutputMethods(JsonRpcDispatcher *dispatcher, Outputs *outputs)
{
    dispatcher->addMethod(QStringLiteral("outputs.list"), [outputs](const JsonRpcCallPtr &call) {
        outputs->list([call](const QVector<ListedOutput> &all) {
            QVariantList list;
            for (const ListedOutput &each : all)
                list.append(toJson(each));
            call->finish(QVariantHash {{QStringLiteral("outputs"), list}});
        });
    });
    dispatcher->addMethod(QStringLiteral("outputs.choose"), [outputs](const JsonRpcCallPtr &call) {
        const QVariant output = call->params().value(QStringLiteral("output"));
        if (output.userType() != QMetaType::QString) {
            JsonRpcError error;
            error.code = JsonRpcError::InvalidParams;
            error.message = QStringLiteral("\"output\" must be a string");
            return call->fail(error);
        }
        outputs->choose(output.toString(), [call](const Result<void, TrString> &result) {
            if (result)
                call->finish(QVariantHash());
            else
                call->fail(RpcMethods::toRpcError(CMError(result.error())));
        });
    });
}
