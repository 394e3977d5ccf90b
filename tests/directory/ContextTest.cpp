// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Context.h"

#include "tests/directory/TestDirectory.h"

#include <gtest/gtest.h>

using namespace directory;
using namespace directory::test;

namespace {

std::string addressFor(const std::string &host, bool secure)
{
    ApiRequest request = requestFor("/");
    request.host = host;
    request.secure = secure;
    Members members;
    return Context(request, shippedCatalog(), members, 0).here("/x");
}

TEST(Context, UsesTheHostOfTheRequestInAddresses)
{
    EXPECT_EQ(addressFor("opml.radiotime.com", false), "http://opml.radiotime.com/x");
    EXPECT_EQ(addressFor("[::1]:80", false), "http://[::1]:80/x");
}

TEST(Context, LinksAreHttpUnlessTheHostHasATlsPort)
{
    EXPECT_EQ(addressFor("opml.radiotime.com", true), "http://opml.radiotime.com/x");
    EXPECT_EQ(addressFor("127.0.0.1:8443", true), "https://127.0.0.1:8443/x");
}

TEST(Context, DoesNotRepeatAnInvalidHost)
{
    EXPECT_EQ(addressFor("evil\"><script>", false), "http://127.0.0.1/x");
    EXPECT_EQ(addressFor(std::string(300, 'a'), false), "http://127.0.0.1/x");
    EXPECT_EQ(addressFor("", false), "http://127.0.0.1/x");
}

TEST(Context, AShowMayRunPastMidnight)
{
    const Station *station = nullptr;
    for (const Station &each : shippedCatalog().stations) {
        if (each.name == "Hafenlicht Jazz")
            station = &each;
    }
    ASSERT_NE(station, nullptr);
    const ApiRequest request = requestFor("/");
    Members members;
    const Context context(request, shippedCatalog(), members, 0);
    // Jazz nach Mitternacht begins at 23:00 in Hamburg, 22:00 UTC, and lasts two hours.
    const std::int64_t tenAtNight = MondayMorning - (7 * 60 + 30) * 60 + 22 * 3600;
    EXPECT_EQ(context.onAir(*station, tenAtNight - 1).show, nullptr);
    const Broadcast start = context.onAir(*station, tenAtNight);
    ASSERT_NE(start.show, nullptr);
    EXPECT_EQ(start.show->title, "Jazz nach Mitternacht");
    const Broadcast late = context.onAir(*station, tenAtNight + 7199);
    EXPECT_EQ(late.show, start.show);
    EXPECT_EQ(late.start, tenAtNight);
    EXPECT_EQ(context.onAir(*station, tenAtNight + 7200).show, nullptr);
}

} // namespace
