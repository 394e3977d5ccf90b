// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>

/// \file
/// What stations send in the table of faults: a tone, encoded when it is first asked for. Any
/// thread.

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

/// ADTS whose frames keep their heads; what is in them is random or nothing.
Media scrambledAac();
Media zeroedAac();
/// ADTS that claims to be of a profile which decoders do not know.
Media oddProfileAac();
/// With one byte in \a every changed, after the first \a kept; always the same.
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
/// An ID3 tag's head that promises that many bytes.
QByteArray id3Head(int size);
QByteArray midi();
/// A module file with a sample and a pattern.
QByteArray module();

} // namespace media
