// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>

/// MIME types that tell the player what to expect of a resource.
namespace MimeTypes {
namespace Audio {
/// "audio/x-mpegurl": a playlist, or a URL whose response is one.
VESK_API const QString &m3u();
/// "audio/unknown": audio whose format the player has to detect.
VESK_API const QString &unknown();
} // namespace Audio
} // namespace MimeTypes
