// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

/// Has GStreamer look for its plug-ins in \a folder, which is made, in this process and those that
/// it starts: links to the installed ones that play audio, and the registry of these. A machine may
/// have hundreds of others, whose registry takes each process more than a megabyte and several
/// milliseconds of its start.
///
/// Does nothing if the environment says already where plug-ins or their registry are. False, and
/// GStreamer knows of all that are installed, if \a folder cannot be made or they are not where
/// they were when this was built. Before startGStreamer(), while no other thread reads the
/// environment.
bool useNeededPluginsOnly(const std::filesystem::path &folder);
