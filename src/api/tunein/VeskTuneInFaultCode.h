// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>

/// The web API's fault codes that mean something to a user, spelled with "_" for ".". The numbers
/// are part of error names, so they never change.
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
    /// The code of that name, none for any other text.
    VESK_API static Enum fromString(const QString &name);
};
