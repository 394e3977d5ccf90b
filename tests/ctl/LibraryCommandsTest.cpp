// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

const QString ClearCall = QStringLiteral("recents.clear");
const QString AddCall = QStringLiteral("favorites.add");
const QString RemoveCall = QStringLiteral("favorites.remove");
const QString ExportCall = QStringLiteral("library.export");
const QString ImportCall = QStringLiteral("library.import");
const QByteArray Done = R"("result":{})";

QString stateOf(const char *path)
{
    return QStringLiteral("favorites.state ") + QLatin1String(path);
}

class LibraryCommandsTest : public testing::Test {
protected:
    LibraryCommandsTest()
    {
        m_host.setScreen(QStringLiteral("host:services"),
            {serviceRow("good", "Good"), serviceRow("other", "Other")});
        m_host.setScreen(QStringLiteral("host:recents"),
            {row(3, "One", "a:1"), row(3, "Two", "b:2"), row(3, "Three", "a:3")});
        m_host.setScreen(QStringLiteral("host:recents?service=good"), {row(3, "One", "a:1")});
        m_host.setScreen(QStringLiteral("host:favorites"), {row(3, "Two", "b:2")});
        m_host.setResult(ClearCall, Done);
        m_host.setResult(stateOf("a:1"), R"("result":{"favorite":false})");
        m_host.setResult(stateOf("b:2"), R"("result":{"favorite":true})");
        m_host.setResult(AddCall, R"("result":{"id":1})");
        m_host.setResult(RemoveCall + QStringLiteral(" b:2"), Done);
        m_host.setResult(RemoveCall, Done);
        m_host.setResult(
            QStringLiteral("player.state"), R"("result":{"state":2,"title":"One","path":"a:1"})");
        m_host.setResult(ExportCall,
            R"("result":{"library":{"version":1,"favorites":[{"title":"a\u001bb"}],"presets":[]}})");
        m_host.setResult(ImportCall, R"("result":{"favorites":2,"presets":1})");
    }

    QString file(const QByteArray &content)
    {
        QFile file(m_folder.filePath(QStringLiteral("in.json")));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    Outcome import(const QString &name)
    {
        return run(m_host.url(), {QStringLiteral("library"), QStringLiteral("import"), name});
    }

    FakeHost m_host;
    const QTemporaryDir m_folder;
};

TEST_F(LibraryCommandsTest, ShowsWhatWasPlayed)
{
    const Outcome outcome = run(m_host.url(), words("recents"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out,
        "host:recents#0\taudio\tOne\t\tplaying\n"
        "host:recents#1\taudio\tTwo\t\t\n"
        "host:recents#2\taudio\tThree\t\t\n");
    EXPECT_EQ(run(m_host.url(), words("recents --in good --limit 1")).out,
        "host:recents?service=good#0\taudio\tOne\t\tplaying\n");
    EXPECT_EQ(run(m_host.url(), words("good recents")).status, 0);
    EXPECT_EQ(run(m_host.url(), words("recents --in nowhere")).status, 2);
}

TEST_F(LibraryCommandsTest, WhatWasPlayedCanBePlayedByItsNumber)
{
    m_host.setResult(QStringLiteral("player.play"), R"("result":{"playId":{"id":"1"}})");
    const Surroundings terminal {{}, 80, m_folder.path(), QStringLiteral("1")};
    run(m_host.url(), words("recents"), terminal);
    EXPECT_EQ(run(m_host.url(), words("play 1"), terminal).status, 0);
    EXPECT_EQ(m_host.paramsOf(QStringLiteral("player.play")),
        (QVariantHash {{QStringLiteral("screen"), QStringLiteral("host:recents")},
            {QStringLiteral("row"), 1}, {QStringLiteral("path"), QStringLiteral("b:2")}}));
}

TEST_F(LibraryCommandsTest, ForgetsWhatWasPlayed)
{
    EXPECT_EQ(run(m_host.url(), words("recents --clear")).out, "forgotten: what was played\n");
    EXPECT_EQ(m_host.paramsOf(ClearCall), QVariantHash());
    EXPECT_EQ(run(m_host.url(), words("recents --clear --in other")).status, 0);
    EXPECT_EQ(m_host.paramsOf(ClearCall),
        (QVariantHash {{QStringLiteral("service"), QStringLiteral("other")}}));
}

TEST_F(LibraryCommandsTest, ShowsTheStars)
{
    EXPECT_EQ(run(m_host.url(), words("stars")).out, "host:favorites#0\taudio\tTwo\t\t\n");
}

TEST_F(LibraryCommandsTest, StarsARowOrWhatPlays)
{
    EXPECT_EQ(run(m_host.url(), words("star add")).out, "One: starred now\n");
    EXPECT_EQ(m_host.paramsOf(AddCall), QVariantHash());
    EXPECT_EQ(run(m_host.url(), words("star add host:recents 0")).out, "One: starred now\n");
    EXPECT_EQ(m_host.paramsOf(AddCall),
        (QVariantHash {{QStringLiteral("screen"), QStringLiteral("host:recents")},
            {QStringLiteral("row"), 0}, {QStringLiteral("path"), QStringLiteral("a:1")}}));
    EXPECT_EQ(m_host.timesAsked(AddCall), 2);
    EXPECT_EQ(run(m_host.url(), words("star add host:recents 1")).out, "Two: starred already\n");
    EXPECT_EQ(m_host.timesAsked(AddCall), 2);
    EXPECT_EQ(run(m_host.url(), words("--json star add")).out,
        "{\"changed\":true,\"favorite\":true,\"title\":\"One\"}\n");
}

TEST_F(LibraryCommandsTest, RemovesAStar)
{
    EXPECT_EQ(run(m_host.url(), words("star remove host:favorites 0")).out,
        "Two: not starred any more\n");
    EXPECT_EQ(m_host.paramsOf(RemoveCall).value(QStringLiteral("path")), QStringLiteral("b:2"));
    EXPECT_EQ(run(m_host.url(), words("star remove")).out, "One: not starred\n");
    EXPECT_EQ(m_host.timesAsked(RemoveCall), 0);
    m_host.setResult(stateOf("a:1"), R"("result":{"favorite":true})");
    EXPECT_EQ(run(m_host.url(), words("star remove")).out, "One: not starred any more\n");
    EXPECT_EQ(m_host.paramsOf(RemoveCall), QVariantHash());
}

TEST_F(LibraryCommandsTest, WritesTheLibrary)
{
    EXPECT_EQ(run(m_host.url(), words("library export")).out,
        "{\"favorites\":[{\"title\":\"a\\u001bb\"}],\"presets\":[],\"version\":1}\n");
    const QString name = m_folder.filePath(QStringLiteral("out.json"));
    const Outcome outcome
        = run(m_host.url(), {QStringLiteral("library"), QStringLiteral("export"), name});
    EXPECT_EQ(outcome.out, name.toStdString() + ": written\n");
    QFile written(name);
    ASSERT_TRUE(written.open(QFile::ReadOnly));
    EXPECT_THAT(written.readAll().toStdString(), testing::StartsWith("{\"favorites\":[{"));
}

TEST_F(LibraryCommandsTest, ReadsTheLibrary)
{
    const QString name = file(R"({"version":1,"favorites":[{"title":"a"}],"presets":[]})");
    const Outcome outcome = import(name);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, name.toStdString() + ": favorites added: 2, presets: 1\n");
    const QVariantHash sent = m_host.paramsOf(ImportCall).value(QStringLiteral("library")).toHash();
    EXPECT_EQ(sent.value(QStringLiteral("version")), 1);
    EXPECT_EQ(sent.value(QStringLiteral("favorites")).toList().size(), 1);
}

TEST_F(LibraryCommandsTest, SendsALargeLibraryInParts)
{
    QByteArray favorites;
    constexpr int Favorites = 100;
    for (int i = 0; i < Favorites; ++i)
        favorites += (i > 0 ? R"(,{"title":")" : R"({"title":")") + QByteArray(1000, 'a') + R"("})";
    const Outcome outcome = import(file(
        R"({"version":1,"favorites":[)" + favorites + R"(],"presets":[{"number":1,"row":{}}]})"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(m_host.timesAsked(ImportCall), 3);
    EXPECT_THAT(outcome.out, testing::EndsWith(": favorites added: 6, presets: 3\n"));
    const QVariantHash last = m_host.paramsOf(ImportCall).value(QStringLiteral("library")).toHash();
    EXPECT_EQ(last.value(QStringLiteral("version")), 1);
    EXPECT_TRUE(last.value(QStringLiteral("presets")).toList().isEmpty());
    EXPECT_EQ(last.value(QStringLiteral("favorites")).toList().size(), 12);
}

TEST_F(LibraryCommandsTest, RefusesAFileWithoutALibrary)
{
    for (const char *content : {"", "[]", "{", "#EXTM3U\n", "\"x\"", "7"}) {
        const Outcome outcome = import(file(content));
        EXPECT_EQ(outcome.status, 1) << content;
        EXPECT_THAT(outcome.errors, testing::HasSubstr("holds no library"));
    }
    EXPECT_EQ(import(m_folder.path()).status, 1);
    EXPECT_EQ(import(m_folder.filePath(QStringLiteral("none"))).status, 1);
    EXPECT_EQ(m_host.timesAsked(ImportCall), 0);
}

} // namespace
