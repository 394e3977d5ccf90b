// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "base/Result.h"
#include "plugin/link/Channel.h"
#include "plugin/link/Message.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

class CMSubscription;

/// One end of the connection between the roots of two processes: sends this process's requests to
/// the other one and completes their replies with the responses, and passes the other one's
/// requests to this process's root. All calls from any thread; it is destroyed on the thread that
/// called start().
///
/// What one thread sends arrives in that order: a change is known before the response to the
/// request that made it.
///
/// Whatever the other side sends is checked: a response without a request, a message that cannot be
/// decoded and more than the limits below end the connection.
class NodeLink {
public:
    /// The other side's requests that are in progress at a time.
    static constexpr int MaxRequests = 1024;
    /// Paths that the other side is subscribed to.
    static constexpr int MaxSubscriptions = 16 * 1024;

    struct Handler {
        /// Handles a message that is not about requests, subscriptions and changes; a failure says
        /// what is wrong with it. One call at a time, on the thread that receives.
        std::function<Result<void, QString>(MessageKind kind, const QByteArray &payload)> received;
        /// The connection ended, and every request was completed. \a reason is empty when the other
        /// side closed it. On the channel's thread.
        std::function<void(const QString &reason)> ended;
        /// The error of requests that the other side leaves without a response.
        std::function<CMError()> interrupted;
        /// The other side cancels a request, whose \a reply is completed right after. May be null.
        /// On the thread that receives.
        std::function<void(const std::shared_ptr<CMReplyAbstractData> &reply)> cancelled;
        /// Whether the other side's \a request was taken here and so does not go to this process's
        /// root. May be null. On the thread that receives; it returns soon.
        std::function<bool(const CMRequest &request)> requested;
        /// A request is about to be sent. May be null. On the thread that makes the request.
        std::function<void()> requesting;
    };

    explicit NodeLink(std::unique_ptr<Channel> channel);
    ~NodeLink();

    void start(Handler handler, Channel::Reader reader = Channel::Reader::OwnThread);
    /// Ends the connection.
    void close();

    /// Sends \a request to the other side. One that only reads is cancelled there when its reply is
    /// completed before the response has come.
    void request(const CMRequest &request);
    /// The requests without a response, but for those whose replies were completed otherwise.
    std::vector<CMRequest> pending() const;
    /// Cancels those of them that only read and for which \a which returns true, and returns them,
    /// for the caller to send elsewhere.
    std::vector<CMRequest> reclaim(const std::function<bool(const CMRequest &)> &which);
    /// Subscribes to changes at \a path on the other side, or unsubscribes.
    void subscribe(const CMPath &path, bool on);
    /// Sends any message; false when the connection has ended.
    template <class Message>
    bool send(const Message &message)
    {
        return m_sender->send(encode(message));
    }

    /// For how long the other side has owed responses without sending one or another sign of life;
    /// zero when it owes none.
    std::chrono::milliseconds silence() const;
    bool isOwedResponses() const;

private:
    using Clock = std::chrono::steady_clock;

    /// The other side's requests that are in progress. Their replies may outlive the link.
    struct Incoming {
        VeskMutex mutex;
        std::unordered_map<quint64, std::weak_ptr<CMReplyData<QVariant>>> replies VESK_GUARDED_BY(
            mutex);
    };
    /// Requests to the other side that it owes responses to.
    struct Outgoing {
        VeskMutex mutex;
        bool open VESK_GUARDED_BY(mutex) = true;
        quint64 lastId VESK_GUARDED_BY(mutex) = 0;
        /// A reclaimed request is null until its response comes.
        std::unordered_map<quint64, CMRequest> requests VESK_GUARDED_BY(mutex);
        Clock::time_point lastSign VESK_GUARDED_BY(mutex);
    };

    void cancelWhenFinished(quint64 id, const CMRequest &request);
    Result<void, QString> handle(const QByteArray &payload);
    Result<void, QString> handleRequest(const RequestMessage &message);
    Result<void, QString> handleResponse(const ResponseMessage &message);
    Result<void, QString> handleCancel(const CancelMessage &message);
    Result<void, QString> handleSubscribe(const SubscribeMessage &message);
    Result<void, QString> handleChange(const ChangeMessage &message);
    void end(const QString &reason);

    std::unique_ptr<Channel> m_channel;
    /// The channel's; used by its thread as well, while the channel is being destroyed.
    const std::shared_ptr<Channel::Sender> m_sender;
    Handler m_handler;
    const std::shared_ptr<Incoming> m_incoming;
    const std::shared_ptr<Outgoing> m_outgoing;
    /// The other side's subscriptions. Touched only while receiving, which the channel does on one
    /// thread at a time.
    std::map<CMPath, std::unique_ptr<CMSubscription>> m_subscriptions;
};
