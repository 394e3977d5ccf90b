// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>

/// MIME types by which a resource tells the player what to expect.
namespace MimeTypes {
namespace Audio {
/// "audio/x-mpegurl": a playlist, or a URL that answers with one.
VESK_API const QString &m3u();
/// "audio/unknown": audio whose format the player must find out.
VESK_API const QString &unknown();
} // namespace Audio
} // namespace MimeTypes
