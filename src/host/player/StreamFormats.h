// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// The formats that this machine can decode, as TuneIn names them, comma-separated: of "mp3",
/// "aac", "ogg", "opus", "flac" and "hls" those for which GStreamer has what they need. Any thread.
QString decodableFormats();
