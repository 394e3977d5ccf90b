// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <gst/gst.h>

/// \file
/// The allowlist of GStreamer elements that may process a stream's bytes. decodebin uses any
/// installed element that matches the data: module and MIDI players, playlist readers and HLS
/// clients that open files and sockets by themselves, demuxers that allocate whatever a header asks
/// for. Only those for the supported formats are allowed: MP3, AAC (ADTS, in MP4 and in MPEG-TS),
/// Vorbis, Opus and FLAC. Any thread, after startGStreamer().

/// Whether the element is one of the allowed demuxers, parsers and decoders.
bool isAllowedDecoder(GstElementFactory *factory);

/// Removes every other demuxer, parser, decoder and type finder from this process's registry, for
/// the lifetime of the process.
void keepAllowedDecodersOnly();
