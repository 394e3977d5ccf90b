// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "host/rpc/JsonRpcDispatcher.h"
#include "host/rpc/OfferedPaths.h"
#include "plugin/supervision/PluginDescriptor.h"

#include <QObject>
#include <QStringList>

#include <map>

/// Keeps links from changing anything. Opening an address is a question to its plug-in, but some
/// addresses change or report something when they are asked for, as the plug-in's descriptor says;
/// and a link on whatever web page leads to whichever address it likes. So clients open those only
/// where a list offered them: what a listener clicked. Main thread.
///
/// What was offered on a WebSocket counts for this connection alone, so that no chain of links
/// leads where one link does not; a POST, which no other page can send, may open what any client
/// was offered. A list's offer counts whatever its service answered with: the one that offers the
/// row keeps what the row changes.
class AddressGate : public QObject {
    Q_OBJECT

public:
    explicit AddressGate(QObject *parent = nullptr);
    ~AddressGate() override;

    /// What the plug-in at \a root says of its addresses.
    void declare(const CMPath &root, const QVector<ChangingAddresses> &changing);

    /// Whether the client may open \a path; \a peer is null for one without a lasting connection.
    /// Logs a refusal.
    bool mayOpen(const CMPath &path, const MessagePeer *peer) const;
    static JsonRpcError refusal();

    /// A client is answered with \a rows, whose values are those of \a roles: it may open their
    /// paths, menus and searches from now on.
    void offerRows(const QStringList &roles, const QVariantList &rows, MessagePeer *peer);
    /// The same of one row or screen, whose own path the client knew before.
    void offerData(const QStringList &roles, const QVariantList &values, MessagePeer *peer);

private:
    struct Declaration {
        CMPath root;
        QVector<ChangingAddresses> changing;
    };

    bool isChanging(const CMPath &path) const;
    void offer(const CMPath &path, MessagePeer *peer);
    void offerValue(const QString &role, const QVariant &value, MessagePeer *peer);

    QVector<Declaration> m_declared;
    OfferedPaths m_toAnyone;
    std::map<const MessagePeer *, OfferedPaths> m_toPeers;
};
