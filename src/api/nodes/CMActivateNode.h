// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMUINode.h"

#include <functional>

/// A row with an action: a set-data request for the role "activate" is passed to the function that
/// setInvoke() bound, which must complete its reply.
class VESK_API CMActivateNode : public CMUINode {
    Q_OBJECT

public:
    static CMActivateNode *create(CMNodes *nodes, const CMPath &path);

    /// Binds activation to \a function of \a receiver, in place of what was bound before.
    template <class Receiver>
    void setInvoke(Receiver *receiver, void (Receiver::*function)(const CMSetDataRequest &),
        Qt::ConnectionType type)
    {
        doSetInvoke([receiver, function, type](CMActivateNode *node) {
            return QObject::connect(node, &CMActivateNode::invoked, receiver, function, type);
        });
    }

    bool setDataRequest(const CMSetDataRequest &request) override;
    QVariant getRoleData(const QString &role, const Params &params) override;

Q_SIGNALS:
    void invoked(const CMSetDataRequest &request);

protected:
    explicit CMActivateNode(const CMPath &path);
    void doSetInvoke(const std::function<QMetaObject::Connection(CMActivateNode *)> &connect);

private:
    QMetaObject::Connection m_connection;
};
