// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include <gmock/gmock.h>

using namespace directory;
using namespace directory::test;
using testing::ElementsAre;

namespace {

class Preset : public DirectoryTest {
protected:
    std::string change(const std::string &query)
    {
        return statusOf(json("/Preset.ashx?render=json&serial=S&" + query));
    }
    Json presets(const std::string &extra = {})
    {
        return json("/Browse.ashx?c=presets&serial=S" + extra);
    }
    std::string m_station = stationNamed("The Half Door").id;
    std::string m_show = showNamed("Morning Folk").id;
};

TEST_F(Preset, AddedStationsAndShowsAppearInTheFavorites)
{
    EXPECT_EQ(presets()["body"][0]["text"], "No stations or shows available");
    EXPECT_EQ(change("c=add&id=" + m_station), "200");
    EXPECT_EQ(change("c=add&id=" + m_show), "200");
    const Json rows = presets()["body"];
    EXPECT_THAT(valuesOf(rows, "guide_id"), ElementsAre(m_station, m_show));
    EXPECT_EQ(rows[0]["is_preset"], "true");
    EXPECT_EQ(rows[0]["preset_number"], "1");
    EXPECT_EQ(rows[0]["text"], "94.7 | The Half Door (Folk)");
    EXPECT_EQ(body("/Describe.ashx?serial=S&id=" + m_station)[0]["is_preset"], true);
    EXPECT_EQ(body("/Describe.ashx?serial=other&id=" + m_station)[0]["is_preset"], false);
}

TEST_F(Preset, RemovedPresetsDisappear)
{
    change("c=add&id=" + m_station);
    EXPECT_EQ(change("c=remove&id=" + m_station), "200");
    EXPECT_EQ(change("c=remove&id=" + m_station), "200");
    EXPECT_EQ(body("/Describe.ashx?serial=S&id=" + m_station)[0]["is_preset"], false);
}

TEST_F(Preset, AddingTwiceKeepsOne)
{
    change("c=add&id=" + m_station);
    EXPECT_EQ(change("c=add&id=" + m_station), "200");
    EXPECT_EQ(presets()["body"].size(), 1u);
}

TEST_F(Preset, AcceptsTheUsersOwnAddress)
{
    EXPECT_EQ(change("c=add&url=http%3A%2F%2Fhost.example%3A8000%2Flive&name=Mine"), "200");
    const Json row = presets()["body"][0];
    EXPECT_EQ(row["type"], "link");
    EXPECT_EQ(row["item"], "url");
    EXPECT_EQ(row["URL"], "http://host.example:8000/live");
    EXPECT_EQ(change("c=remove&id=" + std::string(row["guide_id"])), "200");
    EXPECT_EQ(presets()["body"][0]["type"], "text");
    EXPECT_EQ(change("c=add&url=javascript%3Aalert(1)"), "400");
    EXPECT_EQ(change("c=add&url=http%3A%2F%2Fx%2F" + std::string(2001, 'a')), "400");
}

TEST_F(Preset, FoldersCanBeMadeRenamedListedAndRemoved)
{
    const Json made = body("/Preset.ashx?c=addFolder&serial=S&name=Morning");
    const std::string folder = made[0]["guide_id"];
    EXPECT_EQ(change("c=add&id=" + m_station + "&folderId=" + folder), "200");
    EXPECT_THAT(valuesOf(body("/Preset.ashx?c=listFolders&serial=S"), "text"),
        ElementsAre("General", "Morning"));

    const Json links = presets()["body"];
    EXPECT_THAT(valuesOf(links, "guide_id"), ElementsAre("f1", folder));
    EXPECT_EQ(body(targetOf(links[1]))[0]["guide_id"], m_station);
    EXPECT_EQ(body(targetOf(links[0]))[0]["type"], "text");

    EXPECT_EQ(change("c=renameFolder&name=Evening&folderId=" + folder), "200");
    EXPECT_EQ(presets()["body"][1]["text"], "Evening");
    EXPECT_EQ(change("c=removeFolder&folderId=" + folder), "200");
    EXPECT_EQ(change("c=removeFolder&folderId=f1"), "400");
    EXPECT_EQ(presets()["body"][0]["type"], "text");
}

TEST_F(Preset, RefusesUnknownIdsAndFolders)
{
    EXPECT_EQ(change("c=add&id=s0"), "400");
    EXPECT_EQ(change("c=add"), "400");
    EXPECT_EQ(change("c=add&id=" + m_station + "&folderId=f9"), "400");
    EXPECT_EQ(change("c=addFolder&name="), "400");
    EXPECT_EQ(change("c=nope"), "404");
    EXPECT_EQ(statusOf(json("/Preset.ashx?c=add&id=" + m_station)), "400");
    EXPECT_EQ(statusOf(json("/Browse.ashx?c=presets&serial=S&id=f9")), "400");
}

TEST_F(Preset, TheNumberOfPresetsIsBounded)
{
    int refused = 0;
    for (const Station &station : catalog().stations)
        refused += change("c=add&id=" + station.id) == "400" ? 1 : 0;
    EXPECT_EQ(presets("&formats=*")["body"].size(), Library::MaxPresets);
    EXPECT_EQ(refused, static_cast<int>(catalog().stations.size() - Library::MaxPresets));
}

TEST_F(Preset, TheNumberOfDevicesIsBounded)
{
    for (std::size_t i = 0; i < Members::MaxDevices; ++i)
        answer("/Preset.ashx?c=listFolders&serial=n" + std::to_string(i));
    EXPECT_EQ(statusOf(json("/Preset.ashx?c=listFolders&serial=onemore")), "400");
    EXPECT_EQ(statusOf(json("/Preset.ashx?c=listFolders&serial=n1")), "200");
}

TEST_F(Preset, AnUnknownUserGetsAnEmptyListWithoutATitle)
{
    EXPECT_EQ(answer("/Browse.ashx?c=presets&username=nobody").body,
        R"({"head":{"status":"200"},"body":[]})");
}

TEST_F(Preset, AJoinedDeviceUsesThePresetsOfItsAccount)
{
    answer(
        "/Account.ashx?c=create&username=me&password=sesame&email=me@x.org&postalCode=1", "POST");
    answer("/Account.ashx?c=join&username=me&password=sesame&serial=S", "POST");
    EXPECT_EQ(change("c=add&id=" + m_station), "200");
    EXPECT_EQ(presets()["head"]["title"], "me's Favorites");
    EXPECT_EQ(body("/Browse.ashx?c=presets&username=me")[0]["guide_id"], m_station);
    answer("/Account.ashx?c=join&username=me&password=sesame&serial=T", "POST");
    EXPECT_EQ(body("/Browse.ashx?c=presets&serial=T")[0]["guide_id"], m_station);
    EXPECT_EQ(statusOf(json("/Preset.ashx?c=listFolders&username=me&password=wrong")), "403");
    EXPECT_EQ(statusOf(json("/Preset.ashx?c=listFolders&username=me&password=sesame")), "200");
}

} // namespace
