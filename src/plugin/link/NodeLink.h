// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "plugin/link/Channel.h"
#include "plugin/link/LoopReceiver.h"
#include "plugin/link/Message.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

class CMSubscription;

/// One end of the connection between the roots of two processes: brings this process's questions to
/// the other one and its answers back, and asks this process's root what the other one wants to
/// know. All calls from any thread, but do not destroy it on its own.
///
/// What one thread sends arrives in that order: a change is known before the answer of whoever made
/// it.
///
/// Whatever the other side sends is checked: an answer that nobody asked for, a message that cannot
/// be read and more than the limits below end the connection.
class NodeLink {
public:
    /// Questions of the other side that are under way at a time.
    static constexpr int MaxRequests = 1024;
    /// Paths that the other side watches.
    static constexpr int MaxWatched = 16 * 1024;

    struct Handler {
        /// Takes a message that is not about questions and changes; says what is wrong with it. On
        /// whichever thread receives, one at a time.
        std::function<QString(MessageKind kind, const QByteArray &payload)> take;
        /// The connection ended, for which \a reason if the other side did not just go; every
        /// question was answered. On the link's thread.
        std::function<void(const QString &reason)> ended;
        /// What questions end with that the other side leaves unanswered.
        std::function<CMError()> interrupted;
        /// The other side takes a question back, whose \a answer is completed right after. May be
        /// null. On whichever thread receives.
        std::function<void(const std::shared_ptr<CMReplyAbstractData> &answer)> cancel;
        /// The other side owes an answer. May be null. On the thread that asks, with each question.
        std::function<void()> asked;
    };

    explicit NodeLink(std::unique_ptr<Channel> channel);
    ~NodeLink();

    void start(Handler handler);
    /// Has the calling thread receive while its event loop waits, until it destroys the receiver,
    /// which must be before this link goes. May be null, which changes nothing.
    std::unique_ptr<LoopReceiver> receiveOnThisLoop();
    /// Ends the connection.
    void close();

    /// Has the other side answer \a request. A question that only reads is taken back when its
    /// reply is completed before the answer is there.
    void request(const CMRequest &request);
    /// The questions that the other side still owes answers to, but for those that are not waited
    /// for any more.
    std::vector<CMRequest> unanswered() const;
    /// Takes those of them back that \a which is true for and that only read, for the caller to
    /// have answered by another one.
    std::vector<CMRequest> takeBack(const std::function<bool(const CMRequest &)> &which);
    /// Has the other side tell of changes at \a path, or not any more.
    void watch(const CMPath &path, bool on);
    /// Sends any message; false when the connection has ended.
    template <class Message>
    bool send(const Message &message)
    {
        return m_sender->send(encode(message));
    }

    /// For how long the other side has owed answers without giving one or another sign of life;
    /// nothing when it owes none.
    std::chrono::milliseconds silence() const;
    bool isOwedAnswers() const;

private:
    using Clock = std::chrono::steady_clock;

    /// Questions of the other side that are under way. The answers outlive the link.
    struct Asked {
        std::mutex mutex;
        /// Guarded by mutex.
        std::unordered_map<quint64, std::weak_ptr<CMReplyData<QVariant>>> answers;
    };
    /// Questions to the other side.
    struct Unanswered {
        std::mutex mutex;
        // Guarded by mutex.
        bool open = true;
        quint64 lastId = 0;
        /// One that was taken back is empty until its answer comes.
        std::unordered_map<quint64, CMRequest> requests;
        Clock::time_point lastSign;
    };

    void takeBackWhenFinished(quint64 id, const CMRequest &request);
    QString take(const QByteArray &payload);
    QString takeRequest(const RequestMessage &message);
    QString takeAnswer(const AnswerMessage &message);
    QString takeCancel(const CancelMessage &message);
    QString takeWatch(const WatchMessage &message);
    static void takeChange(const ChangeMessage &message);
    void end(const QString &reason);

    std::unique_ptr<Channel> m_channel;
    /// The channel's, for its own thread too, which still runs while the channel goes.
    const std::shared_ptr<Channel::Sender> m_sender;
    Handler m_handler;
    const std::shared_ptr<Asked> m_asked;
    const std::shared_ptr<Unanswered> m_unanswered;
    /// What the other side watches; only for whoever receives.
    std::map<CMPath, std::unique_ptr<CMSubscription>> m_watched;
};
