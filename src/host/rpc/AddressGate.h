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

/// Keeps links from changing anything. To open an address is to read it, but some addresses change
/// or report something when they are read, as the plug-in's descriptor says; and a link on any web
/// page may lead to any address. So clients may open those addresses only where a list has offered
/// them, which means that a user has clicked a row. Main thread.
///
/// An offer on a WebSocket counts for this connection alone, so that a chain of links leads no
/// further than one link. A POST, which no page of another site can send, may open what any client
/// was offered. All rows of a list are offers: the service that offers a row also keeps the data
/// that it changes.
class AddressGate : public QObject {
    Q_OBJECT

public:
    explicit AddressGate(QObject *parent = nullptr);
    ~AddressGate() override;

    /// What the plug-in at \a root declares of its addresses.
    void declare(const CMPath &root, const QVector<ChangingAddresses> &changing);

    /// Whether the client may open \a path; \a peer is null for a POST. Logs a refusal.
    bool mayOpen(const CMPath &path, const MessagePeer *peer) const;
    static JsonRpcError refusal();

    /// A client is sent \a rows, whose values are those of \a roles: it may open their paths, menus
    /// and searches from now on.
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
