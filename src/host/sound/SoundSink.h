// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "base/Result.h"
#include "host/sound/AudioOutputSpec.h"
#include "media/AudioFormat.h"

struct _GstElement;

/// The end of the pipeline that plays sound.
struct SoundSink {
    /// An element or a bin with a floating reference, which the caller adds to its pipeline. Takes
    /// audio/x-raw of any format.
    _GstElement *element = nullptr;
    /// Within it, what implements GstStreamVolume; null if there is no such element, or if it is
    /// not known before the device is open.
    _GstElement *deviceVolume = nullptr;
    /// A file that is complete only after the end of the stream (EOS), and is begun anew by each
    /// play.
    bool isFile = false;
    /// It does not wait for the clock, but takes buffers as fast as they come: they come when they
    /// are due.
    bool takesAll = false;
    /// The only format that comes out at the end; unknown if there is no such limit.
    AudioFormat fixed {};
};

/// Makes the sink for \a spec. Opens nothing: the pipeline's state changes do that, on the thread
/// that makes them. Fails with a text for the user when this machine lacks an element. Any thread,
/// after startGStreamer().
Result<SoundSink, TrString> makeSoundSink(const AudioOutputSpec &spec);
