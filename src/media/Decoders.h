// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <gst/gst.h>

/// \file
/// Which of GStreamer's elements may touch a stream's bytes. decodebin takes whatever is installed
/// for whatever the bytes claim to be: module and MIDI players, playlist readers and HLS clients
/// that open files and sockets by themselves, demuxers that allocate what a header asks for. Here
/// only what the formats that this player offers need is allowed: MP3, AAC (ADTS, in MP4 and in
/// MPEG-TS), Vorbis, Opus and FLAC. Any thread, after startGStreamer().

/// Whether the element is one of the allowed demuxers, parsers and decoders.
bool isAllowedDecoder(GstElementFactory *factory);

/// Takes every other demuxer, parser, decoder and type finder out of this process's registry, for
/// good.
void keepAllowedDecodersOnly();
