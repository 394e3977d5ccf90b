// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInFaultCode.h"

#include <QLatin1String>

VeskTuneInFaultCode::Enum VeskTuneInFaultCode::fromString(const QString &name)
{
    static const struct {
        QLatin1String name;
        Enum code;
    } codes[] = {
        {QLatin1String("validation_email"), validation_email},
        {QLatin1String("validation_password"), validation_password},
        {QLatin1String("validation_location"), validation_location},
        {QLatin1String("validation_userNameExists"), validation_userNameExists},
        {QLatin1String("validation_emailExists"), validation_emailExists},
        {QLatin1String("validation_error"), validation_error},
        {QLatin1String("validation_deviceNotAssociated"), validation_deviceNotAssociated},
        {QLatin1String("validation_deviceExists"), validation_deviceExists},
    };
    for (const auto &entry : codes) {
        if (name == entry.name)
            return entry.code;
    }
    return none;
}
