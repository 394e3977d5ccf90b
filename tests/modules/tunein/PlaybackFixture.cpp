// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/PlaybackFixture.h"

PlaybackFixture::PlaybackFixture()
{
    answer("/Report.ashx", QByteArray(R"({"head":{"status":"200"},"body":[]})"));
}

Answer PlaybackFixture::play(VeskPlayLogicState::Enum state, int playId, const QString &error,
    const QString &uri, const QString &guideId)
{
    VeskResource resource;
    resource.setUri(uri);
    VeskList<VeskResource> resources;
    resources.append(resource);
    VeskMediaData media;
    media.setResources(resources);
    VeskRoles track;
    track.setMediaData(media);
    CMPath shown = path("TuneIn:browse/uri/Tune.ashx"_s);
    if (!guideId.isEmpty())
        shown.addParam("veskMatchingPath"_s,
            path("TuneIn:browse"_s, {{"veskGuideId"_s, guideId}}).toEncoded());
    track.setPath(shown);
    return post(state, playId, error, track);
}

Answer PlaybackFixture::post(
    VeskPlayLogicState::Enum state, int playId, const QString &error, const VeskRoles &track)
{
    VeskPlayLogicData data;
    data.setState(state);
    data.setPlayId(QVariantHash {{"id"_s, playId}});
    data.setError(error);
    data.setTrackRoles(track);
    return setData(VeskTuneInStateChangePath().toEncoded(), VeskRoles::Activate(), data.toHash());
}

QTimer *PlaybackFixture::timer() const
{
    return worker()->findChild<QTimer *>();
}

bool PlaybackFixture::timerIsActive()
{
    bool active = false;
    onWorker([&] { active = timer()->isActive(); });
    return active;
}

void PlaybackFixture::fireTimer()
{
    onWorker([this] {
        ASSERT_TRUE(QMetaObject::invokeMethod(
            worker(), "on_listeningDurationTimer_timeout", Qt::DirectConnection));
    });
}

QList<QByteArray> PlaybackFixture::reports(const QByteArray &start)
{
    QList<QByteArray> result;
    const QList<QByteArray> lines = server().requestLines();
    for (const QByteArray &line : lines) {
        if (line.contains(' ' + start))
            result.append(line);
    }
    return result;
}

QByteArray PlaybackFixture::streamReport(const QByteArray &guideId, const QByteArray &error)
{
    QByteArray line = "GET /Report.ashx?c=stream&id=" + guideId
        + "&streamUrl=http%3A%2F%2Fstream.example%2Flive&listenId="
        + QByteArray::number(FakeClock::epochSeconds());
    if (!error.isEmpty())
        line += "&error=404&message=" + error;
    return line + "&render=json&partnerId=partner&serial=ABC";
}

QByteArray PlaybackFixture::durationReport(
    const QByteArray &guideId, qint64 seconds, bool stopped, const QByteArray &listenId)
{
    // Without \a listenId, that of the preceding stream report.
    QByteArray listen = listenId;
    if (listen.isEmpty() && !streamReports().isEmpty()) {
        const QByteArray report = streamReports().constFirst();
        listen = report.mid(report.indexOf("listenId=") + 9);
        listen.truncate(listen.indexOf('&'));
    }
    return "POST /Report.ashx?c=time&id=" + guideId + "&duration=" + QByteArray::number(seconds)
        + "&listenId=" + listen + (stopped ? "&trigger=stop" : "")
        + "&render=json&partnerId=partner&serial=ABC";
}
