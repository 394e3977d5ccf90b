// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRequest.h"
#include "api/nodes/CMRootWorker.h"
#include "host/rpc/JsonRpcDispatcher.h"
#include "host/rpc/ScreenSnapshots.h"

#include <functional>
#include <map>
#include <memory>

class AddressGate;
class ServiceFaults;

/// The methods by which clients browse: getRows, getData, setData, subscribe, unsubscribe. Each
/// becomes a request to the root worker. Main thread. docs/rpc.md describes them for clients.
class RpcMethods : public QObject {
    Q_OBJECT

public:
    /// Most paths that one client may be subscribed to.
    static constexpr int MaxSubscriptions = 256;

    /// Called with each icon that is sent to clients.
    using IconSeen = std::function<void(const QString &icon)>;

    explicit RpcMethods(JsonRpcDispatcher *dispatcher, QObject *parent = nullptr);
    ~RpcMethods() override;

    void setIconSeen(IconSeen seen) { m_iconSeen = std::move(seen); }
    /// Which addresses clients may open; without one, all.
    void setGate(AddressGate *gate) { m_gate = gate; }

    /// A value has changed on which the answers of services depend: drops the snapshots of screens.
    void forgetScreens() { m_screens.forgetAll(); }

    /// How faults of services are put into words; without it, clients do not learn of them.
    void setServiceFaults(const ServiceFaults *faults) { m_faults = faults; }

    /// \a error as it is sent to clients.
    static JsonRpcError toRpcError(const CMError &error);

private:
    using Subscriptions = std::map<CMPath, std::unique_ptr<CMSubscription>>;
    using MakeRequest = std::function<CMRequest(const CMReply<QVariant> &)>;
    using MakeResult = std::function<QVariant(const QVariant &)>;
    using Range = ScreenSnapshots::Range;

    void getRows(const JsonRpcCallPtr &call);
    void getData(const JsonRpcCallPtr &call);
    void setData(const JsonRpcCallPtr &call);
    void subscribe(const JsonRpcCallPtr &call);
    void unsubscribe(const JsonRpcCallPtr &call);

    /// The error of a request for \a path, with the \a fault of its service, if there is one.
    JsonRpcError explained(
        const CMError &error, const CMPath &path, const VeskServiceFault &fault) const;
    void ask(const JsonRpcCallPtr &call, const MakeRequest &makeRequest, MakeResult makeResult);
    /// Whether the client may not open \a path; the call has failed then.
    bool refuses(const JsonRpcCallPtr &call, const CMPath &path) const;
    Subscriptions &subscriptionsOf(MessagePeer *peer);
    QVariantHash rowsResult(const VeskRowsRoles &answer, int iconRole) const;
    QVariant dataResult(const QVariant &value, int iconRole) const;
    void seeIcon(const QVariant &icon) const;

    IconSeen m_iconSeen;
    AddressGate *m_gate = nullptr;
    const ServiceFaults *m_faults = nullptr;
    std::map<MessagePeer *, Subscriptions> m_subscriptions;
    ScreenSnapshots m_screens;
};
