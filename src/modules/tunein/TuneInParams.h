// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// \file
/// Keys of the parameters of this plug-in's paths. Those that start with "vesk" stay between the
/// host and this plug-in.

namespace TuneInParams {

#define TUNEIN_PARAM(name)                                                                         \
    inline const QString &name()                                                                   \
    {                                                                                              \
        static const QString key = QStringLiteral(#name);                                          \
        return key;                                                                                \
    }
TUNEIN_PARAM(veskNavigation)
TUNEIN_PARAM(veskDisplayName)
TUNEIN_PARAM(veskTuneInMethod)
TUNEIN_PARAM(veskMatchingPath)
TUNEIN_PARAM(veskGuideId)
TUNEIN_PARAM(veskDirectStream)
TUNEIN_PARAM(veskPrePlayCmd)
TUNEIN_PARAM(veskPlayPath)
TUNEIN_PARAM(veskTitle)
TUNEIN_PARAM(veskDescription)
TUNEIN_PARAM(veskIcon)
TUNEIN_PARAM(guideId)
TUNEIN_PARAM(stationId)
TUNEIN_PARAM(sid)
TUNEIN_PARAM(query)
TUNEIN_PARAM(c)
#undef TUNEIN_PARAM

} // namespace TuneInParams
