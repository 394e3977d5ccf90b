// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/stations/StationsFixture.h"

#include "modules/stations/StationsFormats.h"

namespace {

class StationsImportTest : public StationsFixture {
protected:
    StationsImportTest() { start(); }

    struct Answer {
        QString error;
        QVariant value;

        int number(const char *key) const { return value.toHash().value(text(key), -1).toInt(); }
        QString message() const
        {
            return TrString::fromVariant(value.toHash().value(text("message"))).toString();
        }
    };

    static Answer send(const QVariant &value)
    {
        const auto reply = set(CMPath(text("Stations"), text("import")), VeskRoles::Value(), value);
        const CMError error = reply->error();
        return {error.isEmpty() ? QString() : error.message().toString(), reply->value()};
    }
    static QVariantHash part(const QByteArray &data, int part, int parts, const char *id = "1")
    {
        return {{text("name"), text("x.m3u")}, {text("id"), text(id)}, {text("part"), part},
            {text("parts"), parts}, {text("data"), QString::fromLatin1(data.toBase64())}};
    }
    static Answer import(const QByteArray &file)
    {
        const int parts = std::max<int>(1, (file.size() + 44999) / 45000);
        Answer answer;
        for (int i = 0; i < parts && answer.error.isEmpty(); ++i)
            answer = send(part(file.mid(i * 45000, 45000), i, parts));
        return answer;
    }
    static QVariantHash exported(const char *format, const QString &folder = {})
    {
        CMPath path(text("Stations"), text("export"), {{text("format"), text(format)}});
        if (!folder.isEmpty())
            path.addParam(text("folder"), folder);
        return data(path).value(VeskRoles::Value()).toHash();
    }
};

const char Unreadable[] = "The part of the file cannot be read.";
const char Incomplete[] = "The file did not arrive completely. Please try again.";

} // namespace

TEST_F(StationsImportTest, AddsWhatIsNew)
{
    add("Mine", "http://a");
    const Answer answer = import(
        "#EXTM3U\n#EXTINF:1,A\nhttp://a\n#EXTINF:1,B\nhttp://b\nhttp://b\nx.mp3\nhttp://c");
    EXPECT_EQ(answer.error, QString());
    EXPECT_EQ(answer.number("added"), 2);
    EXPECT_EQ(answer.number("known"), 2);
    EXPECT_EQ(answer.number("skipped"), 1);
    EXPECT_EQ(answer.message(), text("Left out, without an http or https address: 1"));
    EXPECT_EQ(list(), QStringList({text("Mine"), text("B"), text("c")}));
    EXPECT_EQ(stored().writes().size(), 2) << "a file is one change";
}

TEST_F(StationsImportTest, SaysWhyMostWasLeftOut)
{
    struct Case {
        const char *file;
        const char *message;
    };
    for (const Case &each :
        {Case {"#EXTM3U\nhttp://x1", ""},
            Case {"<opml><body><outline type='link' URL='http://a'/></body></opml>",
                "Left out, links that lead to no station: 1"},
            Case {
                "<opml><body><outline type='link' URL='http://a'/><outline URL='x'/></body></opml>",
                "Left out for several reasons: 2"}})
        EXPECT_EQ(import(each.file).message(), text(each.message));
}

TEST_F(StationsImportTest, PutsFoldersTogether)
{
    const QString folder = addFolder("F");
    add("A", "http://a", folder);
    const Answer answer = import("<opml><body><outline text='F'><outline text='A' URL='http://a'/>"
                                 "<outline text='B' URL='http://b'/></outline>"
                                 "<outline text='G'><outline text='A' URL='http://a'/></outline>"
                                 "<outline text='Empty'/></body></opml>");
    EXPECT_EQ(answer.number("added"), 1);
    EXPECT_EQ(answer.number("known"), 2);
    EXPECT_EQ(list(folder), QStringList({text("A"), text("B")}));
    EXPECT_EQ(list(), QStringList({text("F"), text("Empty")})) << "nothing would be in G";
}

TEST_F(StationsImportTest, WhatIsExportedAndImportedAgainIsTheSameList)
{
    const QString folder = addFolder("F / G");
    add("A, \"live\"", "http://a/?b&c", folder);
    addFolder("Empty", folder);
    add("B", "http://b");
    for (const char *format : {"m3u", "pls", "xspf", "opml"}) {
        SCOPED_TRACE(format);
        const QVariantHash file = exported(format);
        EXPECT_EQ(file.value(text("name")).toString(), text("stations.") + text(format));
        const QByteArray bytes = file.value(text("data")).toString().toUtf8();
        EXPECT_EQ(import(bytes).number("added"), 0);
        EXPECT_EQ(import(bytes).number("known"), 2);
        while (!list().isEmpty()) {
            const QString id
                = itemCalled(list().constFirst().toUtf8().constData()).path().param(text("id"));
            ASSERT_EQ(activate(text("Stations:do/remove?all=1&id=") + id), QString());
        }
        EXPECT_EQ(import(bytes).number("added"), 2);
        EXPECT_EQ(exported(format), file);
        EXPECT_EQ(list(), QStringList({text("F / G"), text("B")}));
    }
}

TEST_F(StationsImportTest, ExportsAFolder)
{
    const QString folder = addFolder("F");
    add("A", "http://a", folder);
    add("B", "http://b");
    EXPECT_EQ(exported("m3u", folder).value(text("data")).toString(),
        text("#EXTM3U\n#PLAYLIST:Stations\n#EXTINF:-1,A\nhttp://a\n"));
}

TEST_F(StationsImportTest, TakesAFileInParts)
{
    EXPECT_EQ(send(part("#EXTM3U\nhttp:", 0, 3)).error, QString());
    EXPECT_EQ(send(part("//a\nht", 1, 3)).value, QVariant());
    EXPECT_EQ(send(part("tp://b", 2, 3)).number("added"), 2);
}

TEST_F(StationsImportTest, TakesTheLargestFile)
{
    QByteArray file = "#EXTM3U\n";
    for (int i = 0; i < StationsLimits::Entries; ++i)
        file += "#EXTINF:-1,Station number " + QByteArray::number(i) + "\nhttp://stations.example/"
            + QByteArray::number(i) + "\n";
    file += QByteArray(StationsLimits::Bytes - file.size(), '#');
    const Answer answer = import(file);
    EXPECT_EQ(answer.error, QString());
    EXPECT_EQ(answer.number("added"), StationsLimits::Entries);
    EXPECT_EQ(import(file).number("known"), StationsLimits::Entries);
    EXPECT_EQ(import(file + '#').error, text("The file is larger than 1 MiB."));
    EXPECT_EQ(import("http://one.more").error, text("The list is full: it has 5,000 entries."));
    EXPECT_EQ(list().size(), StationsLimits::Entries);
}

TEST_F(StationsImportTest, AFileWithAnErrorChangesNothing)
{
    add("A", "http://a");
    const auto before = stored().values();
    EXPECT_EQ(import("<opml><body><outline text='B' URL='http://b'/>").error,
        text("The file is damaged: line 1 cannot be read as XML."));
    EXPECT_EQ(import("hello").error, text("This is no list of stations."));
    stored().refuse(text("The disk is full."));
    EXPECT_EQ(import("http://b").error, text("The disk is full."));
    EXPECT_EQ(stored().values(), before);
    EXPECT_EQ(list(), QStringList(text("A")));
}

TEST_F(StationsImportTest, RefusesPartsThatAreNone)
{
    const auto with = [](const char *key, const QVariant &value) {
        QVariantHash changed = part("http://a", 0, 1);
        changed.insert(text(key), value);
        return changed;
    };
    struct Case {
        QVariant value;
        const char *error;
    };
    for (const Case &each :
        {Case {QVariant(), Unreadable}, Case {text("x"), Unreadable},
            Case {QVariantHash(), Unreadable}, Case {with("data", 7), Unreadable},
            Case {with("data", text("a*b=")), Unreadable},
            Case {with("data", QString(60001, QLatin1Char('A'))), Unreadable},
            Case {with("id", QString()), Unreadable}, Case {with("id", QVariantList()), Unreadable},
            Case {with("id", QString(101, QLatin1Char('a'))), Unreadable},
            Case {with("parts", 0), Unreadable}, Case {with("parts", 25), Unreadable},
            Case {with("parts", text("x")), Unreadable}, Case {with("part", 1), Incomplete},
            Case {with("part", -1), Incomplete}, Case {with("part", QVariant()), Unreadable}})
        EXPECT_EQ(send(each.value).error, text(each.error));
    EXPECT_TRUE(list().isEmpty());
}

TEST_F(StationsImportTest, RefusesPartsOutOfOrder)
{
    send(part("http://a\n", 0, 3));
    EXPECT_EQ(send(part("http://c", 2, 3)).error, text(Incomplete));
    EXPECT_EQ(send(part("http://b", 1, 3)).error, text(Incomplete)) << "it is forgotten";
    send(part("http://a\n", 0, 3));
    EXPECT_EQ(send(part("http://b", 1, 2)).error, text(Incomplete));
    // From the beginning again.
    send(part("http://x\n", 0, 2));
    send(part("http://a\n", 0, 2));
    EXPECT_EQ(send(part("http://b", 1, 2)).number("added"), 2);
    EXPECT_EQ(list(), QStringList({text("a"), text("b")}));
}

TEST_F(StationsImportTest, TakesTwoFilesAtATimeAndForgetsAbandonedOnes)
{
    send(part("http://a\n", 0, 2, "1"));
    send(part("http://b\n", 0, 2, "2"));
    EXPECT_EQ(send(part("http://c\n", 0, 2, "3")).error,
        text("Other files are being imported. Please try again in a minute."));
    EXPECT_EQ(send(part("", 1, 2, "2")).number("added"), 1);
    EXPECT_EQ(send(part("http://c\n", 0, 2, "3")).error, QString());
    callWorker([this] { worker()->import()->setForgetAfter(std::chrono::milliseconds(0)); });
    EXPECT_EQ(send(part("http://d\n", 0, 1, "4")).number("added"), 1);
    EXPECT_EQ(send(part("", 1, 2, "1")).error, text(Incomplete));
    EXPECT_EQ(send(part("", 1, 2, "3")).error, text(Incomplete));
}
