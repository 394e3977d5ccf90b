// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/AudioOutputSpec.h"
#include "host/player/StreamReader.h"

#include <QObject>

#include <memory>

class AudioOutput;
class StreamSupply;

/// One play, from the address to the sound output. Made on any thread, moved to the play's own
/// (PlayThread) and used there; what it waits for while something opens or closes holds up nothing
/// else.
class StreamPlay : public QObject {
    Q_OBJECT

public:
    StreamPlay(const StreamSource &source, const AudioOutputSpec &output,
        const StreamReader::Times &times);
    /// Stops; a file is complete afterwards.
    ~StreamPlay() override;

    void start();
    /// A station is left, a file waits. \a step counts pause() and resume().
    void pause(int step);
    void resume(int step);
    void tryNow();

Q_SIGNALS:
    /// After the pause() or resume() with that number; 0 before the first.
    void audibleChanged(bool audible, int step);
    void titleChanged(const QString &title);
    void bitRateChanged(int bitRate);
    void ended();
    void gaveUp(const TrString &problem);
    /// What is being done about a fault, while there is nothing to hear.
    void problemChanged(const TrString &problem);
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
    TrString m_problem; ///< the supply's
    TrString m_shown; ///< what was told of it
};
