#include "worker/link/NodeLink.h"

#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"

namespace {

CMError tooLongError()
{
    return CMError(TrString("NodeLink", "The answer is too long."));
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
    , m_asked(std::make_shared<std::atomic<int>>(0))
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
        const std::lock_guard<std::mutex> lock(m_mutex);
        open = m_open;
        id = ++m_lastId;
        if (open) {
            if (m_unanswered.empty())
                m_lastAnswer = Clock::now();
            m_unanswered.emplace(id, request.reply());
        }
    }
    if (!open) {
        request.reply().setError(m_handler.interrupted());
        return;
    }
    const QByteArray payload = encode(RequestMessage::of(id, request));
    if (payload.size() <= Channel::MaxPayload) {
        // When this fails the link is ending, which answers the request.
        m_sender->send(payload);
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_unanswered.erase(id);
    }
    request.reply().setError(tooLongError());
}

void NodeLink::watch(const CMPath &path, bool on)
{
    send(WatchMessage {path, on});
}

std::chrono::milliseconds NodeLink::silence() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_unanswered.empty())
        return std::chrono::milliseconds(0);
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_lastAnswer);
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
    if (++*m_asked > MaxRequests)
        return QStringLiteral("more than %1 questions at a time").arg(MaxRequests);
    // The answer is sent by whoever gives it, which may be after this link has gone.
    const auto answer = std::make_shared<CMReplyData<QVariant>>();
    const CMReply<QVariant> reply(answer);
    // The answer keeps this function, and this function must not keep the answer.
    answer->whenFinished([sender = m_sender, asked = m_asked, id = message.id,
                             weak = std::weak_ptr<CMReplyData<QVariant>>(answer)] {
        --*asked;
        if (const auto given = weak.lock())
            sendAnswer(*sender, id, *given);
    });
    // This may be the thread of whoever answers, who takes his time.
    CMRoot()->post(message.request(reply));
    return {};
}

QString NodeLink::takeAnswer(const AnswerMessage &message)
{
    CMReply<QVariant> reply;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_unanswered.find(message.id);
        if (found == m_unanswered.end())
            return QStringLiteral("an answer that nobody asked for");
        reply = std::move(found->second);
        m_unanswered.erase(found);
        m_lastAnswer = Clock::now();
    }
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
    std::unordered_map<quint64, CMReply<QVariant>> unanswered;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_open = false;
        unanswered.swap(m_unanswered);
    }
    for (const auto &entry : unanswered)
        entry.second.setError(m_handler.interrupted());
    m_handler.ended(reason);
}
