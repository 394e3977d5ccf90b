// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/TrString.h"
#include "modules/tunein/TuneInRequest.h"
#include "tests/modules/tunein/TuneInHost.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Fault {
    const char *code;
    int number;
    const char *message;
};

const Fault Faults[] = {
    {"validation.email", 1, "The given email address is of invalid form (empty or incorrect)."},
    {"validation.password", 2, "The given password is of invalid form (empty or incorrect)."},
    {"validation.location", 3, "The given postalCode or city/country combination is invalid."},
    {"validation.userNameExists", 4, "The requested account name is already taken."},
    {"validation.emailExists", 5, "The requested email is already registered."},
    {"validation.error", 6, "A validation error occurred."},
    {"validation.deviceNotAssociated", 7, "No associated account"},
    {"validation.deviceExists", 8, "Account already associated."},
};

const VeskTuneInAccountOperation::Enum Operations[] = {VeskTuneInAccountOperation::none,
    VeskTuneInAccountOperation::auth, VeskTuneInAccountOperation::create,
    VeskTuneInAccountOperation::join, VeskTuneInAccountOperation::drop,
    VeskTuneInAccountOperation::query, VeskTuneInAccountOperation::remind,
    VeskTuneInAccountOperation::reset, VeskTuneInAccountOperation::claim};

const char ToErrorSignature[]
    = "static CMError TuneInRequest::tuneInErrorToCMError(const QString&, "
      "const QString&, VeskTuneInAccountOperation::Enum)";

QString message(const QString &faultCode, const QString &status,
    VeskTuneInAccountOperation::Enum operation = VeskTuneInAccountOperation::none)
{
    return TuneInRequest::tuneInErrorToCMError(faultCode, status, operation).message().sourceText();
}

class TuneInFaultTest : public testing::TestWithParam<Fault> { };

} // namespace

TEST_P(TuneInFaultTest, HasItsNumber)
{
    EXPECT_EQ(int(TuneInRequest::parseTuneInFaultCode(QLatin1String(GetParam().code))),
        GetParam().number);
}

TEST_P(TuneInFaultTest, IsRecognisedWithUnderscores)
{
    const QString code
        = QString(QLatin1String(GetParam().code)).replace(QLatin1Char('.'), QLatin1Char('_'));
    EXPECT_EQ(int(TuneInRequest::parseTuneInFaultCode(code)), GetParam().number);
}

TEST_P(TuneInFaultTest, HasItsMessageForAnyStatusAndOperation)
{
    for (const VeskTuneInAccountOperation::Enum operation : Operations) {
        for (const char *status : {"", "400", "403", "200"}) {
            const CMError error = TuneInRequest::tuneInErrorToCMError(
                QLatin1String(GetParam().code), QLatin1String(status), operation);
            EXPECT_EQ(error.message(), TrString("TuneIn", GetParam().message));
            EXPECT_EQ(
                error.name(), CMError::DefaultName() + ":"_s + QString::number(GetParam().number));
            EXPECT_EQ(error.title(), TrString("CMError"_s, CMError::DefaultTitle()));
            EXPECT_EQ(error.size(), 3);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfAccounts, TuneInFaultTest, testing::ValuesIn(Faults),
    [](const testing::TestParamInfo<Fault> &fault) {
        return std::string(fault.param.code + sizeof "validation." - 1);
    });

TEST(TuneInFaultCodeTest, IsZeroWhenEmptyOrUnknown)
{
    for (const char *code : {"", "request.idInvalid", "api.methodNotFound", "id", "validation",
             "validation.", "Validation.Email", "validation.email ", "none", "1"})
        EXPECT_EQ(int(TuneInRequest::parseTuneInFaultCode(QLatin1String(code))), 0) << code;
}

TEST(TuneInFaultCodeTest, IsLogged)
{
    LogCapture log("CB_TuneIn");
    TuneInRequest::parseTuneInFaultCode("validation.email"_s);
    EXPECT_THAT(log.lines(),
        ElementsAre("TRACE Enter static VeskTuneInFaultCode::Enum "
                    "TuneInRequest::parseTuneInFaultCode(const QString&): "
                    "faultCode: 'validation.email'"_s));
}

TEST(TuneInErrorTest, IsAFailedLoginForABare403OfJoin)
{
    const CMError error
        = TuneInRequest::tuneInErrorToCMError(QString(), "403"_s, VeskTuneInAccountOperation::join);
    EXPECT_EQ(error.message(),
        TrString("TuneIn", "Login failed. Please enter a valid username and password."));
    EXPECT_EQ(error.name(), CMError::DefaultName() + ":0"_s);
}

TEST(TuneInErrorTest, IsForbiddenForABare403OfOtherOperations)
{
    for (const VeskTuneInAccountOperation::Enum operation : Operations) {
        if (operation == VeskTuneInAccountOperation::join)
            continue;
        EXPECT_EQ(message(QString(), "403"_s, operation), "Access forbidden."_s);
    }
    EXPECT_EQ(TuneInRequest::tuneInErrorToCMError(QString(), "403"_s).message(),
        TrString("TuneIn", "Access forbidden."));
}

TEST(TuneInErrorTest, IsNotLoggedForABare403)
{
    LogCapture log("CB_TuneIn");
    message(QString(), "403"_s);
    message(QString(), "403"_s, VeskTuneInAccountOperation::join);
    EXPECT_THAT(log.lines("ERROR"_s), IsEmpty());
}

TEST(TuneInErrorTest, IsAFailedRequestForAnUnknownFaultCodeEvenWith403)
{
    LogCapture log("CB_TuneIn");
    EXPECT_EQ(message("request.idInvalid"_s, "403"_s, VeskTuneInAccountOperation::join),
        "TuneIn request failed."_s);
    EXPECT_THAT(log.lines("ERROR"_s),
        ElementsAre("tuneInErrorToCMError: fault code: 'request.idInvalid', http status: '403'"_s));
}

TEST(TuneInErrorTest, IsAFailedRequestForEveryOtherStatus)
{
    for (const char *status : {"", "400", "401", "500", "403 ", " 403", "4030"}) {
        LogCapture log("CB_TuneIn");
        EXPECT_EQ(message(QString(), QLatin1String(status)), "TuneIn request failed."_s) << status;
        EXPECT_THAT(log.lines("ERROR"_s),
            ElementsAre("tuneInErrorToCMError: fault code: '', http status: '"_s
                + QLatin1String(status) + "'"_s));
    }
}

TEST(TuneInErrorTest, LogsItsInputsAndItsCode)
{
    LogCapture log("CB_TuneIn");
    message("validation.error"_s, "400"_s, VeskTuneInAccountOperation::drop);
    const QString enter = "TRACE Enter "_s + QLatin1String(ToErrorSignature) + ": "_s;
    EXPECT_THAT(log.lines(),
        ElementsAre(
            enter + "faultCode: 'validation.error', faultCode: '400', accoutOperation: drop"_s,
            "TRACE Enter static VeskTuneInFaultCode::Enum "
            "TuneInRequest::parseTuneInFaultCode(const QString&): "
            "faultCode: 'validation.error'"_s,
            enter + "VeskTuneInFaultCode: '6'"_s));
}

TEST(TuneInErrorTest, KeepsPlaceholdersOfTheServer)
{
    LogCapture log("CB_TuneIn");
    message("%2"_s, "%1 %3"_s);
    EXPECT_THAT(log.lines("ERROR"_s),
        ElementsAre("tuneInErrorToCMError: fault code: '%2', http status: '%1 %3'"_s));
    EXPECT_TRUE(log.contains("TRACE Enter "_s + QLatin1String(ToErrorSignature)
        + ": faultCode: '%2', faultCode: '%1 %3', accoutOperation: none"_s));
}
