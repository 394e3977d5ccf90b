// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/ScreenSnapshots.h"

#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"

#include <QPointer>

#include <algorithm>
#include <atomic>

namespace {

constexpr int SweepMs = 1000;
/// Rows from which the size of all is estimated.
constexpr int Samples = 50;
/// What a value, and an entry of a hash or list, takes at least.
constexpr qint64 ValueBytes = 40;

qint64 sizeOf(const QVariant &value)
{
    qint64 size = ValueBytes;
    switch (value.userType()) {
    case QMetaType::QString:
        return size + value.toString().size() * qint64(sizeof(QChar));
    case QMetaType::QVariantList:
        for (const QVariant &each : *static_cast<const QVariantList *>(value.constData()))
            size += sizeOf(each);
        return size;
    default:
        break;
    }
    if (!value.canConvert<QVariantHash>() || value.canConvert<QString>())
        return size;
    const QVariantHash hash = value.toHash();
    for (auto it = hash.begin(); it != hash.end(); ++it)
        size += ValueBytes + sizeOf(it.value());
    return size;
}

/// The rows of a screen are alike, so the size of all can be estimated from some.
qint64 sizeOfRows(const QVariantList &rows)
{
    const int step = qMax(1, rows.size() / Samples);
    qint64 size = 0;
    int count = 0;
    for (int i = 0; i < rows.size(); i += step, ++count)
        size += sizeOf(rows.at(i));
    return count == 0 ? 0 : size / count * rows.size();
}

VeskRowsRoles rangeOf(const VeskRowsRoles &screen, int first, int last)
{
    VeskRowsRoles range = screen;
    range.setRows(screen.rows().mid(first, last - first + 1));
    return range;
}

ScreenSnapshots::Answer answerOf(const CMReplyData<QVariant> &reply)
{
    return {reply.error(), VeskRowsRoles(reply.value().toHash()), CMUnexplainedFault(reply)};
}

} // namespace

struct ScreenSnapshots::Screen {
    struct Waiter {
        int number = 0;
        Range range;
        Answered answered;
    };

    bool isFor(MessagePeer *client, const Range &range) const
    {
        return peer == client && path == range.path && roles == range.roles;
    }
    /// Whether it may be used for another range.
    bool isGood() const { return !stale && !*changed; }

    MessagePeer *peer = nullptr;
    CMPath path;
    QStringList roles;
    std::unique_ptr<CMSubscription> subscription;
    /// Set on the thread that notifies of a change, before the notification returns.
    const std::shared_ptr<std::atomic<bool>> changed = std::make_shared<std::atomic<bool>>(false);
    std::vector<Waiter> waiters; ///< until the rows are there
    std::shared_ptr<CMReplyData<QVariant>> reply; ///< the same
    bool fetched = false;
    bool stale = false;
    VeskRowsRoles rows;
    qint64 bytes = 0;
    QElapsedTimer used;
};

ScreenSnapshots::ScreenSnapshots(QObject *parent)
    : QObject(parent)
{
    veskConnect(&m_sweep, &QTimer::timeout, this, &ScreenSnapshots::sweep);
}

ScreenSnapshots::~ScreenSnapshots() = default;

int ScreenSnapshots::count() const
{
    return static_cast<int>(m_screens.size());
}

qint64 ScreenSnapshots::bytes() const
{
    qint64 sum = 0;
    for (const ScreenPtr &screen : m_screens)
        sum += screen->bytes;
    return sum;
}

ScreenSnapshots::Abandon ScreenSnapshots::rows(
    MessagePeer *peer, const Range &range, Answered answered)
{
    VESK_ASSERT_OWN_THREAD();
    sweep();
    ScreenPtr screen = range.first == 0 || range.refresh ? nullptr : find(peer, range);
    if (range.last >= MaxRows || (!screen && range.first == range.last))
        return askDirectly(range, answered);
    if (screen && screen->fetched) {
        screen->used.start();
        m_screens.remove(screen);
        m_screens.push_back(screen);
        answered({{}, rangeOf(screen->rows, range.first, range.last)});
        return {};
    }
    if (screen)
        return wait(screen, range, std::move(answered));
    screen = begin(peer, range);
    Abandon abandon = wait(screen, range, std::move(answered));
    fetch(screen);
    return abandon;
}

ScreenSnapshots::Abandon ScreenSnapshots::wait(
    const ScreenPtr &screen, const Range &range, Answered answered)
{
    const int number = ++m_lastWaiter;
    screen->waiters.push_back({number, range, std::move(answered)});
    return [this, number, weak = std::weak_ptr<Screen>(screen), alive = QPointer(this)] {
        const ScreenPtr waited = weak.lock();
        if (alive && waited)
            abandon(waited, number);
    };
}

void ScreenSnapshots::abandon(const ScreenPtr &screen, int waiter)
{
    auto &waiters = screen->waiters;
    waiters.erase(std::remove_if(waiters.begin(), waiters.end(),
                      [waiter](const Screen::Waiter &each) { return each.number == waiter; }),
        waiters.end());
    if (!waiters.empty() || screen->fetched)
        return;
    screen->stale = true;
    if (screen->reply)
        screen->reply->setError(CMCancelledError());
}

ScreenSnapshots::ScreenPtr ScreenSnapshots::find(MessagePeer *peer, const Range &range) const
{
    const auto found = std::find_if(m_screens.begin(), m_screens.end(),
        [&](const ScreenPtr &screen) { return screen->isGood() && screen->isFor(peer, range); });
    return found == m_screens.end() ? nullptr : *found;
}

ScreenSnapshots::ScreenPtr ScreenSnapshots::begin(MessagePeer *peer, const Range &range)
{
    forget([&](const Screen &screen) { return screen.isFor(peer, range); });
    follow(peer);
    const auto screen = std::make_shared<Screen>();
    screen->peer = peer;
    screen->path = range.path;
    screen->roles = range.roles;
    screen->used.start();
    m_screens.push_back(screen);
    m_sweep.start(SweepMs);
    return screen;
}

/// A change from here on means that the rows are not used for another range.
void ScreenSnapshots::fetch(const ScreenPtr &screen)
{
    screen->subscription = CMRoot()->subscribeDirectly(
        screen->path, [changed = screen->changed](const CMChange &) { *changed = true; });
    const std::weak_ptr<Screen> weak = screen;
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    screen->reply = reply;
    reply->whenFinished(this, [this, weak, reply] {
        if (const ScreenPtr fetched = weak.lock())
            take(fetched, answerOf(*reply));
    });
    CMRoot()->request(
        CMGetRowsRequest(screen->path, screen->roles, 0, MaxRows - 1, CMReply<QVariant>(reply)));
}

void ScreenSnapshots::take(const ScreenPtr &screen, const Answer &answer)
{
    const CMError &error = answer.error;
    const VeskRowsRoles &rows = answer.rows;
    screen->fetched = true;
    screen->reply.reset();
    const std::vector<Screen::Waiter> waiters = std::move(screen->waiters);
    int asked = 0;
    for (const Screen::Waiter &waiter : waiters)
        asked = qMax(asked, waiter.range.last + 1);
    // Rows that were all sent are fetched again the next time.
    if (error.isEmpty() && rows.rows().size() > asked)
        keep(screen, rows);
    else
        screen->stale = true;
    sweep();
    for (const Screen::Waiter &waiter : waiters) {
        if (error.name() == CMError::TooLongName())
            askDirectly(waiter.range, waiter.answered);
        else if (!error.isEmpty())
            waiter.answered(answer);
        else
            waiter.answered(
                {{}, rangeOf(rows, waiter.range.first, waiter.range.last), answer.fault});
    }
}

void ScreenSnapshots::keep(const ScreenPtr &screen, const VeskRowsRoles &rows)
{
    if (!screen->isGood())
        return;
    screen->rows = rows;
    screen->bytes = sizeOfRows(rows.rows());
    screen->used.start();
    makeSpaceBeside(screen);
}

ScreenSnapshots::Abandon ScreenSnapshots::askDirectly(const Range &range, const Answered &answered)
{
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(this, [reply, answered] { answered(answerOf(*reply)); });
    CMRoot()->request(CMGetRowsRequest(
        range.path, range.roles, range.first, range.last, CMReply<QVariant>(reply)));
    return [weak = std::weak_ptr<CMReplyData<QVariant>>(reply)] {
        if (const auto unfinished = weak.lock())
            unfinished->setError(CMCancelledError());
    };
}

void ScreenSnapshots::forgetAll()
{
    VESK_ASSERT_OWN_THREAD();
    forget([](const Screen &) { return true; });
}

void ScreenSnapshots::forgetService(const QString &prefix)
{
    VESK_ASSERT_OWN_THREAD();
    forget([&prefix](const Screen &screen) { return screen.path.prefix() == prefix; });
}

void ScreenSnapshots::forget(const std::function<bool(const Screen &)> &which)
{
    m_screens.remove_if([&which](const ScreenPtr &screen) {
        screen->stale |= which(*screen);
        return screen->stale && screen->fetched;
    });
}

/// Drops those that were used longest ago, and the latest one if it is too large by itself.
void ScreenSnapshots::makeSpaceBeside(const ScreenPtr &latest)
{
    int others = 0;
    qint64 size = latest->bytes;
    for (auto it = m_screens.rbegin(); it != m_screens.rend(); ++it) {
        const ScreenPtr &screen = *it;
        if (screen == latest || !screen->fetched)
            continue;
        size += screen->bytes;
        others += screen->peer == latest->peer ? 1 : 0;
        screen->stale |= size > MaxBytes || (screen->peer == latest->peer && others >= MaxScreens);
    }
    latest->stale |= latest->bytes > MaxBytes;
}

void ScreenSnapshots::follow(MessagePeer *peer)
{
    if (!peer || std::find(m_peers.begin(), m_peers.end(), peer) != m_peers.end())
        return;
    m_peers.push_back(peer);
    connect(peer, &QObject::destroyed, this, [this, peer] {
        m_peers.erase(std::remove(m_peers.begin(), m_peers.end(), peer), m_peers.end());
        forget([peer](const Screen &screen) { return screen.peer == peer; });
    });
}

/// Drops the screens that may not be used any more.
void ScreenSnapshots::sweep()
{
    forget([this](const Screen &screen) {
        const int lifetime = screen.peer ? m_lifetimes.connected : m_lifetimes.unconnected;
        return !screen.isGood() || (screen.fetched && screen.used.hasExpired(lifetime));
    });
    if (m_screens.empty())
        m_sweep.stop();
}
