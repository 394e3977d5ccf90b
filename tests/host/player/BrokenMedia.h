// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QVector>

#include <random>

/// \file
/// Streams as encoders produce them, and as broken encoders, servers and attackers deliver them.

/// Two seconds of a tone in each supported format: MP3, AAC in ADTS, in MP4 and in
/// MPEG-TS, Vorbis and Opus in Ogg, FLAC. Made once.
const QVector<QByteArray> &soundMedia();

/// ADTS AAC whose frame headers are intact and whose payload is random, or zeros.
QByteArray scrambledAac(std::mt19937 &random, bool zeros);

/// One of soundMedia() with damage that \a random chooses: bits flipped, pieces zeroed, repeated,
/// left out or swapped, another stream's bytes in the middle, a cut.
QByteArray brokenMedia(std::mt19937 &random);
