// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/MimeTypes.h"

const QString &MimeTypes::Audio::m3u()
{
    static const QString type = QStringLiteral("audio/x-mpegurl");
    return type;
}

const QString &MimeTypes::Audio::unknown()
{
    static const QString type = QStringLiteral("audio/unknown");
    return type;
}
