// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>

/// \file
/// The audio that the faults' stations send: a tone, encoded on first use. Any thread.

struct Media {
    QByteArray bytes;
    double seconds = 0;

    double bytesPerSecond() const { return bytes.size() / seconds; }
};

namespace media {

/// 44.1 kHz, two channels, 128 kbit/s.
const Media &mp3();
/// 22.05 kHz, one channel.
const Media &mp3Mono();
/// ADTS; 48 and 24 kHz.
const Media &aac();
const Media &aacHalfRate();
const Media &vorbis();
const Media &flac();

/// ADTS whose frames have valid headers around random or zero bytes.
Media scrambledAac();
Media zeroedAac();
/// ADTS with a profile that decoders do not support.
Media oddProfileAac();
/// With one byte in \a every changed, after the first \a kept; deterministic.
Media mutated(const Media &media, int every, int kept = 0);
/// Pieces of ADTS of two seconds each, for HLS.
QList<QByteArray> segments(const Media &adts);

QByteArray garbage(int size);
/// The head of a WAV file of that many channels.
QByteArray wavHead(int channels);
/// The head of a Matroska file with an element of a gigabyte.
QByteArray hugeMatroskaHead();
/// The head of a FLAC file with a picture of 16 MiB.
QByteArray hugeFlacHead();
/// The header of an ID3 tag that announces that many bytes.
QByteArray id3Head(int size);
QByteArray midi();
/// A module file with a sample and a pattern.
QByteArray module();

} // namespace media
