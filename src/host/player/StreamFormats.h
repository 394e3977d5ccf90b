// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// The formats that this machine can decode, comma-separated: those of "mp3", "aac", "ogg", "opus",
/// "flac" and "hls" for which the GStreamer elements are installed. Any thread.
QString decodableFormats();
