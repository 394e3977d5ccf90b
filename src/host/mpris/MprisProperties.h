// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/mpris/MprisPlayer.h"

#include <QByteArray>

#include <gio/gio.h>
#include <memory>
#include <utility>
#include <vector>

/// A reference to a value of D-Bus.
struct MprisUnref {
    void operator()(GVariant *value) const { g_variant_unref(value); }
};
using MprisValue = std::unique_ptr<GVariant, MprisUnref>;

/// The properties of org.mpris.MediaPlayer2.Player that change, in the order of the standard, but
/// for Position. Pure functions.
using MprisProperties = std::vector<std::pair<QByteArray, MprisValue>>;
MprisProperties mprisProperties(const MprisState &state);

/// The object path that stands for a track; that of no track for 0.
QByteArray mprisTrackPath(quint64 number);
