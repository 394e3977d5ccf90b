// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// Has GStreamer know of the plug-ins that play radio alone, by useNeededPluginsOnly() with a
/// folder in the user's cache. False, and GStreamer knows of all, if there is no cache. At the
/// start of the program, before there are other threads.
bool useRadioPluginsOnly();

/// The formats that this machine can decode, comma-separated: those of "mp3", "aac", "ogg", "opus",
/// "flac" and "hls" for which the GStreamer elements are installed. Any thread.
QString decodableFormats();
