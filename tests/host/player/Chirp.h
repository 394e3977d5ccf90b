// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/support/Ear.h"

#include <QByteArray>

/// \file
/// An episode whose pitch rises steadily, so that its sound tells the place.

namespace chirp {

constexpr double Lowest = 200; ///< Hz, at its beginning
constexpr double PerSecond = 20; ///< Hz

/// \a seconds of it as \a encoder makes it, the part of a pipeline from raw audio to bytes. Empty
/// when this machine cannot run that pipeline.
QByteArray recorded(const char *encoder, int seconds);

/// The place, in seconds, that is heard in the \a length seconds of \a sound that end \a before its
/// end; negative if there is no such tone.
double placeAtEnd(const ear::Sound &sound, double before = 0.05, double length = 0.2);
/// The same for those that begin at \a at.
double placeAt(const ear::Sound &sound, double at, double length = 0.2);

} // namespace chirp
