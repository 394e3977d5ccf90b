// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

/// \file
/// Where the host keeps what the TuneIn plug-in reads, and where it reports playback.

VESK_API CMPath VeskTuneInPartnerIdPath();
VESK_API CMPath VeskTuneInBrowseIndexUrlPath();
VESK_API CMPath VeskTuneInSupportedStreamsPath();
VESK_API CMPath VeskTuneInEnabledFixItWizardPath();
/// An activate node: each report is a VeskPlayLogicData.
VESK_API CMPath VeskTuneInStateChangePath();
