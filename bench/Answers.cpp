// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "bench/Answers.h"

#include "api/values/VeskRoles.h"

#include <QList>
#include <QPair>

namespace {

constexpr int GenreCount = 20;

QByteArray entry(const char *key, const QByteArray &value)
{
    return QByteArray("\"") + key + "\":\"" + value + "\"";
}

QByteArray station(int number)
{
    const QByteArray id = "s" + QByteArray::number(10000 + number * 7);
    const QList<QByteArray> entries {
        entry("element", "outline"),
        entry("type", "audio"),
        entry("text", "Harbour Radio " + QByteArray::number(number) + " (Port Example, Nowhere)"),
        entry("URL",
            "http://opml.radiotime.com/Tune.ashx?id=" + id
                + "&partnerId=local&serial=0123456789abcdef0123456789abcdef&formats=mp3,aac,ogg"),
        entry("bitrate", number % 3 ? "128" : "64"),
        entry("reliability", QByteArray::number(90 + number % 10)),
        entry("guide_id", id),
        entry("subtext", "The Paper Boats - A Song About Number " + QByteArray::number(number)),
        entry("genre_id", "g" + QByteArray::number(number % GenreCount)),
        entry("formats", number % 3 ? "mp3" : "aac,mp3"),
        entry("item", "station"),
        entry("image", "http://cdn-profiles.example.com/" + id + "/images/logoq.png?t=15983100000"),
        entry("now_playing_id", id),
        entry("preset_id", id),
    };
    return "{ " + entries.join(",\n  ") + " }";
}

QByteArray answer(const QByteArray &title, const QList<QByteArray> &body)
{
    return "{ \"head\": { \"title\": \"" + title + "\", \"status\": \"200\" },\n\"body\": [\n"
        + body.join(",\n") + "\n] }\n";
}

} // namespace

QByteArray stationsAnswer(int count)
{
    QList<QByteArray> body;
    for (int i = 0; i < count; ++i)
        body.append(station(i));
    return answer("Stations", body);
}

QByteArray shortStationsAnswer(int count, const QByteArray &name)
{
    QList<QByteArray> body;
    for (int i = 0; i < count; ++i) {
        const QByteArray id = "s" + QByteArray::number(i);
        body.append("{" + entry("element", "outline") + "," + entry("type", "audio") + ","
            + entry("text", name + " " + id) + "," + entry("URL", "/Tune.ashx?id=" + id) + "}");
    }
    return answer("Stations", body);
}

QByteArray rootAnswer()
{
    const QList<QPair<QByteArray, QByteArray>> menu {
        {"Local Radio", "local"},
        {"Music", "music"},
        {"Talk", "talk"},
        {"Sports", "sports"},
        {"By Location", "location"},
        {"By Language", "language"},
        {"Podcasts", "podcast"},
    };
    QList<QByteArray> body;
    for (const auto &item : menu) {
        body.append("{ \"element\":\"outline\",\"type\":\"link\",\"text\":\"" + item.first
            + "\",\"URL\":\"http://opml.radiotime.com/Browse.ashx?c=" + item.second
            + "&partnerId=local&serial=0123456789abcdef0123456789abcdef\",\"key\":\"" + item.second
            + "\" }");
    }
    return answer("Browse", body);
}

QByteArray genresAnswer()
{
    QList<QByteArray> body;
    for (int i = 0; i < GenreCount; ++i) {
        const QByteArray number = QByteArray::number(i);
        body.append("{ \"element\":\"outline\",\"type\":\"text\",\"text\":\"Genre " + number
            + "\",\"guide_id\":\"g" + number + "\" }");
    }
    return answer("Genres", body);
}

const QStringList &pageRoles()
{
    static const QStringList roles {
        VeskRoles::Title(),
        VeskRoles::Description(),
        VeskRoles::Icon(),
        VeskRoles::Type(),
        VeskRoles::AudioType(),
        VeskRoles::Path(),
        VeskRoles::Context(),
        VeskRoles::MediaData(),
        VeskRoles::Id(),
        VeskRoles::Preferred(),
    };
    return roles;
}
