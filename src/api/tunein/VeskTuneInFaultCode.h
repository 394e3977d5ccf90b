// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>

/// The fault codes of the web API that concern the user, with "_" in place of ".". The numbers are
/// part of error names, so they are fixed.
struct VeskTuneInFaultCode {
    enum Enum : int {
        none = 0,
        validation_email = 1,
        validation_password = 2,
        validation_location = 3,
        validation_userNameExists = 4,
        validation_emailExists = 5,
        validation_error = 6,
        validation_deviceNotAssociated = 7,
        validation_deviceExists = 8
    };
    /// The code with that name; none for any other text.
    VESK_API static Enum fromString(const QString &name);
};
