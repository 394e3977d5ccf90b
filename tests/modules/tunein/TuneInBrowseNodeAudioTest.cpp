// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/MimeTypes.h"
#include "api/values/VeskValuePaths.h"
#include "tests/modules/tunein/TuneInFixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

const QByteArray Station
    = R"json({"element":"outline","type":"audio","text":"Example FM (Rock)","subtext":"Rock it","guide_id":"s1",)json"
      R"("URL":"http://opml.radiotime.com/Tune.ashx?id=s1","bitrate":"128","genre_id":"g19","item":"station",)"
      R"("image":"http://i/s1.png"})";
const QByteArray Episode
    = R"({"element":"outline","type":"audio","text":"Episode 12","subtext":"Saturday","guide_id":"t7","item":"topic",)"
      R"("URL":"http://opml.radiotime.com/Tune.ashx?id=t7&sid=p3","image":"http://i/t7.png"})";
const QByteArray Genres
    = screen(R"({"element":"outline","type":"text","text":"Rock","guide_id":"g19"},)"
             R"({"element":"outline","type":"text","text":"Folk","guide_id":"g79"},)"
             R"({"element":"outline","type":"link","text":"No genre","guide_id":"g80"},)"
             R"({"element":"outline","type":"text","text":"No id"})");
const QString Screen = "TuneIn:browse/uri/Browse.ashx?c=x"_s;
const QByteArray GenresRequest
    = "GET /Describe.ashx?c=genres&partnerId=partner&serial=ABC&render=json";
const QString ChoiceScreen = path("TuneIn:browse"_s,
    {{"veskTuneInMethod"_s, "tune"_s}, {"c"_s, "ebrowse"_s}, {"guideId"_s, "s1"_s},
        {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s}, {"veskTitle"_s, "Example FM"_s},
        {"veskDescription"_s, "Rock it"_s}, {"veskIcon"_s, "http://i/s1.png"_s}})
                                 .toEncoded();

class TuneInAudioRowTest : public TuneInFixture {
protected:
    TuneInAudioRowTest()
    {
        answer("/Describe.ashx", Genres);
        start();
        log().clear();
    }

    /// The only row of a screen, as roles.
    VeskRoles row(const QByteArray &element, const QString &path = Screen)
    {
        answer("/Browse.ashx", screen(element));
        answer("/Search.ashx", screen(element));
        answer("/Tune.ashx", screen(element));
        const QStringList names = VeskRoles::all();
        const RowsAnswer answer = rows(path, names);
        EXPECT_TRUE(answer.error.isEmpty());
        EXPECT_EQ(answer.rows.size(), 1);
        VeskRoles roles;
        if (!answer.rows.isEmpty()) {
            for (int i = 0; i < names.size(); ++i)
                roles.insert(names.at(i), answer.rows.constFirst().value(i));
        }
        return roles;
    }

    /// Expects the media data that a station has on every screen.
    static void expectStation(const VeskMetaData &meta, const QString &serviceId = "tunein"_s)
    {
        EXPECT_EQ(meta.serviceID(), serviceId);
        EXPECT_EQ(meta.genre(), "Rock"_s);
        EXPECT_EQ(meta.playbackStateChangePath(), VeskTuneInStateChangePath());
        EXPECT_TRUE(meta.live());
        EXPECT_TRUE(meta.alternativeStreams());
    }

    /// Expects the media data that an episode has on every screen.
    static void expectEpisode(const VeskMetaData &meta)
    {
        EXPECT_EQ(meta.serviceID(), "tunein"_s);
        EXPECT_TRUE(meta.contains("live"_s));
        EXPECT_FALSE(meta.live());
        EXPECT_TRUE(meta.alternativeStreams());
        EXPECT_EQ(meta.contentPlayContextPath().base(), "player_context_show_episode"_s);
        EXPECT_EQ(meta.contentPlayContextPath().param("guideId"_s), "t7"_s);
        EXPECT_EQ(meta.contentPlayContextPath().param("sid"_s), "p3"_s);
    }

    static QString changed(const QByteArray &element, const char *from, const char *to)
    {
        return QString::fromUtf8(element).replace(QLatin1String(from), QLatin1String(to));
    }
};

} // namespace

TEST_F(TuneInAudioRowTest, ShowsAStation)
{
    const VeskRoles roles = row(Station);
    EXPECT_EQ(roles.title().toString(), "Example FM (Rock)"_s);
    EXPECT_EQ(roles.description().toString(), "Rock it"_s);
    EXPECT_EQ(roles.icon(), "http://i/s1.png"_s);
    EXPECT_EQ(roles.type(), VeskRolesType::Audio());
    EXPECT_EQ(roles.audioType(), VeskRolesAudioType::AudioBroadcast());
    EXPECT_EQ(roles.path(), path("TuneIn:browse?veskGuideId=s1"_s));
    EXPECT_TRUE(roles.value("id"_s).isNull());
    EXPECT_TRUE(roles.value("preferred"_s).isNull());
    EXPECT_THAT(log().lines("DEBUG"_s),
        Contains("item 0: 'Example FM (Rock)' (audio - Broadcast item: 'station')"_s));
    EXPECT_THAT(log().lines("DEBUG"_s),
        Contains("isAvailableStreamBrowsing: 0, directStreamBrowsing: 0"_s));
    EXPECT_THAT(log().lines("TRACE"_s), Contains("parent URL: "_s + Screen));
    EXPECT_THAT(log().lines("TRACE"_s).filter("element: {"_s).size(), 1);
}

TEST_F(TuneInAudioRowTest, OffersTheContextMenuOfAStation)
{
    const VeskRoles context = row(Station).context();
    EXPECT_EQ(context.path(),
        path("TuneIn:browser_context"_s,
            {{"guideId"_s, "s1"_s}, {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s}}));
    EXPECT_EQ(context.containerType(), 100);
}

TEST_F(TuneInAudioRowTest, CarriesTheMediaDataOfAStation)
{
    const VeskMediaData media = row(Station).mediaData();
    const VeskMetaData meta = media.metaData();
    EXPECT_EQ(meta.serviceID(), "tunein"_s);
    EXPECT_EQ(meta.genre(), "Rock"_s);
    EXPECT_EQ(meta.playbackStateChangePath(), VeskTuneInStateChangePath());
    ASSERT_EQ(meta.matchingMediaRoles().size(), 1);
    EXPECT_EQ(meta.matchingMediaRoles().at(0).path(), path("TuneIn:browse?veskGuideId=s1"_s));
    EXPECT_EQ(meta.contentPlayContextPath(),
        path("TuneIn:player_context"_s,
            {{"guideId"_s, "s1"_s}, {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s},
                {"veskTitle"_s, "Example FM (Rock)"_s}, {"veskDescription"_s, "Rock it"_s},
                {"veskIcon"_s, "http://i/s1.png"_s}}));
    EXPECT_EQ(meta.prePlayPath(),
        path("TuneIn:browse"_s,
            {{"veskPrePlayCmd"_s, "fetchAvailableStreams"_s},
                {"veskPlayPath"_s, "http://opml.radiotime.com/Tune.ashx?id=s1"_s}}));
    EXPECT_TRUE(meta.live());
    EXPECT_TRUE(meta.alternativeStreams());
    ASSERT_EQ(media.resources().size(), 1);
    EXPECT_EQ(media.activeResource().bitRate(), 128000);
    EXPECT_EQ(media.activeResource().mimeType(), MimeTypes::Audio::m3u());
    EXPECT_EQ(media.activeResource().uri(), "http://opml.radiotime.com/Tune.ashx?id=s1"_s);
    EXPECT_EQ(media.size(), 2);
}

TEST_F(TuneInAudioRowTest, ShowsAnEpisodeAsOnDemand)
{
    const VeskRoles roles = row(Episode);
    EXPECT_EQ(roles.audioType(), VeskRolesAudioType::None());
    EXPECT_FALSE(roles.value("audioType"_s).isNull());
    EXPECT_TRUE(roles.value("context"_s).isNull());
    EXPECT_THAT(log().lines("DEBUG"_s),
        Contains("item 0: 'Episode 12' (audio - On demand item: 'topic')"_s));
    const VeskMetaData meta = roles.mediaData().metaData();
    EXPECT_FALSE(meta.live());
    EXPECT_TRUE(meta.alternativeStreams());
    EXPECT_EQ(meta.contentPlayContextPath(),
        path("TuneIn:player_context_show_episode"_s,
            {{"guideId"_s, "t7"_s}, {"sid"_s, "p3"_s},
                {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=t7"_s},
                {"veskTitle"_s, "Episode 12"_s}, {"veskDescription"_s, "Saturday"_s},
                {"veskIcon"_s, "http://i/t7.png"_s}}));
    EXPECT_EQ(roles.mediaData().activeResource().bitRate(), 0);
    EXPECT_FALSE(roles.mediaData().activeResource().contains("bitRate"_s));
}

TEST_F(TuneInAudioRowTest, ShowsAShowAsABroadcastWithoutContextMenu)
{
    const VeskRoles roles = row(changed(Episode, "topic", "show").toUtf8());
    EXPECT_EQ(roles.audioType(), VeskRolesAudioType::AudioBroadcast());
    EXPECT_TRUE(roles.value("context"_s).isNull());
    EXPECT_EQ(roles.mediaData().metaData().contentPlayContextPath().base(),
        "player_context_show_episode"_s);
    EXPECT_FALSE(roles.mediaData().metaData().live());
}

TEST_F(TuneInAudioRowTest, ReadsTheSidOfShowsAndTopicsOnly)
{
    const VeskMetaData meta
        = row(changed(Station, "Tune.ashx?id=s1", "Tune.ashx?id=s1&sid=p1").toUtf8())
              .mediaData()
              .metaData();
    EXPECT_FALSE(meta.contentPlayContextPath().hasParam("sid"_s));
}

TEST_F(TuneInAudioRowTest, WarnsOfAnEpisodeWithoutSid)
{
    const VeskRoles roles = row(changed(Episode, "&sid=p3", "").toUtf8());
    EXPECT_THAT(log().lines("WARN"_s),
        ElementsAre("Browsing category with show item in it, but without 'sid' attribute set."_s));
    EXPECT_FALSE(roles.mediaData().metaData().contentPlayContextPath().hasParam("sid"_s));
}

TEST_F(TuneInAudioRowTest, NamesTheStationInThePlayersMenu)
{
    const VeskMetaData meta
        = row(changed(Station, R"("item")", R"("station_id":"456","item")").toUtf8())
              .mediaData()
              .metaData();
    EXPECT_EQ(meta.contentPlayContextPath().param("stationId"_s), "456"_s);
}

TEST_F(TuneInAudioRowTest, KeepsEmptyTextsInThePlayersMenu)
{
    const CMPath menu = row(R"({"element":"outline","type":"audio","URL":"http://h/x"})")
                            .mediaData()
                            .metaData()
                            .contentPlayContextPath();
    EXPECT_EQ(menu,
        path("TuneIn:player_context"_s,
            {{"guideId"_s, QString()}, {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId="_s},
                {"veskTitle"_s, QString()}, {"veskDescription"_s, QString()},
                {"veskIcon"_s, QString()}}));
}

TEST_F(TuneInAudioRowTest, IsLiveForStationsOnly)
{
    EXPECT_TRUE(row(Station).mediaData().metaData().live());
    EXPECT_FALSE(
        row(changed(Station, "\"station\"", "\"Station\"").toUtf8()).mediaData().metaData().live());
    EXPECT_FALSE(
        row(changed(Station, "\"station\"", "\"url\"").toUtf8()).mediaData().metaData().live());
}

TEST_F(TuneInAudioRowTest, IgnoresInvalidBitRates)
{
    for (const char *bitrate : {"\"abc\"", "\"-1\"", "\"2147483647\"", "\"99999999999999\"", "\"\"",
             "128.5", "null", "[]"})
        row(changed(Station, "\"128\"", bitrate).toUtf8());
    EXPECT_EQ(
        row(changed(Station, "\"128\"", "64").toUtf8()).mediaData().activeResource().bitRate(),
        64000);
    EXPECT_EQ(
        row(changed(Station, "\"128\"", "\"abc\"").toUtf8()).mediaData().activeResource().bitRate(),
        0);
}

TEST_F(TuneInAudioRowTest, FallsBackToTheLowerCaseUrl)
{
    EXPECT_EQ(row(R"({"element":"outline","type":"audio","url":"http://h/x?a=%20b"})")
                  .mediaData()
                  .activeResource()
                  .uri(),
        "http://h/x?a=%20b"_s);
}

TEST_F(TuneInAudioRowTest, FetchesGenreNamesOnce)
{
    row(Station);
    expectRequests({"GET /Browse.ashx?c=x&" + CommonItems, GenresRequest});
    EXPECT_EQ(
        row(changed(Station, "g19", "g79").toUtf8()).mediaData().metaData().genre(), "Folk"_s);
    EXPECT_EQ(
        row(changed(Station, "g19", "g99").toUtf8()).mediaData().metaData().genre(), QString());
    EXPECT_EQ(
        row(changed(Station, "g19", "g80").toUtf8()).mediaData().metaData().genre(), QString());
    EXPECT_THAT(server().requestLines(), Not(Contains(GenresRequest)));
}

TEST_F(TuneInAudioRowTest, SendsAnEmptyPartnerIdForGenreNames)
{
    stop();
    set(VeskTuneInPartnerIdPath(), QString());
    start();
    row(Station);
    EXPECT_THAT(server().requestLines(),
        Contains("GET /Describe.ashx?c=genres&partnerId=&serial=ABC&render=json"));
}

TEST_F(TuneInAudioRowTest, FetchesNoGenreNamesWithoutAGenre)
{
    EXPECT_EQ(row(Episode).mediaData().metaData().genre(), QString());
    EXPECT_THAT(server().requestLines(), Not(Contains(GenresRequest)));
}

TEST_F(TuneInAudioRowTest, WaitsTenSecondsBeforeItAsksForGenreNamesAgain)
{
    answer("/Describe.ashx", QByteArray(R"({"head":{"status":"500"},"body":[]})"));
    EXPECT_EQ(row(Station).mediaData().metaData().genre(), QString());
    EXPECT_THAT(server().requestLines(), Contains(GenresRequest).Times(1));
    EXPECT_EQ(log().lines("ERROR"_s).filter("Failed to get genre name: "_s).size(), 1);

    log().clear();
    FakeClock::advance(9999);
    EXPECT_EQ(row(Station).mediaData().metaData().genre(), QString());
    EXPECT_THAT(server().requestLines(), Contains(GenresRequest).Times(1));
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Request failed, try later."_s));

    answer("/Describe.ashx", Genres);
    FakeClock::advance(1);
    EXPECT_EQ(row(Station).mediaData().metaData().genre(), "Rock"_s);
    EXPECT_THAT(server().requestLines(), Contains(GenresRequest).Times(2));
}

TEST_F(TuneInAudioRowTest, SharesTheWaitForGenreNamesBetweenNodes)
{
    answer("/Describe.ashx", QByteArray(R"({"head":{"status":"500"},"body":[]})"));
    row(Station);
    EXPECT_THAT(server().requestLines(), Contains(GenresRequest).Times(1));

    stop();
    start();
    answer("/Describe.ashx", Genres);
    log().clear();
    server().clearRequests();
    EXPECT_EQ(row(Station).mediaData().metaData().genre(), QString());
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Request failed, try later."_s));
    expectRequests({"GET /Browse.ashx?c=x&" + CommonItems});
}

TEST_F(TuneInAudioRowTest, FetchesGenreNamesAgainWhenTheListWasEmpty)
{
    answer("/Describe.ashx", screen({}));
    row(Station);
    FakeClock::advance(10000);
    row(Station);
    EXPECT_THAT(server().requestLines(), Contains(GenresRequest).Times(2));
}

TEST_F(TuneInAudioRowTest, MakesTheBrowseNodePlayable)
{
    EXPECT_FALSE(role("TuneIn:browse"_s, "playable"_s).toBool());
    row(R"({"element":"outline","type":"link","text":"x"})");
    EXPECT_FALSE(role("TuneIn:browse"_s, "playable"_s).toBool());
    row(Episode);
    EXPECT_TRUE(role("TuneIn:browse"_s, "playable"_s).toBool());
    row(R"({"element":"outline","type":"link","text":"x"})");
    EXPECT_TRUE(role("TuneIn:browse"_s, "playable"_s).toBool());
}

TEST_F(TuneInAudioRowTest, OffersTheChoiceOfAStationsStreams)
{
    const VeskRoles roles = row(
        R"({"element":"outline","type":"audio","text":"128k MP3","subtext":"sub","guide_id":"e5","bitrate":"128",)"
        R"("URL":"http://opml.radiotime.com/Tune.ashx?id=e5&sid=s1","image":"http://i/e5.png"})",
        ChoiceScreen);
    EXPECT_THAT(log().lines("DEBUG"_s),
        Contains("isAvailableStreamBrowsing: 1, directStreamBrowsing: 0"_s));
    EXPECT_EQ(roles.title().toString(), "Example FM"_s);
    EXPECT_EQ(roles.description().toString(), "128k MP3"_s);
    EXPECT_EQ(roles.icon(), "http://i/e5.png"_s);
    EXPECT_EQ(roles.path(),
        path("TuneIn:browse/uri/Tune.ashx"_s,
            {{"id"_s, "e5"_s}, {"sid"_s, "s1"_s},
                {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s}}));
    EXPECT_TRUE(roles.value("context"_s).isNull());
    const VeskMetaData meta = roles.mediaData().metaData();
    EXPECT_EQ(meta.matchingMediaRoles().at(0).path(), path("TuneIn:browse?veskGuideId=s1"_s));
    EXPECT_EQ(meta.prePlayPath(),
        path("TuneIn:browse"_s,
            {{"veskPrePlayCmd"_s, "updateVeskRoles"_s}, {"veskTitle"_s, "Example FM"_s},
                {"veskDescription"_s, "Rock it"_s}, {"veskIcon"_s, "http://i/s1.png"_s}}));
    EXPECT_EQ(meta.contentPlayContextPath(),
        path("TuneIn:player_context"_s,
            {{"guideId"_s, "e5"_s}, {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s},
                {"veskTitle"_s, "Example FM"_s}, {"veskDescription"_s, "Rock it"_s},
                {"veskIcon"_s, "http://i/s1.png"_s}}));
    EXPECT_EQ(roles.mediaData().activeResource().bitRate(), 128000);
    EXPECT_EQ(roles.mediaData().activeResource().mimeType(), MimeTypes::Audio::m3u());
    EXPECT_EQ(roles.mediaData().activeResource().uri(),
        "http://opml.radiotime.com/Tune.ashx?id=e5&sid=s1"_s);
}

TEST_F(TuneInAudioRowTest, CarriesTheMediaDataOfAStationInAStreamChoice)
{
    const VeskRoles roles
        = row(changed(Station, R"("item")", R"("station_id":"456","item")").toUtf8(), ChoiceScreen);
    EXPECT_TRUE(roles.value("context"_s).isNull());
    EXPECT_EQ(roles.audioType(), VeskRolesAudioType::AudioBroadcast());
    const VeskMetaData meta = roles.mediaData().metaData();
    expectStation(meta);
    EXPECT_EQ(meta.contentPlayContextPath(),
        path("TuneIn:player_context"_s,
            {{"guideId"_s, "s1"_s}, {"stationId"_s, "456"_s},
                {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s},
                {"veskTitle"_s, "Example FM"_s}, {"veskDescription"_s, "Rock it"_s},
                {"veskIcon"_s, "http://i/s1.png"_s}}));

    const VeskRoles episode = row(Episode, ChoiceScreen);
    EXPECT_TRUE(episode.value("context"_s).isNull());
    expectEpisode(episode.mediaData().metaData());
}

TEST_F(TuneInAudioRowTest, TreatsOtherTuneScreensAsNormal)
{
    const QString shown = path("TuneIn:browse"_s,
        {{"veskTuneInMethod"_s, "tune"_s}, {"c"_s, "pbrowse"_s},
            {"guideId"_s,
                "p1"_s}}).toEncoded();
    const VeskRoles roles = row(Station, shown);
    EXPECT_EQ(roles.path(), path("TuneIn:browse?veskGuideId=s1"_s));
    EXPECT_EQ(roles.mediaData().metaData().prePlayPath().param("veskPrePlayCmd"_s),
        "fetchAvailableStreams"_s);
}

TEST_F(TuneInAudioRowTest, OffersAStreamChoiceOnlyAtTheRoot)
{
    // None of these has the matching path that a stream choice needs.
    for (const char *shown : {"TuneIn:browse/other?veskTuneInMethod=tune&c=ebrowse&guideId=s1",
             "TuneIn:browse/uri/Tune.ashx?veskTuneInMethod=tune&c=ebrowse&guideId=s1",
             "TuneIn:browse?veskTuneInMethod=search&c=ebrowse&query=x"}) {
        const VeskRoles roles = row(Station, QLatin1String(shown));
        EXPECT_EQ(roles.title().toString(), "Example FM (Rock)"_s) << shown;
        EXPECT_EQ(roles.path(), path("TuneIn:browse?veskGuideId=s1"_s)) << shown;
        EXPECT_EQ(roles.mediaData().metaData().prePlayPath().param("veskPrePlayCmd"_s),
            "fetchAvailableStreams"_s)
            << shown;
    }
    EXPECT_THAT(log().lines("DEBUG"_s),
        Contains("isAvailableStreamBrowsing: 0, directStreamBrowsing: 0"_s).Times(3));
}

TEST_F(TuneInAudioRowTest, PlaysTheStreamsOfTheTestSearchDirectly)
{
    const QString shown = "TuneIn:browse/uri/Search.ashx?query=aa2"_s;
    const VeskRoles roles = row(Station, shown);
    EXPECT_THAT(log().lines("DEBUG"_s),
        Contains("isAvailableStreamBrowsing: 0, directStreamBrowsing: 1"_s));
    EXPECT_EQ(roles.title().toString(), "Example FM (Rock)"_s);
    EXPECT_EQ(roles.description().toString(), "Rock it"_s);
    EXPECT_EQ(roles.path(), path("TuneIn:browse?veskDirectStream=0"_s));
    EXPECT_TRUE(roles.value("context"_s).isNull());
    const VeskMediaData media = roles.mediaData();
    EXPECT_FALSE(media.metaData().contains("prePlayPath"_s));
    EXPECT_EQ(media.metaData().matchingMediaRoles().at(0).path(),
        path("TuneIn:browse?veskDirectStream=0"_s));
    EXPECT_EQ(media.activeResource().mimeType(), MimeTypes::Audio::unknown());
    EXPECT_FALSE(media.activeResource().contains("bitRate"_s));
    EXPECT_EQ(media.activeResource().uri(), "http://opml.radiotime.com/Tune.ashx?id=s1"_s);
}

TEST_F(TuneInAudioRowTest, CarriesTheMediaDataOfADirectStream)
{
    const QString shown = "TuneIn:browse/uri/Search.ashx?query=aa2"_s;
    const VeskMetaData meta
        = row(changed(Station, R"("item")", R"("station_id":"456","item")").toUtf8(), shown)
              .mediaData()
              .metaData();
    expectStation(meta);
    EXPECT_EQ(meta.contentPlayContextPath(),
        path("TuneIn:player_context"_s,
            {{"guideId"_s, "s1"_s}, {"stationId"_s, "456"_s},
                {"veskMatchingPath"_s, "TuneIn:browse?veskDirectStream=0"_s},
                {"veskTitle"_s, "Example FM (Rock)"_s}, {"veskDescription"_s, "Rock it"_s},
                {"veskIcon"_s, "http://i/s1.png"_s}}));

    const VeskRoles episode = row(Episode, shown);
    EXPECT_TRUE(episode.value("context"_s).isNull());
    expectEpisode(episode.mediaData().metaData());
}

TEST_F(TuneInAudioRowTest, IdentifiesDirectStreamsByTheirIndex)
{
    answer("/Search.ashx",
        screen(R"({"element":"outline","type":"text"},)" + Station + "," + Station));
    EXPECT_EQ(rows("TuneIn:browse/uri/Search.ashx?query=aa2"_s, {"path"_s}).texts(),
        QStringList({QString(), "TuneIn:browse?veskDirectStream=1"_s,
            "TuneIn:browse?veskDirectStream=2"_s}));
}

TEST_F(TuneInAudioRowTest, PlaysOtherSearchesNormally)
{
    for (const char *shown : {"TuneIn:browse/uri/Search.ashx?query=aa1",
             "TuneIn:browse/uri/Search.ashx?query=AA2", "TuneIn:browse/uri/Browse.ashx?query=aa2",
             "TuneIn:browse?veskTuneInMethod=search&query=aa2"})
        EXPECT_EQ(row(Station, QLatin1String(shown)).path(), path("TuneIn:browse?veskGuideId=s1"_s))
            << shown;
}

TEST_F(TuneInAudioRowTest, ShowsSearchResultsLikeOtherScreens)
{
    const VeskRoles station = row(Station);
    const VeskRoles episode = row(Episode);
    for (const char *shown : {"TuneIn:browse?veskTuneInMethod=search&query=x",
             "TuneIn:browse/uri/Search.ashx?query=x", "TuneIn:browse/uri/Search.ashx?query=aa1"}) {
        const VeskRoles found = row(Station, QLatin1String(shown));
        EXPECT_EQ(found, station) << shown;
        EXPECT_EQ(found.context().path().base(), "browser_context"_s) << shown;
        expectStation(found.mediaData().metaData());
        EXPECT_EQ(found.mediaData().metaData().contentPlayContextPath().base(), "player_context"_s)
            << shown;

        const VeskRoles foundEpisode = row(Episode, QLatin1String(shown));
        EXPECT_EQ(foundEpisode, episode) << shown;
        EXPECT_TRUE(foundEpisode.value("context"_s).isNull()) << shown;
        expectEpisode(foundEpisode.mediaData().metaData());
    }
}

TEST_F(TuneInAudioRowTest, CarriesTheServiceIdOfTheConfigurationOnEveryScreen)
{
    stop();
    start({{VeskService_Id(), "radio-2"_s}});
    for (const QString &shown :
        {Screen, ChoiceScreen, "TuneIn:browse"_s, "TuneIn:browse/uri/Search.ashx?query=aa2"_s,
            "TuneIn:browse?veskTuneInMethod=search&query=x"_s}) {
        // On the root screen the favorites come first.
        answerAll(screen(Station));
        answer("/Describe.ashx", Genres);
        const RowsAnswer answer = rows(shown, {"mediaData"_s});
        ASSERT_FALSE(answer.rows.isEmpty()) << shown.toStdString();
        expectStation(
            VeskMediaData(answer.rows.constLast().at(0).toHash()).metaData(), "radio-2"_s);
    }
}

TEST_F(TuneInAudioRowTest, KeepsPlaceholdersAndEscapesInTexts)
{
    const QByteArray element = changed(Station, "Example FM (Rock)", "100%25 %1 & ?=#+").toUtf8();
    const VeskRoles roles = row(element);
    EXPECT_EQ(roles.title().toString(), "100%25 %1 & ?=#+"_s);
    EXPECT_EQ(roles.mediaData().metaData().contentPlayContextPath().param("veskTitle"_s),
        "100%25 %1 & ?=#+"_s);
}

TEST_F(TuneInAudioRowTest, FetchesNoGenreNamesInTheFirstTenSecondsOfTheClock)
{
    // In a process of its own, which has not requested genres yet.
    EXPECT_EXIT(
        {
            FakeClock::setMonotonic(9999);
            const bool refused = row(Station).mediaData().metaData().genre().isEmpty()
                && log().contains("ERROR Request failed, try later."_s)
                && !server().requestLines().contains(GenresRequest);
            FakeClock::setMonotonic(10000);
            const bool served = row(Station).mediaData().metaData().genre() == "Rock"_s;
            std::_Exit(refused && served ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
