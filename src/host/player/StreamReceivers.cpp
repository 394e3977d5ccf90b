#include "host/player/StreamReceivers.h"

#include "host/player/StreamConsumer.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// TuneIn answers with a spoken message where a station cannot be played. Empty for other
/// addresses.
TrString placeholderProblem(const QUrl &url)
{
    static const QRegularExpression placeholder(
        QStringLiteral(
            "/service/audio/(notcompatible|nostream|georestricted|restricted)\\.[^/]*mp3$"),
        QRegularExpression::CaseInsensitiveOption);
    const QString name = placeholder.match(url.path()).captured(1).toLower();
    if (name == QLatin1String("notcompatible"))
        return playerText(
            QT_TRANSLATE_NOOP("Player", "This device cannot play the station's streams."));
    if (name == QLatin1String("nostream"))
        return playerText(QT_TRANSLATE_NOOP("Player", "The station has no stream at the moment."));
    if (name == QLatin1String("georestricted"))
        return playerText(
            QT_TRANSLATE_NOOP("Player", "The station cannot be heard in your country."));
    if (name == QLatin1String("restricted"))
        return playerText(QT_TRANSLATE_NOOP("Player", "The station may not be played here."));
    return {};
}

} // namespace

TrString playerText(const char *text)
{
    return TrString("Player", text);
}

TrString streamProblem(int httpCode)
{
    if (httpCode == 200 || httpCode == 206)
        return {};
    return TrString(QStringLiteral("Player"),
        QString::fromLatin1(
            QT_TRANSLATE_NOOP("Player", "The stream's server refused it (code %1).")),
        QString(), -1, {TrArg(QString::number(httpCode))});
}

TextReceiver::TextReceiver(int limit, std::function<bool()> goOn)
    : m_limit(limit)
    , m_goOn(std::move(goOn))
{
}

bool TextReceiver::begin(const HttpStreamHead &head)
{
    m_head = head;
    return streamProblem(head.code).isEmpty();
}

bool TextReceiver::take(const char *data, std::size_t size)
{
    const int room = m_limit - m_text.size();
    m_text.append(data, static_cast<int>(std::min<std::size_t>(size, room)));
    return m_text.size() < m_limit;
}

AudioReceiver::AudioReceiver(StreamConsumer &consumer, std::function<bool()> goOn)
    : m_consumer(consumer)
    , m_goOn(std::move(goOn))
{
}

bool AudioReceiver::begin(const HttpStreamHead &head)
{
    const TrString placeholder = placeholderProblem(head.url);
    if (!placeholder.isEmpty()) {
        m_hopeless = true;
        return refuse(placeholder);
    }
    const TrString problem = streamProblem(head.code);
    const qint64 wanted = m_received;
    m_head = head;
    if (!problem.isEmpty())
        return refuse(problem);
    m_problem = {};
    // A server that does not know ranges begins at the beginning.
    if (head.offset > wanted)
        return refuse(playerText(
            QT_TRANSLATE_NOOP("Player", "The stream's server sent another part of the file.")));
    m_skip = wanted - head.offset;
    if (wanted == 0)
        m_icy.emplace(head.icyInterval);
    if (head.icyBitRate > 0)
        m_consumer.takeBitRate(head.icyBitRate);
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
        [this](const QString &title) { m_consumer.takeTitle(title); });
}

bool AudioReceiver::takeBody(const char *data, std::size_t size)
{
    if (m_content == StreamContent::Audio)
        return takeAudio(data, size);
    const int room = PlaylistLimits::MaxBytes - m_text.size();
    m_text.append(data, static_cast<int>(std::min<std::size_t>(size, room)));
    return decide(false);
}

/// Returns whether more is wanted.
bool AudioReceiver::decide(bool complete)
{
    if (m_content == StreamContent::Undecided)
        m_content = sniffStream(m_text, complete);
    switch (m_content) {
    case StreamContent::Undecided:
        return true;
    case StreamContent::Audio: {
        m_consumer.startAudio(m_goOn);
        const QByteArray begin = std::move(m_text);
        m_text.clear();
        return takeAudio(begin.constData(), static_cast<std::size_t>(begin.size()));
    }
    case StreamContent::WebPage:
        return refuse(
            playerText(QT_TRANSLATE_NOOP("Player", "There is a web page in place of the stream.")));
    case StreamContent::Text:
        return refuse(
            playerText(QT_TRANSLATE_NOOP("Player", "There is no audio at the stream's address.")));
    default:
        return m_text.size() < PlaylistLimits::MaxBytes;
    }
}

void AudioReceiver::complete()
{
    if (m_content == StreamContent::Undecided)
        decide(true);
}

bool AudioReceiver::takeAudio(const char *data, std::size_t size)
{
    return m_consumer.feedAudio(data, size, m_goOn)
        || refuse(playerText(QT_TRANSLATE_NOOP("Player", "The stream cannot be decoded.")));
}

bool AudioReceiver::refuse(const TrString &problem)
{
    m_problem = problem;
    return false;
}
