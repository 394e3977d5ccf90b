// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/process/Upstream.h"

#include "plugin/link/NodeLink.h"

Upstream::Upstream(NodeLink *link, QObject *parent)
    : CMAbstractWorker(parent)
    , m_link(link)
{
}

void Upstream::request(CMRequest request)
{
    // Counts as a redirect, of which there is a limit: a path that each of the two processes takes
    // for the other's would go back and forth for ever.
    const CMRequest upward = request.redirectedTo(request.path());
    if (upward.kind() != CMRequest::None)
        m_link->request(upward);
}

void Upstream::connectChange(const CMPath &path)
{
    m_link->subscribe(path, true);
}

void Upstream::disconnectChange(const CMPath &path)
{
    m_link->subscribe(path, false);
}
