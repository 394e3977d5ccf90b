// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// The format of decoded audio: interleaved 32-bit floating-point samples.
struct AudioFormat {
    int rate = 0; ///< frames per second; 0 if unknown
    int channels = 0;

    bool isKnown() const { return rate > 0 && channels > 0; }
    bool operator==(const AudioFormat &other) const
    {
        return rate == other.rate && channels == other.channels;
    }
    bool operator!=(const AudioFormat &other) const { return !(*this == other); }
};
