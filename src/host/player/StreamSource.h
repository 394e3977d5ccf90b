// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/SpokenExcuses.h"

#include <QUrl>

/// What there is to play.
struct StreamSource {
    QUrl url;
    /// A station, which goes on for ever: its end is a break, to be mended by joining it anew.
    bool live = true;
    /// Something else can be played in its place: given up unheard at its first failure.
    bool hasAlternatives = false;
    /// What leads to one of these is not played.
    SpokenExcuses excuses = {};
};
