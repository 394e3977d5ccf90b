// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInIcons.h"

#include "api/values/VeskHash.h"

// The last part is the category's key in the directory's responses.
VESK_KEY(VeskTuneInMyPresetsIcon, "icon:tunein/presets")
VESK_KEY(VeskTuneInLocalRadioIcon, "icon:tunein/local")
VESK_KEY(VeskTuneInMusicIcon, "icon:tunein/music")
VESK_KEY(VeskTuneInTalkIcon, "icon:tunein/talk")
VESK_KEY(VeskTuneInSportsIcon, "icon:tunein/sports")
VESK_KEY(VeskTuneInByLocationIcon, "icon:tunein/location")
VESK_KEY(VeskTuneInByLanguageIcon, "icon:tunein/language")
VESK_KEY(VeskTuneInPodcastsIcon, "icon:tunein/podcast")
