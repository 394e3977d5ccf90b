// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/sound/AudioOutputSpec.h"

#include <gst/gst.h>

/// The format of a RawPlace's samples, whatever the stream's is.
constexpr int RawRate = 48000;
constexpr int RawChannels = 2;

/// The end of a pipeline for a `pipe:` or a `tcp:`, floating: hands samples over in real time. What
/// is wrong with the place, once it is known, and that all is well again, is posted as a SinkHealth
/// message; the pipeline goes on. Never blocks.
GstElement *makeRawSink(const AudioOutputSpec &spec);
