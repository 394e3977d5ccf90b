// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/sound/AudioOutputSpec.h"

#include <QString>
#include <QVector>

/// A sound output that this machine has.
struct OutputDevice {
    AudioOutputSpec spec;
    QString name; ///< as the sound system shows it
};

/// The sinks of PulseAudio, those of PipeWire if there is no PulseAudio, and ALSA's devices. Asks
/// the sound systems, which takes tenths of a second, or forever if one of them hangs. Any thread
/// but the main one.
QVector<OutputDevice> outputDevices();
