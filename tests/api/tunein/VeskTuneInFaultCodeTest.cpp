// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInFaultCode.h"

#include <gtest/gtest.h>

TEST(VeskTuneInFaultCode, IsReadFromItsName)
{
    const char *const names[] = {"validation_email", "validation_password", "validation_location",
        "validation_userNameExists", "validation_emailExists", "validation_error",
        "validation_deviceNotAssociated", "validation_deviceExists"};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(int(VeskTuneInFaultCode::fromString(QString::fromLatin1(names[i]))), i + 1);
}

TEST(VeskTuneInFaultCode, IsNoneForAnyOtherText)
{
    for (const char *name : {"", "none", "validation.email", "Validation_Email", "validation_emai",
             "validation_emails", "request_idInvalid", "1"})
        EXPECT_EQ(
            VeskTuneInFaultCode::fromString(QString::fromLatin1(name)), VeskTuneInFaultCode::none)
            << name;
}
