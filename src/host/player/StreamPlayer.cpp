#include "host/player/StreamPlayer.h"

#include "host/player/StreamReceivers.h"
#include "host/player/StreamSupply.h"

StreamPlayer::StreamPlayer(const AudioOutputSpec &output, QObject *parent)
    : MediaPlayer(parent)
    , m_spec(output)
{
}

StreamPlayer::~StreamPlayer()
{
    StreamPlayer::stop();
}

void StreamPlayer::play(const StreamSource &source)
{
    stop();
    m_source = source;
    m_output = std::make_unique<AudioOutput>(m_spec);
    connect(m_output.get(), &AudioOutput::audibleChanged, this, &MediaPlayer::audibleChanged);
    connect(m_output.get(), &AudioOutput::drained, this, &StreamPlayer::finish);
    connect(m_output.get(), &AudioOutput::failed, this, [this] {
        giveUp(playerText(QT_TRANSLATE_NOOP("Player", "The sound output does not work.")));
    });
    supply();
}

void StreamPlayer::supply()
{
    m_supply = std::make_unique<StreamSupply>(m_source, *m_output, m_times);
    connect(m_supply.get(), &StreamSupply::titleChanged, this, &MediaPlayer::titleChanged);
    connect(m_supply.get(), &StreamSupply::bitRateChanged, this, &MediaPlayer::bitRateChanged);
    connect(m_supply.get(), &StreamSupply::ended, m_output.get(), &AudioOutput::finish);
    connect(m_supply.get(), &StreamSupply::gaveUp, this, &StreamPlayer::giveUp);
    m_supply->start();
}

void StreamPlayer::cutSupply()
{
    if (!m_supply)
        return;
    m_output->refuse(true);
    m_supply.reset();
    m_output->refuse(false);
}

void StreamPlayer::pause()
{
    if (!m_output)
        return;
    m_output->pause();
    if (m_source.live) {
        cutSupply();
        m_output->flush();
    }
}

void StreamPlayer::resume()
{
    if (!m_output)
        return;
    if (m_source.live && !m_supply)
        supply();
    m_output->resume();
}

void StreamPlayer::stop()
{
    if (!m_output)
        return;
    disconnect(m_output.get(), nullptr, this, nullptr);
    cutSupply();
    m_output.reset();
}

void StreamPlayer::networkIsBack()
{
    if (m_supply)
        m_supply->tryNow();
}

void StreamPlayer::finish()
{
    stop();
    Q_EMIT ended();
}

void StreamPlayer::giveUp(const TrString &problem)
{
    stop();
    Q_EMIT gaveUp(problem);
}
