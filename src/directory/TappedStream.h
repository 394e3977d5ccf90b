// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A stream that passes everything on to another one and shows what is read from it to an observer.
#pragma once

#include <functional>
#include <gio/gio.h>
#include <string_view>

namespace directory {

struct Tap {
    std::function<void(std::string_view bytes)> read;
    /// Asked where the base ends or fails: whether the reader is to see a request that breaks off
    /// after one blank, in place of nothing more.
    std::function<bool()> breaksOff;
};

/// Takes its own references. `socket` is the one at the bottom of `base`. The result belongs to the
/// caller.
GIOStream *tappedStream(GIOStream *base, GSocket *socket, Tap tap);
/// The socket of a stream made by tappedStream, or of a wrapper that has one as its
/// "base-iostream"; null for any other stream.
GSocket *socketOf(GIOStream *stream);

} // namespace directory
