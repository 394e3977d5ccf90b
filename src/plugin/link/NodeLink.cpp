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

bool onlyReads(const CMRequest &request)
{
    return request.kind() == CMRequest::GetRows || request.kind() == CMRequest::GetData;
}

QString unreadable(MessageKind kind)
{
    return QStringLiteral("a message of kind %1 that cannot be read").arg(static_cast<int>(kind));
}

/// Sends what \a answer holds, or that it is too long.
void sendAnswer(Channel::Sender &sender, quint64 id, const CMReplyData<QVariant> &answer)
{
    AnswerMessage message;
    message.id = id;
    message.error = answer.error();
    if (message.error.isEmpty())
        message.value = answer.value();
    message.fault = CMUnexplainedFault(answer);
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
    , m_asked(std::make_shared<Asked>())
    , m_unanswered(std::make_shared<Unanswered>())
{
}

NodeLink::~NodeLink()
{
    m_channel.reset(); // from here on nothing comes
}

void NodeLink::start(Handler handler)
{
    m_handler = std::move(handler);
    m_channel->start({[this](const QByteArray &payload) { return take(payload); },
        [this](const QString &reason) { end(reason); }});
}

std::unique_ptr<LoopReceiver> NodeLink::receiveOnThisLoop()
{
    return LoopReceiver::create(m_channel.get());
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
        const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
        open = m_unanswered->open;
        id = ++m_unanswered->lastId;
        if (open) {
            if (m_unanswered->requests.empty())
                m_unanswered->lastSign = Clock::now();
            m_unanswered->requests.emplace(id, request);
        }
    }
    if (!open) {
        request.reply().setError(m_handler.interrupted());
        return;
    }
    if (m_handler.asked)
        m_handler.asked();
    const QByteArray payload = encode(RequestMessage::of(id, request));
    if (payload.size() <= Channel::MaxPayload) {
        // When this fails the link is ending, which answers the request.
        m_sender->send(payload);
        takeBackWhenFinished(id, request);
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
        m_unanswered->requests.erase(id);
    }
    request.reply().setError(tooLongError());
}

/// What changes something is not taken back: it may have been done already.
void NodeLink::takeBackWhenFinished(quint64 id, const CMRequest &request)
{
    CMReplyData<QVariant> *const answer = request.reply().data();
    if (!answer || !onlyReads(request))
        return;
    answer->whenFinished([id, sender = m_sender, weak = std::weak_ptr<Unanswered>(m_unanswered)] {
        const auto unanswered = weak.lock();
        if (!unanswered)
            return;
        {
            const std::lock_guard<std::mutex> lock(unanswered->mutex);
            if (unanswered->requests.count(id) == 0)
                return; // this is the answer
        }
        CancelMessage message;
        message.id = id;
        sender->send(encode(message));
    });
}

void NodeLink::watch(const CMPath &path, bool on)
{
    send(WatchMessage {path, on});
}

std::chrono::milliseconds NodeLink::silence() const
{
    const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
    if (m_unanswered->requests.empty())
        return std::chrono::milliseconds(0);
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        Clock::now() - m_unanswered->lastSign);
}

std::vector<CMRequest> NodeLink::unanswered() const
{
    std::vector<CMRequest> requests;
    const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
    for (const auto &entry : m_unanswered->requests) {
        const CMReply<QVariant> reply = entry.second.reply();
        if (!reply.isNull() && !reply.isFinished())
            requests.push_back(entry.second);
    }
    return requests;
}

std::vector<CMRequest> NodeLink::takeBack(const std::function<bool(const CMRequest &)> &which)
{
    std::map<quint64, CMRequest> taken; // in the order in which they were asked
    {
        const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
        for (auto &entry : m_unanswered->requests) {
            if (onlyReads(entry.second) && which(entry.second))
                taken.emplace(entry.first, std::exchange(entry.second, CMRequest()));
        }
    }
    std::vector<CMRequest> requests;
    for (const auto &entry : taken) {
        m_sender->send(encode(CancelMessage {entry.first}));
        if (!entry.second.reply().isFinished())
            requests.push_back(entry.second);
    }
    return requests;
}

bool NodeLink::isOwedAnswers() const
{
    const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
    return !m_unanswered->requests.empty();
}

QString NodeLink::take(const QByteArray &payload)
{
    const auto takeAs = [this, &payload](auto message, auto function) {
        if (!message)
            return unreadable(kindOf(payload));
        return (this->*function)(*message);
    };
    switch (kindOf(payload)) {
    case MessageKind::Request:
        return takeAs(decode<RequestMessage>(payload), &NodeLink::takeRequest);
    case MessageKind::Answer:
        return takeAs(decode<AnswerMessage>(payload), &NodeLink::takeAnswer);
    case MessageKind::Cancel:
        return takeAs(decode<CancelMessage>(payload), &NodeLink::takeCancel);
    case MessageKind::Alive: {
        const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
        m_unanswered->lastSign = Clock::now();
        return {};
    }
    case MessageKind::Watch:
        return takeAs(decode<WatchMessage>(payload), &NodeLink::takeWatch);
    case MessageKind::Change:
        if (const auto message = decode<ChangeMessage>(payload)) {
            takeChange(*message);
            return {};
        }
        return unreadable(MessageKind::Change);
    default:
        return m_handler.take(kindOf(payload), payload);
    }
}

QString NodeLink::takeRequest(const RequestMessage &message)
{
    // The answer is sent by the thread that gives it, which may be after this link has gone.
    const auto answer = std::make_shared<CMReplyData<QVariant>>();
    const CMReply<QVariant> reply(answer);
    {
        const std::lock_guard<std::mutex> lock(m_asked->mutex);
        if (m_asked->answers.size() >= MaxRequests)
            return QStringLiteral("more than %1 questions at a time").arg(MaxRequests);
        if (!m_asked->answers.emplace(message.id, answer).second)
            return QStringLiteral("a question with the number of another one");
    }
    // The answer keeps this function, and this function must not keep the answer.
    answer->whenFinished([sender = m_sender, asked = m_asked, id = message.id,
                             weak = std::weak_ptr<CMReplyData<QVariant>>(answer)] {
        {
            const std::lock_guard<std::mutex> lock(asked->mutex);
            asked->answers.erase(id);
        }
        if (const auto given = weak.lock())
            sendAnswer(*sender, id, *given);
    });
    // This may be the thread that answers, and blocks for it.
    CMRoot()->post(message.request(reply));
    return {};
}

QString NodeLink::takeCancel(const CancelMessage &message)
{
    std::shared_ptr<CMReplyData<QVariant>> answer;
    {
        const std::lock_guard<std::mutex> lock(m_asked->mutex);
        const auto found = m_asked->answers.find(message.id);
        if (found != m_asked->answers.end())
            answer = found->second.lock();
    }
    if (!answer)
        return {}; // its answer is on its way
    if (m_handler.cancel)
        m_handler.cancel(answer);
    answer->setError(CMCancelledError());
    return {};
}

QString NodeLink::takeAnswer(const AnswerMessage &message)
{
    CMReply<QVariant> reply;
    {
        const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
        const auto found = m_unanswered->requests.find(message.id);
        if (found == m_unanswered->requests.end())
            return QStringLiteral("an answer that nobody asked for");
        reply = found->second.reply();
        m_unanswered->requests.erase(found);
        m_unanswered->lastSign = Clock::now();
    }
    if (!reply.isNull() && !message.fault.isEmpty())
        reply.data()->setServiceFault([fault = message.fault] { return fault; });
    if (message.error.isEmpty())
        reply.setValue(message.value);
    else
        reply.setError(message.error);
    return {};
}

QString NodeLink::takeWatch(const WatchMessage &message)
{
    if (!message.on) {
        m_watched.erase(message.path);
        return {};
    }
    if (message.path.isEmpty() || m_watched.count(message.path) != 0)
        return {};
    if (m_watched.size() >= MaxWatched)
        return QStringLiteral("more than %1 watched paths").arg(MaxWatched);
    // Directly: a change is told before the answer to the request that made it.
    m_watched.emplace(message.path,
        CMRoot()->subscribeDirectly(message.path, [sender = m_sender](const CMChange &change) {
            sender->send(encode(ChangeMessage {change, false}));
        }));
    return {};
}

void NodeLink::takeChange(const ChangeMessage &message)
{
    if (message.startingWith)
        CMRoot()->notifyChangedStartingWith(message.change);
    else
        CMRoot()->passOnChanged(message.change);
}

void NodeLink::end(const QString &reason)
{
    std::unordered_map<quint64, CMRequest> unanswered;
    {
        const std::lock_guard<std::mutex> lock(m_unanswered->mutex);
        m_unanswered->open = false;
        unanswered.swap(m_unanswered->requests);
    }
    for (const auto &entry : unanswered)
        entry.second.reply().setError(m_handler.interrupted());
    m_handler.ended(reason);
}
