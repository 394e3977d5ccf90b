// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

/// \file
/// Paths of values that every host provides, and keys of the configuration that it passes to its
/// plug-ins.

VESK_API CMPath VeskChildElementsInSingleListPath();
/// A BCP 47 language tag.
VESK_API CMPath VeskUILanguagePath();
/// A unique id of this device: 32 hexadecimal digits.
VESK_API CMPath VeskSystemMemberIdPath();
VESK_API CMPath VeskNetworkStateEthernetMAC();
VESK_API CMPath VeskNetworkStateConnected();

/// Configuration key: the host's id of the plug-in's service.
VESK_API const QString &VeskService_Id();
