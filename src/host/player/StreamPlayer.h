#pragma once

#include "host/player/AudioOutput.h"
#include "host/player/MediaPlayer.h"

#include <memory>

class StreamSupply;

/// Plays streams from the network to the machine's sound output, or to what stands in for it.
class StreamPlayer : public MediaPlayer {
    Q_OBJECT

public:
    explicit StreamPlayer(const AudioOutputSpec &output, QObject *parent = nullptr);
    /// Stops.
    ~StreamPlayer() override;

    /// For plays that start later.
    void setTimes(const StreamReader::Times &times) { m_times = times; }

    void play(const StreamSource &source) override;
    void pause() override;
    void resume() override;
    void stop() override;
    void networkIsBack() override;

private:
    void supply();
    void cutSupply();
    void finish();
    void giveUp(const TrString &problem);

    const AudioOutputSpec m_spec;
    StreamReader::Times m_times;
    StreamSource m_source;
    std::unique_ptr<AudioOutput> m_output;
    std::unique_ptr<StreamSupply> m_supply;
};
