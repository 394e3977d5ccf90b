// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/NodeLink.h"

#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"

#include <utility>

namespace {

CMError tooLongError()
{
    CMError error(TrString("NodeLink", "The answer is too long."));
    error.insert(CMError::Name(), CMError::TooLongName());
    return error;
}

Result<void, QString> undecodable(MessageKind kind)
{
    return failure(
        QStringLiteral("a message of kind %1 that cannot be read").arg(static_cast<int>(kind)));
}

/// Sends the outcome of \a reply, or that it is too long.
void sendResponse(Channel::Sender &sender, quint64 id, const CMReplyData<QVariant> &reply)
{
    ResponseMessage message;
    message.id = id;
    message.error = reply.error();
    if (message.error.isEmpty())
        message.value = reply.value();
    message.fault = CMUnexplainedFault(reply);
    const QByteArray payload = encode(message);
    if (payload.size() <= Channel::MaxPayload) {
        sender.send(payload);
        return;
    }
    message.value = QVariant();
    message.error = tooLongError();
    sender.send(encode(message));
}

} // namespace

NodeLink::NodeLink(std::unique_ptr<Channel> channel)
    : m_channel(std::move(channel))
    , m_sender(m_channel->sender())
    , m_incoming(std::make_shared<Incoming>())
    , m_outgoing(std::make_shared<Outgoing>())
{
}

NodeLink::~NodeLink()
{
    m_channel.reset(); // no handler runs from here on
}

void NodeLink::start(Handler handler, Channel::Reader reader)
{
    m_handler = std::move(handler);
    m_channel->start({[this](const QByteArray &payload) { return handle(payload); },
                         [this](const QString &reason) { end(reason); }},
        reader);
}

void NodeLink::close()
{
    m_sender->close();
}

void NodeLink::request(const CMRequest &request)
{
    quint64 id = 0;
    bool open = false;
    {
        const VeskMutexLock lock(m_outgoing->mutex);
        open = m_outgoing->open;
        id = ++m_outgoing->lastId;
        if (open) {
            if (m_outgoing->requests.empty())
                m_outgoing->lastSign = Clock::now();
            m_outgoing->requests.emplace(id, request);
        }
    }
    if (!open) {
        request.reply().setError(m_handler.interrupted());
        return;
    }
    if (m_handler.requesting)
        m_handler.requesting();
    const QByteArray payload = encode(RequestMessage::of(id, request));
    if (payload.size() <= Channel::MaxPayload) {
        // When this fails the connection is ending, which completes the request.
        m_sender->send(payload);
        cancelWhenFinished(id, request);
        return;
    }
    {
        const VeskMutexLock lock(m_outgoing->mutex);
        m_outgoing->requests.erase(id);
    }
    request.reply().setError(tooLongError());
}

/// A request that changes something is not cancelled: the change may have been made already.
void NodeLink::cancelWhenFinished(quint64 id, const CMRequest &request)
{
    CMReplyData<QVariant> *const reply = request.reply().data();
    if (!reply || !request.onlyReads())
        return;
    reply->whenFinished([id, sender = m_sender, weak = std::weak_ptr<Outgoing>(m_outgoing)] {
        const auto outgoing = weak.lock();
        if (!outgoing)
            return;
        {
            const VeskMutexLock lock(outgoing->mutex);
            if (outgoing->requests.count(id) == 0)
                return; // it was finished by its response
        }
        sender->send(encode(CancelMessage {id}));
    });
}

void NodeLink::subscribe(const CMPath &path, bool on)
{
    send(SubscribeMessage {path, on});
}

std::chrono::milliseconds NodeLink::silence() const
{
    const VeskMutexLock lock(m_outgoing->mutex);
    if (m_outgoing->requests.empty())
        return std::chrono::milliseconds(0);
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        Clock::now() - m_outgoing->lastSign);
}

std::vector<CMRequest> NodeLink::pending() const
{
    std::vector<CMRequest> requests;
    const VeskMutexLock lock(m_outgoing->mutex);
    for (const auto &entry : m_outgoing->requests) {
        const CMReply<QVariant> reply = entry.second.reply();
        if (!reply.isNull() && !reply.isFinished())
            requests.push_back(entry.second);
    }
    return requests;
}

std::vector<CMRequest> NodeLink::reclaim(const std::function<bool(const CMRequest &)> &which)
{
    std::map<quint64, CMRequest> reclaimed; // in the order in which they were made
    {
        const VeskMutexLock lock(m_outgoing->mutex);
        for (auto &entry : m_outgoing->requests) {
            if (entry.second.onlyReads() && which(entry.second))
                reclaimed.emplace(entry.first, std::exchange(entry.second, CMRequest()));
        }
    }
    std::vector<CMRequest> requests;
    for (const auto &entry : reclaimed) {
        m_sender->send(encode(CancelMessage {entry.first}));
        if (!entry.second.reply().isFinished())
            requests.push_back(entry.second);
    }
    return requests;
}

bool NodeLink::isOwedResponses() const
{
    const VeskMutexLock lock(m_outgoing->mutex);
    return !m_outgoing->requests.empty();
}

Result<void, QString> NodeLink::handle(const QByteArray &payload)
{
    const MessageKind kind = kindOf(payload);
    const auto handleAs = [this, kind](auto message, auto function) {
        return message ? (this->*function)(*message) : undecodable(kind);
    };
    switch (kind) {
    case MessageKind::Request:
        return handleAs(decode<RequestMessage>(payload), &NodeLink::handleRequest);
    case MessageKind::Response:
        return handleAs(decode<ResponseMessage>(payload), &NodeLink::handleResponse);
    case MessageKind::Cancel:
        return handleAs(decode<CancelMessage>(payload), &NodeLink::handleCancel);
    case MessageKind::Subscribe:
        return handleAs(decode<SubscribeMessage>(payload), &NodeLink::handleSubscribe);
    case MessageKind::Change:
        return handleAs(decode<ChangeMessage>(payload), &NodeLink::handleChange);
    case MessageKind::Alive: {
        const VeskMutexLock lock(m_outgoing->mutex);
        m_outgoing->lastSign = Clock::now();
        return {};
    }
    default:
        return m_handler.received(kind, payload);
    }
}

Result<void, QString> NodeLink::handleRequest(const RequestMessage &message)
{
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    const CMReply<QVariant> reply(data);
    {
        const VeskMutexLock lock(m_incoming->mutex);
        if (m_incoming->replies.size() >= MaxRequests)
            return failure(QStringLiteral("more than %1 requests at a time").arg(MaxRequests));
        if (!m_incoming->replies.emplace(message.id, data).second)
            return failure(QStringLiteral("a request with the id of another one"));
    }
    // Runs on the thread that completes the reply, perhaps after this link is gone. The reply owns
    // this function, so the function must not own the reply.
    data->whenFinished([sender = m_sender, incoming = m_incoming, id = message.id,
                           weak = std::weak_ptr<CMReplyData<QVariant>>(data)] {
        {
            const VeskMutexLock lock(incoming->mutex);
            incoming->replies.erase(id);
        }
        if (const auto completed = weak.lock())
            sendResponse(*sender, id, *completed);
    });
    const CMRequest request = message.request(reply);
    if (m_handler.requested && m_handler.requested(request))
        return {};
    // Queued with its worker rather than handled here, which could block the thread that receives.
    CMRoot()->post(request);
    return {};
}

Result<void, QString> NodeLink::handleCancel(const CancelMessage &message)
{
    std::shared_ptr<CMReplyData<QVariant>> reply;
    {
        const VeskMutexLock lock(m_incoming->mutex);
        const auto found = m_incoming->replies.find(message.id);
        if (found != m_incoming->replies.end())
            reply = found->second.lock();
    }
    if (!reply)
        return {}; // the response is on its way
    if (m_handler.cancelled)
        m_handler.cancelled(reply);
    reply->setError(CMCancelledError());
    return {};
}

Result<void, QString> NodeLink::handleResponse(const ResponseMessage &message)
{
    CMReply<QVariant> reply;
    {
        const VeskMutexLock lock(m_outgoing->mutex);
        const auto found = m_outgoing->requests.find(message.id);
        if (found == m_outgoing->requests.end())
            return failure(QStringLiteral("a response without a request"));
        reply = found->second.reply();
        m_outgoing->requests.erase(found);
        m_outgoing->lastSign = Clock::now();
    }
    if (!reply.isNull() && !message.fault.isEmpty())
        reply.data()->setServiceFault([fault = message.fault] { return fault; });
    if (message.error.isEmpty())
        reply.setValue(message.value);
    else
        reply.setError(message.error);
    return {};
}

Result<void, QString> NodeLink::handleSubscribe(const SubscribeMessage &message)
{
    if (!message.on) {
        m_subscriptions.erase(message.path);
        return {};
    }
    if (message.path.isEmpty() || m_subscriptions.count(message.path) != 0)
        return {};
    if (m_subscriptions.size() >= MaxSubscriptions)
        return failure(QStringLiteral("more than %1 subscriptions").arg(MaxSubscriptions));
    // Directly, on the thread that makes the change: so it is sent before the response to the
    // request that made it.
    m_subscriptions.emplace(message.path,
        CMRoot()->subscribeDirectly(message.path, [sender = m_sender](const CMChange &change) {
            sender->send(encode(ChangeMessage {change, false}));
        }));
    return {};
}

Result<void, QString> NodeLink::handleChange(const ChangeMessage &message)
{
    if (message.startingWith)
        CMRoot()->notifyChangedStartingWith(message.change);
    else
        CMRoot()->passOnChanged(message.change);
    return {};
}

void NodeLink::end(const QString &reason)
{
    std::unordered_map<quint64, CMRequest> pending;
    {
        const VeskMutexLock lock(m_outgoing->mutex);
        m_outgoing->open = false;
        pending.swap(m_outgoing->requests);
    }
    for (const auto &entry : pending)
        entry.second.reply().setError(m_handler.interrupted());
    m_handler.ended(reason);
}
