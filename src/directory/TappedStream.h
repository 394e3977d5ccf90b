// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A stream on top of another one that shows an observer what is read.
#pragma once

#include <functional>
#include <gio/gio.h>
#include <string_view>

namespace directory {

struct Tap {
    std::function<void(std::string_view bytes)> read;
    /// Called when the base ends or fails: whether to give the reader one more blank before the
    /// end, which for an HTTP server is a request that breaks off.
    std::function<bool()> breaksOff;
};

/// Takes references of its own. `socket` is the one below `base`. The caller owns the result.
GIOStream *tappedStream(GIOStream *base, GSocket *socket, Tap tap);
/// The socket of a stream made by tappedStream, or of a wrapper that has one as its
/// "base-iostream"; null for any other stream.
GSocket *socketOf(GIOStream *stream);

} // namespace directory
