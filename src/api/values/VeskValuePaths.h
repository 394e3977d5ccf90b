// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

/// \file
/// Paths of values that every host offers, and keys of the configuration it gives its plug-ins.

VESK_API CMPath VeskChildElementsInSingleListPath();
/// A BCP 47 language tag.
VESK_API CMPath VeskUILanguagePath();
/// 32 hexadecimal digits that tell this device from all others.
VESK_API CMPath VeskSystemMemberIdPath();
VESK_API CMPath VeskNetworkStateEthernetMAC();
VESK_API CMPath VeskNetworkStateConnected();

/// Configuration key of the id under which the host knows a plug-in's service.
VESK_API const QString &VeskService_Id();
