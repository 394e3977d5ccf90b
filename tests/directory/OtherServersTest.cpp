// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/Fetch.h"
#include "tests/directory/RunningServer.h"
#include "tests/directory/StreamClient.h"
#include "tests/directory/TestDirectory.h"

#include "directory/CatalogLoader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace directory;
using namespace directory::test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A server with the shipped data, which gets requests for the host names of other servers.
class OtherServers : public testing::Test {
protected:
    static FetchOptions naming(const std::string &host)
    {
        FetchOptions options;
        options.header = "Host: " + host;
        options.timeoutMilliseconds = 1500; // a stream has no end
        return options;
    }
    Fetched at(const std::string &host, const std::string &path = "/") const
    {
        return fetch(m_server.url(path), naming(host));
    }

    RunningServer m_server;
};

TEST(OtherServersPath, MapsToTheStreamOfTheServersStation)
{
    const Catalog &catalog = shippedCatalog();
    EXPECT_EQ(pathHere(catalog, "owl.example.com:8002", "/"), "/stream/s29103/1.ogg");
    EXPECT_EQ(pathHere(catalog, "OWL.example.com:8002", "/"), "/stream/s29103/1.ogg");
    EXPECT_EQ(pathHere(catalog, "cloudbase.example.org", "/ambient.mp3"), "/stream/s29111/1.mp3");
    EXPECT_EQ(pathHere(catalog, "estuary.example.net:8014", "/listen.m3u"), "/stream/s29113/1.m3u");
    // Other paths map to this server's own, such as the audio that the playlist names.
    EXPECT_EQ(pathHere(catalog, "estuary.example.net:8014", "/"), "/");
    EXPECT_EQ(pathHere(catalog, "owl.example.com", "/"), "/");
    EXPECT_EQ(pathHere(catalog, "opml.radiotime.com", "/"), "/");
    EXPECT_EQ(pathHere(catalog, "", "/"), "/");
}

TEST_F(OtherServers, EachHaveTheirOwnFault)
{
    EXPECT_EQ(at("copperkettle.example.net:7500").status, 404);
    EXPECT_THAT(at("sevenhills.example.net:8004").body, HasSubstr("<form"));
    EXPECT_EQ(at("hinterland.example.com:8000").code, CURLE_RECV_ERROR);
    const Fetched busy = at("mistral.example.org:8080");
    EXPECT_EQ(busy.status, 503);
    EXPECT_THAT(busy.headers, HasSubstr("Retry-After: 5"));
    const Fetched mute = at("lateferry.example.net:8016");
    EXPECT_EQ(mute.status, 200);
    EXPECT_EQ(mute.code, CURLE_OPERATION_TIMEDOUT);
    EXPECT_EQ(mute.body, "");
    const Fetched playlist = at("estuary.example.net:8014", "/listen.m3u");
    EXPECT_EQ(playlist.status, 200);
    EXPECT_THAT(playlist.body, HasSubstr("http://estuary.example.net:8014/stream/s29113/1.mp3"));
    const Fetched slow = at("cloudbase.example.org", "/ambient.mp3");
    EXPECT_EQ(slow.status, 200);
    EXPECT_GT(slow.body.size(), 6000u);
    EXPECT_LT(slow.body.size(), 24000u);

    FetchOptions following = naming("tramline.example.com:8012");
    following.redirects = 4;
    const Fetched led = fetch(m_server.url("/"), following);
    EXPECT_EQ(led.status, 200);
    EXPECT_THAT(led.headers, HasSubstr("icy-name: Tramline Radio"));
    following = naming("paperlantern.example.org:8020");
    following.redirects = 4;
    EXPECT_EQ(fetch(m_server.url("/"), following).code, CURLE_TOO_MANY_REDIRECTS);
}

TEST_F(OtherServers, ApplyTheirFaultToEveryStream)
{
    const std::string host = "Host: owl.example.com:8002\r\n";
    StreamClient first(m_server.port(), "/", host);
    StreamClient second(m_server.port(), "/", host);
    for (StreamClient *client : {&first, &second}) {
        EXPECT_EQ(client->readToEnd(), StreamClient::End::Closed);
        EXPECT_EQ(client->header("icy-name"), "Night Owl Jazz");
        EXPECT_THAT(client->body(), StartsWith("OggS"));
    }
}

TEST_F(OtherServers, DoNotAffectOtherStreams)
{
    EXPECT_EQ(fetch(m_server.url("/_faults")).body, "{\"faults\":[]}\n");
    FetchOptions clear;
    clear.method = "DELETE";
    fetch(m_server.url("/_faults"), clear);
    EXPECT_EQ(at("copperkettle.example.net:7500").status, 404);
    EXPECT_EQ(fetch(m_server.url("/Browse.ashx")).status, 200);
    // A fault that is set on request takes precedence.
    m_server.fail("http-status@/stream/s29107/:500*1");
    EXPECT_EQ(at("copperkettle.example.net:7500").status, 500);
    EXPECT_EQ(at("copperkettle.example.net:7500").status, 404);
}

} // namespace
