// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Audio that is too long to be held in an answer: it is encoded, or copied, while it is sent.
#pragma once

#include "directory/Encoder.h"
#include "directory/Melody.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace directory {

/// An endless stream.
struct LiveAudio {
    AudioFormat format;
    Melody melody;
    /// The title that many seconds after the request; null when the client did not ask for titles.
    std::function<std::string(double elapsed)> title;
};

/// A file, or a range of one: `length` bytes of the endlessly repeated loop, from `offset` on.
struct FileAudio {
    std::shared_ptr<const std::string> loop;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// One of the two is set.
struct Audio {
    std::shared_ptr<const LiveAudio> live;
    std::shared_ptr<const FileAudio> file;
    explicit operator bool() const { return live || file; }
};

} // namespace directory
