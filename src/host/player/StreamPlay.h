// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/AudioOutputSpec.h"
#include "host/player/StreamReader.h"

#include <QObject>

#include <memory>

class AudioOutput;
class StreamSupply;

/// One play, from the address to the sound output. Created on any thread, then moved to the play's
/// own thread (PlayThread) and used only there. It may block while a device, connection or decoder
/// opens or closes.
class StreamPlay : public QObject {
    Q_OBJECT

public:
    StreamPlay(const StreamSource &source, const AudioOutputSpec &output,
        const StreamReader::Times &times);
    /// Stops. An output file is complete afterwards.
    ~StreamPlay() override;

    void start();
    /// A station is disconnected, a file is held. \a step numbers the calls of pause() and resume()
    /// and comes back with audibleChanged(), so that late signals can be told from current ones.
    void pause(int step);
    void resume(int step);
    /// The network is back: ends a delay before a retry.
    void tryNow();

Q_SIGNALS:
    /// \a step is that of the latest pause() or resume(); 0 before the first.
    void audibleChanged(bool audible, int step);
    void titleChanged(const QString &title);
    void bitRateChanged(int bitRate);
    /// Everything was heard.
    void ended();
    /// The source cannot be played.
    void gaveUp(const TrString &problem);
    /// A text for the user about a fault and the retry, while there is no sound; empty otherwise.
    void problemChanged(const TrString &problem);
    /// The sound output does not work.
    void outputFailed(const TrString &problem);

private:
    void supply();
    void cutSupply();
    void rejoin();
    void showProblem();

    const StreamSource m_source;
    const AudioOutputSpec m_spec;
    const StreamReader::Times m_times;
    int m_step = 0;
    std::unique_ptr<AudioOutput> m_output;
    std::unique_ptr<StreamSupply> m_supply;
    TrString m_problem; ///< the last of the supply
    TrString m_shown; ///< the last problemChanged()
};
