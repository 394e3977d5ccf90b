// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/OutputsScreen.h"

#include "api/nodes/CMNodes.h"
#include "api/values/VeskRoles.h"
#include "host/sound/Outputs.h"

#include <QPointer>

namespace {

const QString OutputParam = QStringLiteral("output");

TrString hostText(const char *text)
{
    return TrString("Host", text);
}

VeskRoles rowOf(const ListedOutput &output, const CMPath &screen)
{
    CMPath path = screen;
    path.addParam(OutputParam, output.spec.text());
    VeskRoles row;
    row.setType(VeskRolesType::Activate());
    row.setTitle(output.name);
    row.setPath(path);
    if (!output.isAvailable) {
        row.setDescription(hostText(QT_TRANSLATE_NOOP("Host", "Not there at the moment")));
        row.insert(VeskRoles::Disabled(), true);
    } else if (output.isCurrent) {
        row.setDescription(hostText(QT_TRANSLATE_NOOP("Host", "In use")));
    }
    return row;
}

} // namespace

OutputsScreen::OutputsScreen(Outputs *outputs, CMNodes *nodes)
    : CMContainerNode(CMPath(QStringLiteral("host"), QStringLiteral("outputs")))
    , m_outputs(outputs)
{
    setTitle(hostText(QT_TRANSLATE_NOOP("Host", "Sound output")));
    setServesBelow(false);
    setNodes(nodes);
    connect(outputs, &Outputs::changed, this, &OutputsScreen::reset);
}

bool OutputsScreen::getRowsRequest(const CMGetRowsRequest &request)
{
    m_outputs->list(
        [node = QPointer<OutputsScreen>(this), request](const QVector<ListedOutput> &outputs) {
            if (!node)
                return;
            QVector<VeskRoles> rows;
            for (const ListedOutput &output : outputs)
                rows.append(rowOf(output, node->path()));
            node->answerRows(request, rows);
        });
    return true;
}

bool OutputsScreen::setDataRequest(const CMSetDataRequest &request)
{
    const QString output = request.path().param(OutputParam);
    if (request.role() != VeskRoles::Activate() || output.isEmpty())
        return false;
    m_outputs->choose(output, [request](const Result<void, TrString> &result) {
        if (result)
            request.reply().setValue({});
        else
            request.reply().setError(CMError(result.error()));
    });
    return true;
}

void OutputsScreen::reset()
{
    if (CMSubscribe *subscribers = subscribe())
        subscribers->changedStartingWith(path(), CMSubscribe::RowsChangeReset(), -1, -1);
}
