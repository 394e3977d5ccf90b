// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QString>

/// Where sound goes, as `--audio` and the setting say it:
///
///     auto                        the machine's output
///     null                        nowhere, in real time
///     wav:FILE                    a file, in real time, overwritten by each play
///     alsa, alsa:DEVICE           an ALSA device (a PCM), else the default one
///     pulse, pulse:NAME           a sink of PulseAudio
///     pipewire, pipewire:NAME     a sink of PipeWire, by its node's name
///     jack                        a JACK server
///     pipe:FILE                   a FIFO: raw samples, s16le, 48 kHz, stereo, in real time
///     tcp:HOST:PORT               a server that takes the same; an IPv6 address in brackets
struct AudioOutputSpec {
    enum Kind { Auto, Null, Wav, Alsa, Pulse, PipeWire, Jack, Pipe, Tcp };
    Kind kind = Auto;
    QString file {}; ///< of Wav and Pipe
    QString device {}; ///< of Alsa, Pulse and PipeWire; empty: the default one
    QString host {}; ///< of Tcp
    int port = 0; ///< of Tcp

    /// Or what is wrong with \a text, which is quoted there: for the command line.
    static Result<AudioOutputSpec, QString> parse(const QString &text);
    /// What parse() takes for it.
    QString text() const;
    /// Why the file cannot be used: it exists and is not a regular file, or no FIFO. Empty if it is
    /// fine. Does not open the file, because opening a FIFO would block.
    QString problem() const;
    /// Whether it may come from a client: not a file, a FIFO or a server, and no ALSA device whose
    /// name has arguments of its own, by which ALSA writes files and runs programs (`file:`).
    bool isForClients() const;
};

inline bool operator==(const AudioOutputSpec &a, const AudioOutputSpec &b)
{
    return a.kind == b.kind && a.file == b.file && a.device == b.device && a.host == b.host
        && a.port == b.port;
}
inline bool operator!=(const AudioOutputSpec &a, const AudioOutputSpec &b)
{
    return !(a == b);
}
