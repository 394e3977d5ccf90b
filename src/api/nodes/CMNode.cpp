// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMNode.h"

#include "api/core/ThreadCheck.h"
#include "api/nodes/CMNodes.h"

CMNode::CMNode(const CMPath &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
{
}

CMNode::~CMNode()
{
    if (m_nodes)
        m_nodes->remove(this);
}

void CMNode::setNodes(CMNodes *nodes)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_ASSERT(nodes && !m_nodes);
    m_nodes = nodes;
    nodes->add(this);
}

CMSubscribe *CMNode::subscribe() const
{
    return m_nodes ? m_nodes->subscribe() : nullptr;
}

void CMNode::ask(const CMRequest &request) const
{
    if (m_nodes)
        m_nodes->request(request);
    else
        request.reply().setError(CMNoNodeError());
}

QMutex *CMNode::mutex()
{
    return &m_mutex;
}

bool CMNode::request(const CMRequest &request)
{
    VESK_ASSERT_OWN_THREAD();
    return CMCallHandler(*this, request);
}

bool CMNode::getDataRequest(const CMGetDataRequest &)
{
    return false;
}

bool CMNode::getRowsRequest(const CMGetRowsRequest &)
{
    return false;
}

bool CMNode::matchRowRequest(const CMMatchRowRequest &)
{
    return false;
}

bool CMNode::setDataRequest(const CMSetDataRequest &)
{
    return false;
}

void CMNode::rowsPathAdd(const CMPath &) { }

void CMNode::rowsPathRemove(const CMPath &) { }
