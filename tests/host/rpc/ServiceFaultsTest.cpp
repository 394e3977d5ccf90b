// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/ServiceFaults.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Fault = VeskServiceFault;

const CMPath Opened = CMPath::fromEncoded(QStringLiteral("Radio:list?x=y"));

std::string words(const Fault &fault, const TrString &deviceSetting = {})
{
    ServiceFaults faults;
    faults.declare(CMPath::fromEncoded(QStringLiteral("Other:")), TrString("Other", "Other key"));
    faults.declare(CMPath::fromEncoded(QStringLiteral("Radio:")), deviceSetting);
    return faults.words(Opened, fault).toString().toStdString();
}

TEST(ServiceFaults, HasWordsForEachFault)
{
    const std::vector<std::pair<Fault, const char *>> all {
        {{}, ""},
        {{Fault::Unreachable}, "The Radio service cannot be reached. Please try again later."},
        {{Fault::TimedOut}, "The Radio service does not answer. Please try again later."},
        {{Fault::Insecure}, "There is no secure connection to the Radio service."},
        {{Fault::Broken},
            "The answer of the Radio service did not come whole. Please try again later."},
        {{Fault::Unreadable},
            "What came is no answer of the Radio service. It may be out of order, or this network "
            "may want a login first."},
        {{Fault::HttpStatus, 404}, "The Radio service cannot answer this (HTTP 404)."},
        {{Fault::HttpStatus, 503},
            "The Radio service is out of order (HTTP 503). Please try again later."},
        {{Fault::Reported, 400}, "The Radio service cannot answer this (400)."},
        {{Fault::Reported, 500},
            "The Radio service is out of order (500). Please try again later."},
        {{Fault::HttpStatus, 403}, "The Radio service refuses this device (HTTP 403)."},
    };
    for (const auto &[fault, expected] : all)
        EXPECT_EQ(words(fault), expected);
}

TEST(ServiceFaults, ARefusalNamesTheSettingToCheck)
{
    const TrString key("Radio", "Radio key");
    EXPECT_EQ(words({Fault::HttpStatus, 403}, key),
        "The Radio service refuses this device (HTTP 403). Check the setting \"Radio key\".");
    EXPECT_EQ(words({Fault::Reported, 401}, key),
        "The Radio service refuses this device (401). Check the setting \"Radio key\".");
    EXPECT_EQ(words({Fault::HttpStatus, 403}, TrString()),
        "The Radio service refuses this device (HTTP 403).");
}

TEST(ServiceFaults, NamesAnUndeclaredServiceByItsPrefix)
{
    EXPECT_EQ(ServiceFaults().words(Opened, {Fault::TimedOut}).toString().toStdString(),
        "The Radio service does not answer. Please try again later.");
}

} // namespace
