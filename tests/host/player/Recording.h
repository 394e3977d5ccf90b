// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// A steady tone as GStreamer's encoders make it: \a encoder is the part of a pipeline from raw
/// audio to bytes ("lamemp3enc", "vorbisenc ! oggmux"). Empty when this machine cannot run that
/// pipeline.
QByteArray recordedTone(const char *encoder, int frequency, int seconds, int rate = 44100);
