// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The pictures and the short audio file that answers point at. All of them are made from their
/// names, so the same name gives the same bytes.
#pragma once

#include "directory/Api.h"

namespace directory {

/// "/logo/s20001q.png" or "/logo/s20001.png": a small coloured pattern. The letter before the dot
/// is the size: t 75, q 145, d 300, g 600 pixels.
Answer logoPicture(const std::string &path);
/// "/service/Audio/NAME.enUS.mp3": two seconds of silence for what cannot be played.
Answer placeholderAudio(const std::string &path);

} // namespace directory
