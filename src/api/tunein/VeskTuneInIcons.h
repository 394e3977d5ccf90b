// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>

/// \file
/// Ids of the icons that hosts provide for TuneIn's categories: "icon:tunein/music" and so on.

VESK_API const QString &VeskTuneInMyPresetsIcon();
VESK_API const QString &VeskTuneInLocalRadioIcon();
VESK_API const QString &VeskTuneInMusicIcon();
VESK_API const QString &VeskTuneInTalkIcon();
VESK_API const QString &VeskTuneInSportsIcon();
VESK_API const QString &VeskTuneInByLocationIcon();
VESK_API const QString &VeskTuneInByLanguageIcon();
VESK_API const QString &VeskTuneInPodcastsIcon();
