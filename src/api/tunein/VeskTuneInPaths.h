// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

/// \file
/// Paths of the values that the TuneIn plug-in reads from the host, and the path to which the host
/// reports playback.

VESK_API CMPath VeskTuneInPartnerIdPath();
VESK_API CMPath VeskTuneInBrowseIndexUrlPath();
VESK_API CMPath VeskTuneInSupportedStreamsPath();
VESK_API CMPath VeskTuneInEnabledFixItWizardPath();
/// An activate node of the plug-in; each report is a VeskPlayLogicData.
VESK_API CMPath VeskTuneInStateChangePath();
