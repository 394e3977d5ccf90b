// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/MimeTypes.h"
#include "tests/modules/tunein/TuneInFixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const QByteArray ThreeStreams = screen(
    R"({"element":"audio","url":"http://stream.example/low.mp3?a=%20b","bitrate":32,"reliability":99,"media_type":"mp3","is_direct":true},)"
    R"({"element":"audio","url":"http://stream.example/high.mp3","bitrate":320,"playlist_type":"m3u"},)"
    R"({"element":"audio","url":"http://stream.example/mid.mp3","bitrate":128})");

class TuneInPrePlayTest : public TuneInFixture {
protected:
    TuneInPrePlayTest()
    {
        VeskMetaData meta;
        meta.setServiceID("tunein"_s);
        meta.setAlternativeStreams(true);
        meta.setGenre("Rock"_s);
        VeskResource resource;
        resource.setUri("http://opml.radiotime.com/Tune.ashx?id=s1"_s);
        resource.setMimeType(MimeTypes::Audio::m3u());
        resource.insert("more"_s, "kept"_s);
        VeskList<VeskResource> resources;
        resources.append(resource);
        resources.append(VeskResource());
        VeskMediaData media;
        media.setMetaData(meta);
        media.setResources(resources);
        media.insert("extra"_s, "kept"_s);
        m_row.setTitle(TrString("x", "Example FM"));
        m_row.setIcon("http://i/s1.png"_s);
        m_row.setPath(path("TuneIn:browse?veskGuideId=s1"_s));
        m_row.setMediaData(media);
        start();
        log().clear();
    }

    /// Applies \a change to the row's meta data and its only resource.
    void changeRow(const std::function<void(VeskMetaData &, VeskResource &)> &change)
    {
        VeskMediaData media = m_row.mediaData();
        VeskMetaData meta = media.metaData();
        VeskResource resource = media.activeResource();
        change(meta, resource);
        VeskList<VeskResource> resources;
        resources.append(resource);
        media.setMetaData(meta);
        media.setResources(resources);
        m_row.setMediaData(media);
    }

    Answer prePlay(const QMap<QString, QString> &params) { return prePlay(params, m_row.toHash()); }

    Answer prePlay(const QMap<QString, QString> &params, const QVariant &value)
    {
        return setData(path("TuneIn:browse"_s, params).toEncoded(), VeskRoles::PrePlay(), value);
    }

    Answer fetch(const QString &playPath = "http://opml.radiotime.com/Tune.ashx?id=s1"_s)
    {
        return prePlay(
            {{"veskPrePlayCmd"_s, "fetchAvailableStreams"_s}, {"veskPlayPath"_s, playPath}});
    }

    static void expectError(const Answer &answer, const char *message, const char *nameEnd = "")
    {
        EXPECT_EQ(answer.error.message(), TrString("TuneIn", message));
        EXPECT_EQ(answer.error.name(), CMError::DefaultName() + QLatin1String(nameEnd));
        EXPECT_EQ(answer.error.title().toString(), CMError::DefaultTitle());
        EXPECT_TRUE(answer.error.title().isTranslatable());
        EXPECT_TRUE(answer.value.isNull());
    }

    VeskRoles m_row;
};

} // namespace

TEST_F(TuneInPrePlayTest, TakesTheFirstStream)
{
    answer("/Tune.ashx", ThreeStreams);
    const Answer answer = fetch();
    ASSERT_TRUE(answer.error.isEmpty()) << answer.errorText().toStdString();
    const VeskRoles roles(VeskHash(answer.value.toHash()));
    const VeskMediaData media = roles.mediaData();
    ASSERT_EQ(media.resources().size(), 1);
    EXPECT_EQ(media.activeResource().uri(), "http://stream.example/low.mp3?a=%20b"_s);
    EXPECT_EQ(media.activeResource().bitRate(), 32000);
    EXPECT_THAT(log().lines("DEBUG"_s),
        Contains("Selected first available stream: url: http://stream.example/low.mp3?a=%20b"_s));
}

TEST_F(TuneInPrePlayTest, TreatsAStreamWithoutPlaylistTypeAsUnknownAudioWithoutAlternatives)
{
    answer("/Tune.ashx", ThreeStreams);
    const VeskMediaData media = VeskRoles(VeskHash(fetch().value.toHash())).mediaData();
    EXPECT_EQ(media.activeResource().mimeType(), MimeTypes::Audio::unknown());
    EXPECT_FALSE(media.metaData().alternativeStreams());
    EXPECT_TRUE(media.metaData().contains("alternativeStreams"_s));
}

TEST_F(TuneInPrePlayTest, TreatsAStreamWithPlaylistTypeAsAPlaylist)
{
    answer("/Tune.ashx",
        screen(R"({"element":"audio","url":"http://h/x.pls","playlist_type":"pls"})"));
    const VeskMediaData media = VeskRoles(VeskHash(fetch().value.toHash())).mediaData();
    EXPECT_EQ(media.activeResource().mimeType(), MimeTypes::Audio::m3u());
    EXPECT_TRUE(media.metaData().alternativeStreams());
    EXPECT_EQ(media.activeResource().bitRate(), 0);
}

TEST_F(TuneInPrePlayTest, KeepsTheRowsAlternativesForAPlaylist)
{
    answer("/Tune.ashx",
        screen(R"({"element":"audio","url":"http://h/x.pls","playlist_type":"pls"})"));
    const auto meta
        = [this] { return VeskRoles(VeskHash(fetch().value.toHash())).mediaData().metaData(); };
    changeRow([](VeskMetaData &row, VeskResource &) { row.setAlternativeStreams(false); });
    EXPECT_FALSE(meta().alternativeStreams());
    changeRow([](VeskMetaData &row, VeskResource &) { row.remove("alternativeStreams"_s); });
    EXPECT_FALSE(meta().contains("alternativeStreams"_s));
}

TEST_F(TuneInPrePlayTest, ClearsTheBitRateWhenTheFirstStreamHasNone)
{
    changeRow([](VeskMetaData &, VeskResource &row) { row.setBitRate(128000); });
    for (const char *first : {R"({"element":"audio","url":"http://h/first"})",
             R"({"element":"audio","url":"http://h/first","bitrate":""})"}) {
        answer("/Tune.ashx",
            screen(first
                + QByteArray(R"(,{"element":"audio","url":"http://h/second","bitrate":320})")));
        const VeskResource resource
            = VeskRoles(VeskHash(fetch().value.toHash())).mediaData().activeResource();
        EXPECT_EQ(resource.uri(), "http://h/first"_s);
        EXPECT_TRUE(resource.contains("bitRate"_s));
        EXPECT_EQ(resource.bitRate(), 0);
    }
}

TEST_F(TuneInPrePlayTest, KeepsOtherDataOfTheRow)
{
    answer("/Tune.ashx", ThreeStreams);
    const VeskRoles roles(VeskHash(fetch().value.toHash()));
    EXPECT_EQ(roles.title(), m_row.title());
    EXPECT_EQ(roles.icon(), m_row.icon());
    EXPECT_EQ(roles.mediaData().value("extra"_s).toString(), "kept"_s);
    EXPECT_EQ(roles.mediaData().activeResource().value("more"_s).toString(), "kept"_s);
    EXPECT_EQ(roles.mediaData().metaData().serviceID(), "tunein"_s);
    EXPECT_EQ(roles.mediaData().metaData().genre(), "Rock"_s);
}

TEST_F(TuneInPrePlayTest, SetsTheUriAndKeepsThePath)
{
    answer("/Tune.ashx", ThreeStreams);
    EXPECT_EQ(VeskRoles(VeskHash(fetch().value.toHash())).path(),
        path("TuneIn:browse/uri/low.mp3"_s,
            {{"a"_s, " b"_s}, {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s}}));
}

TEST_F(TuneInPrePlayTest, AddsAResourceToARowWithoutOne)
{
    answer("/Tune.ashx", ThreeStreams);
    const VeskRoles roles(
        VeskHash(prePlay({{"veskPrePlayCmd"_s, "fetchAvailableStreams"_s},
                             {"veskPlayPath"_s, "http://opml.radiotime.com/Tune.ashx?id=s1"_s}},
            QVariantHash())
                     .value.toHash()));
    ASSERT_EQ(roles.mediaData().resources().size(), 1);
    EXPECT_EQ(roles.mediaData().activeResource().uri(), "http://stream.example/low.mp3?a=%20b"_s);
}

TEST_F(TuneInPrePlayTest, AddsMissingCommonItemsToThePlayPath)
{
    answer("/Tune.ashx", ThreeStreams);
    fetch("http://opml.radiotime.com/Tune.ashx?id=s1"_s);
    fetch("http://opml.radiotime.com/Tune.ashx?id=s1&render=xml&serial=S&partnerId="_s);
    expectRequests({"GET /Tune.ashx?id=s1&render=json&partnerId=partner&serial=ABC",
        "GET /Tune.ashx?id=s1&render=xml&serial=S&partnerId="});
}

TEST_F(TuneInPrePlayTest, LeavesOutAnEmptyPartnerId)
{
    stop();
    set(VeskTuneInPartnerIdPath(), QString());
    start();
    answer("/Tune.ashx", ThreeStreams);
    fetch();
    expectRequests({"GET /Tune.ashx?id=s1&render=json&serial=ABC"});
}

TEST_F(TuneInPrePlayTest, FailsWithoutAPlayPath)
{
    expectError(fetch(QString()), "Empty play path");
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Play path is empty!"_s));
    expectRequests({});
}

TEST_F(TuneInPrePlayTest, PassesOnTheErrorOfTheRequest)
{
    answer("/Tune.ashx",
        QByteArray(R"({"head":{"status":"404","fault":"Invalid method"},"body":[]})"));
    expectError(fetch(), "TuneIn request failed.", ":0");
    EXPECT_THAT(
        log().lines("ERROR"_s).filter(
            "TuneInBrowseNode::setDataRequest: failed to get available streams: failed: error: '"_s),
        SizeIs(1));

    closeServer();
    expectError(fetch(), "Invalid data received.");
    openServer();
    setNetwork(false);
    EXPECT_TRUE(fetch().error.name().contains("7"_s));
}

TEST_F(TuneInPrePlayTest, FailsWhenThereAreNoStreams)
{
    answer("/Tune.ashx", screen({}));
    expectError(fetch(), "No available streams.");
    EXPECT_FALSE(log().lines("ERROR"_s).isEmpty());
}

TEST_F(TuneInPrePlayTest, UpdatesTheTextsOfAChosenStream)
{
    const Answer answer
        = prePlay({{"veskPrePlayCmd"_s, "updateVeskRoles"_s}, {"veskTitle"_s, "Example & FM"_s},
            {"veskDescription"_s, "Rock it"_s}, {"veskIcon"_s, "http://i/x.png"_s}});
    ASSERT_TRUE(answer.error.isEmpty());
    const VeskRoles roles(VeskHash(answer.value.toHash()));
    EXPECT_EQ(roles.title().toString(), "Example & FM"_s);
    EXPECT_EQ(roles.description().toString(), "Rock it"_s);
    EXPECT_EQ(roles.icon(), "http://i/x.png"_s);
    EXPECT_EQ(roles.mediaData(), m_row.mediaData());
    EXPECT_EQ(roles.path(), m_row.path());
    expectRequests({});
}

TEST_F(TuneInPrePlayTest, ClearsTextsMissingFromAChosenStream)
{
    VeskRoles row = m_row;
    row.setDescription(TrString("x", "Rock it"));
    const QMap<QString, QString> without {{"veskPrePlayCmd"_s, "updateVeskRoles"_s}};
    QMap<QString, QString> empty = without;
    for (const char *param : {"veskTitle", "veskDescription", "veskIcon"})
        empty.insert(QLatin1String(param), QString());
    for (const auto &params : {without, empty}) {
        const Answer answer = prePlay(params, row.toHash());
        ASSERT_TRUE(answer.error.isEmpty());
        const VeskRoles roles(VeskHash(answer.value.toHash()));
        EXPECT_EQ(roles.title().toString(), QString());
        EXPECT_EQ(roles.description().toString(), QString());
        EXPECT_EQ(roles.icon(), QString());
        EXPECT_EQ(roles.path(), m_row.path());
    }
}

TEST_F(TuneInPrePlayTest, LogsTheCommandAndTheRoles)
{
    prePlay({{"veskPrePlayCmd"_s, "updateVeskRoles"_s}});
    EXPECT_TRUE(log().contains(
        "TRACE veskPrePlayCmd: 'updateVeskRoles' request path: 'TuneIn:browse?veskPrePlayCmd=updateVeskRoles'"_s));
    EXPECT_THAT(log().lines("TRACE"_s).filter("Previous VeskRoles:"_s), SizeIs(1));
    EXPECT_THAT(log().lines("TRACE"_s).filter("New VeskRoles:"_s), SizeIs(1));
}

TEST_F(TuneInPrePlayTest, FailsForAnUnknownCommand)
{
    expectError(prePlay({{"veskPrePlayCmd"_s, "dance"_s}}), "Invalid pre-play command");
    ASSERT_THAT(log().lines("ERROR"_s), SizeIs(1));
    EXPECT_TRUE(log().lines("ERROR"_s).constFirst().startsWith(
        "Not implemented pre-play command: 'dance"_s));
    expectError(prePlay({}), "Invalid pre-play command");
}

TEST_F(TuneInPrePlayTest, LeavesOtherRolesToTheBase)
{
    const Answer answer = setData("TuneIn:browse"_s, "title"_s, "x"_s);
    EXPECT_FALSE(answer.error.isEmpty());
    EXPECT_THAT(log().lines("TRACE"_s).filter("veskPrePlayCmd"_s), IsEmpty());
}

TEST_F(TuneInPrePlayTest, SurvivesMalformedRoles)
{
    answer("/Tune.ashx", ThreeStreams);
    for (const QVariant &value :
        {QVariant(), QVariant(3), QVariant("x"_s), QVariant(QVariantList {1}),
            QVariant(QVariantHash {{"mediaData"_s, "x"_s}, {"path"_s, 7}}),
            QVariant(QVariantHash {
                {"mediaData"_s, QVariantHash {{"metaData"_s, 1}, {"resources"_s, "x"_s}}}}),
            QVariant(QVariantHash {
                {"mediaData"_s, QVariantHash {{"resources"_s, QVariantList {1, "x"_s}}}}})}) {
        const Answer answer
            = prePlay({{"veskPrePlayCmd"_s, "fetchAvailableStreams"_s},
                          {"veskPlayPath"_s, "http://opml.radiotime.com/Tune.ashx?id=s1"_s}},
                value);
        EXPECT_TRUE(answer.error.isEmpty());
        EXPECT_EQ(VeskRoles(VeskHash(answer.value.toHash())).mediaData().activeResource().bitRate(),
            32000);
    }
}

TEST_F(TuneInPrePlayTest, SurvivesStreamsOfOddShapes)
{
    for (const char *stream : {"{}", "1", "null", "[]", "\"http://h/x\"",
             R"({"url":7,"bitrate":"x"})", R"({"url":"http://h/x","bitrate":"2147483647"})",
             R"({"url":"http://h/x","bitrate":99999999999999999999})",
             R"({"url":"\u0000\u0001","bitrate":-5})"}) {
        answer("/Tune.ashx", screen(stream));
        EXPECT_TRUE(fetch().error.isEmpty()) << stream;
    }
}

TEST_F(TuneInPrePlayTest, SurvivesMalformedPlayPaths)
{
    for (const char *playPath :
        {"x", "://", "http://", "file:///etc/passwd", "%", "http://opml.radiotime.com:99999/"})
        EXPECT_FALSE(fetch(QLatin1String(playPath)).error.isEmpty()) << playPath;
}

TEST_F(TuneInPrePlayTest, PlaysAListedRow)
{
    answer("/Tune.ashx", ThreeStreams);
    answer("/Browse.ashx",
        screen(R"({"element":"outline","type":"audio","text":"A","guide_id":"s9","item":"station",)"
               R"("URL":"http://opml.radiotime.com/Tune.ashx?id=s9&filter=a%2Bb"})"));
    const RowsAnswer answer = rows("TuneIn:browse/uri/Browse.ashx"_s, {"mediaData"_s, "path"_s});
    ASSERT_EQ(answer.rows.size(), 1);
    const QVariantHash row {
        {"mediaData"_s, answer.rows.at(0).at(0)}, {"path"_s, answer.rows.at(0).at(1)}};
    const CMPath step = VeskMediaData(row.value("mediaData"_s).toHash()).metaData().prePlayPath();
    server().clearRequests();
    const Answer played = setData(step.toEncoded(), VeskRoles::PrePlay(), row);
    ASSERT_TRUE(played.error.isEmpty());
    expectRequests({"GET /Tune.ashx?id=s9&filter=a%2Bb&render=json&partnerId=partner&serial=ABC"});
    EXPECT_EQ(VeskRoles(VeskHash(played.value.toHash())).path().param("veskMatchingPath"_s),
        "TuneIn:browse?veskGuideId=s9"_s);
}

TEST_F(TuneInPrePlayTest, PlaysAChosenStreamOfAnItemWithoutIcon)
{
    answer("/Tune.ashx",
        screen(R"({"element":"outline","type":"audio","text":"128k MP3","guide_id":"e5",)"
               R"("URL":"http://opml.radiotime.com/Tune.ashx?id=e5","image":"http://i/e5.png"})"));
    const CMPath choice = path("TuneIn:browse"_s,
        {{"veskTuneInMethod"_s, "tune"_s}, {"c"_s, "ebrowse"_s}, {"guideId"_s, "s1"_s},
            {"veskMatchingPath"_s, "TuneIn:browse?veskGuideId=s1"_s},
            {"veskTitle"_s, "Example FM"_s}, {"veskDescription"_s, "Rock it"_s},
            {"veskIcon"_s, QString()}});
    const RowsAnswer answer = rows(choice.toEncoded(), {"mediaData"_s, "icon"_s});
    ASSERT_EQ(answer.rows.size(), 1);
    const QVariantHash row {
        {"mediaData"_s, answer.rows.at(0).at(0)}, {"icon"_s, answer.rows.at(0).at(1)}};
    EXPECT_EQ(row.value("icon"_s).toString(), "http://i/e5.png"_s);
    const CMPath step = VeskMediaData(row.value("mediaData"_s).toHash()).metaData().prePlayPath();
    EXPECT_TRUE(step.hasParam("veskIcon"_s));
    EXPECT_EQ(step.param("veskIcon"_s), QString());

    const Answer played = setData(step.toEncoded(), VeskRoles::PrePlay(), row);
    ASSERT_TRUE(played.error.isEmpty());
    const VeskRoles roles(VeskHash(played.value.toHash()));
    EXPECT_EQ(roles.title().toString(), "Example FM"_s);
    EXPECT_EQ(roles.icon(), QString());
}
