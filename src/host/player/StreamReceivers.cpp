// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamReceivers.h"

#include "host/player/PlayerText.h"
#include "host/player/SpokenExcuses.h"
#include "host/player/StreamFeed.h"
#include "host/player/StreamProblems.h"

#include <algorithm>
#include <utility>

StreamOutcome streamRefusal(const HttpStreamHead &head)
{
    if (head.code == 200 || head.code == 206)
        return {StreamOutcome::Ended, {}};
    const bool isFinal
        = head.code == 401 || head.code == 404 || head.code == 410 || head.code == 451;
    return {isFinal ? StreamOutcome::Refused : StreamOutcome::Broken,
        playerText(QT_TRANSLATE_NOOP("Player", "The stream's server refused it (code %1)."),
            {QString::number(head.code)}),
        head.retryAfter};
}

TextReceiver::TextReceiver(int limit, std::function<bool()> goOn)
    : m_limit(limit)
    , m_goOn(std::move(goOn))
{
}

bool TextReceiver::begin(const HttpStreamHead &head)
{
    m_head = head;
    return streamRefusal(head).kind == StreamOutcome::Ended;
}

bool TextReceiver::take(const char *data, std::size_t size)
{
    const int room = m_limit - m_text.size();
    m_text.append(data, static_cast<int>(std::min<std::size_t>(size, room)));
    return m_text.size() < m_limit;
}

AudioReceiver::AudioReceiver(StreamFeed &feed, const SpokenExcuses &excuses)
    : m_feed(feed)
    , m_excuses(excuses)
{
}

void AudioReceiver::expectFile(const QUrl &url, bool only)
{
    m_file.url = url;
    m_beginning.emplace();
    m_headOnly = only;
}

void AudioReceiver::beginAt(const StreamStart &start)
{
    m_beginning.reset();
    m_headOnly = false;
    m_start = start;
    m_text.clear();
    m_content = StreamContent::Audio;
    m_icy.emplace(0);
    m_received = start.offset;
}

bool AudioReceiver::goOn()
{
    return m_feed.goOn();
}

bool AudioReceiver::hasPlenty() const
{
    return m_content == StreamContent::Audio && m_feed.consumer().ahead() >= StreamConsumer::Plenty;
}

bool AudioReceiver::begin(const HttpStreamHead &head)
{
    if (const TrString excuse = m_excuses.wordsOf(head.url); !excuse.isEmpty())
        return refuse(StreamOutcome::Hopeless, excuse);
    const qint64 wanted = m_received;
    m_head = head;
    m_refusal = streamRefusal(head);
    if (m_refusal.kind != StreamOutcome::Ended)
        return false;
    // A server without range support sends the whole file: drop what was received before.
    if (head.offset > wanted) {
        return refuse(StreamOutcome::Broken,
            playerText(
                QT_TRANSLATE_NOOP("Player", "The stream's server sent another part of the file.")));
    }
    m_skip = wanted - head.offset;
    if (wanted == 0)
        m_icy.emplace(head.icyInterval);
    if (head.icyBitRate > 0)
        m_feed.consumer().takeBitRate(head.icyBitRate);
    return true;
}

bool AudioReceiver::take(const char *data, std::size_t size)
{
    if (m_skip > 0) {
        const auto skipped = static_cast<std::size_t>(std::min(m_skip, static_cast<qint64>(size)));
        m_skip -= static_cast<qint64>(skipped);
        data += skipped;
        size -= skipped;
    }
    if (size == 0)
        return true;
    m_received += static_cast<qint64>(size);
    return m_icy->feed(
        data, size, [this](const char *audio, std::size_t count) { return takeBody(audio, count); },
        [this](const QString &title) { m_feed.consumer().takeTitle(title); });
}

bool AudioReceiver::takeBody(const char *data, std::size_t size)
{
    if (m_content == StreamContent::Audio)
        return takeAudio(data, size);
    const int room = PlaylistLimits::MaxBytes - m_text.size();
    m_text.append(data, static_cast<int>(std::min<std::size_t>(size, room)));
    return decide(false);
}

/// Recognizes the content once there is enough of it. Returns whether to continue.
bool AudioReceiver::decide(bool complete)
{
    if (m_content == StreamContent::Undecided)
        m_content = sniffStream(m_text, complete);
    switch (m_content) {
    case StreamContent::Undecided:
        return true;
    case StreamContent::Audio: {
        if (!m_headOnly)
            m_feed.start(m_file.url.isEmpty() ? std::optional<AudioPlace>() : AudioPlace());
        const QByteArray begin = std::move(m_text);
        m_text.clear();
        return takeAudio(begin.constData(), static_cast<std::size_t>(begin.size()));
    }
    case StreamContent::WebPage:
        return refuse(StreamOutcome::Refused,
            playerText(QT_TRANSLATE_NOOP("Player", "There is a web page in place of the stream.")));
    case StreamContent::Text:
        // A station that is about to start may respond with an empty body: worth a retry.
        return refuse(m_text.trimmed().isEmpty() ? StreamOutcome::Broken : StreamOutcome::Refused,
            playerText(QT_TRANSLATE_NOOP("Player", "There is no audio at the stream's address.")));
    default:
        return m_text.size() < PlaylistLimits::MaxBytes;
    }
}

void AudioReceiver::complete()
{
    if (m_content == StreamContent::Undecided)
        decide(true);
    if (m_content == StreamContent::Audio)
        passHead();
}

StreamOutcome AudioReceiver::judge(const HttpStreamResult &result, bool live) const
{
    if (result.kind == HttpStreamResult::Interrupted)
        return {StreamOutcome::Stopped, nothingToHear()};
    if (m_refusal.kind != StreamOutcome::Ended)
        return m_refusal;
    if (!m_feed.isUsable()) {
        // A damaged file is still damaged on the next try.
        const bool isForGood = !live && m_feed.consumer().wasHeard();
        return {isForGood ? StreamOutcome::Hopeless : StreamOutcome::Broken, notDecodable()};
    }
    if (result.kind == HttpStreamResult::Failed)
        return {result.isFinal ? StreamOutcome::Refused : StreamOutcome::Broken, result.problem};
    if (result.kind == HttpStreamResult::Refused)
        return {StreamOutcome::Broken, result.problem.isEmpty() ? nothingToHear() : result.problem};
    // Without a Content-Length, the end of the connection is the end of a file.
    const bool isWhole = m_head.length < 0 ? !live : result.kind == HttpStreamResult::Complete;
    if (m_content == StreamContent::Audio && isWhole)
        return {StreamOutcome::Ended, {}};
    return endedByServer();
}

bool AudioReceiver::takeAudio(const char *data, std::size_t size)
{
    if (m_beginning)
        noteHead(data, size);
    if (m_headOnly)
        return m_beginning.has_value();
    if (m_start) {
        const StreamStart start = *std::exchange(m_start, std::nullopt);
        m_feed.start(AudioPlace {start.position, start.position - start.time});
        const QByteArray &head = start.head;
        if (!head.isEmpty()
            && !m_feed.take(head.constData(), static_cast<std::size_t>(head.size())))
            return false;
    }
    return m_feed.take(data, size);
}

/// Only of responses that are the bytes of a file from its beginning on.
void AudioReceiver::noteHead(const char *data, std::size_t size)
{
    m_beginning->take(data, size);
    if (m_beginning->isComplete())
        passHead();
}

void AudioReceiver::passHead()
{
    if (!m_beginning)
        return;
    const bool isKnown = m_head.icyInterval == 0 && m_head.length >= 0;
    m_file.size = isKnown ? m_head.offset + m_head.length : 0;
    m_file.begin = m_beginning->begin();
    m_file.head = m_beginning->bytes();
    m_beginning.reset();
    m_feed.consumer().takeFile(m_file);
}

bool AudioReceiver::refuse(StreamOutcome::Kind kind, const TrString &problem)
{
    m_refusal = {kind, problem};
    return false;
}
