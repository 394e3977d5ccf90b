// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace {

using testing::HasSubstr;

/// A service that takes and gives files, and keeps what it was sent.
class FilesHost : public FakeHost {
public:
    FilesHost()
    {
        setScreen(QStringLiteral("host:services"),
            {serviceRow("other", "Other"), takesFiles(serviceRow("mine", "Mine"))});
        setResult(QStringLiteral("setData Mine:in"),
            R"("result":{"value":{"added":3,"known":2,"skipped":1,"message":"One\u001b is no station."}})");
    }

    static VeskRoles takesFiles(const VeskRoles &service)
    {
        return withRole(withRole(service, "import", "Mine:in"), "export", "Mine:out");
    }

    QList<QVariantHash> parts;

    QByteArray content() const
    {
        QByteArray all;
        for (const QVariantHash &part : parts) {
            const QByteArray bytes
                = QByteArray::fromBase64(part.value(QStringLiteral("data")).toByteArray());
            EXPECT_LE(bytes.size(), 45000);
            all += bytes;
        }
        return all;
    }

protected:
    void prepare(const QString &method, const QVariantHash &params) override
    {
        if (method == QLatin1String("setData"))
            parts.append(params.value(QStringLiteral("value")).toHash());
    }
};

class FileCommandsTest : public testing::Test {
protected:
    QString file(const char *name, const QByteArray &content)
    {
        QFile written(m_folder.filePath(QString::fromUtf8(name)));
        EXPECT_TRUE(written.open(QFile::WriteOnly));
        written.write(content);
        return written.fileName();
    }

    Outcome import(const QStringList &files)
    {
        return run(m_host.url(), QStringList {QStringLiteral("import")} + files);
    }

    const QTemporaryDir m_folder;
    FilesHost m_host;
};

TEST_F(FileCommandsTest, ImportSendsAFileAndTellsWhatBecameOfIt)
{
    const QString name = file("a b.m3u", "http://\xff\n");
    const Outcome outcome = import({name});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out,
        name.toStdString() + ": 3 added, 2 known already, 1 skipped. One\ufffd is no station.\n");
    ASSERT_EQ(m_host.parts.size(), 1);
    EXPECT_EQ(m_host.parts.first().value(QStringLiteral("name")), QStringLiteral("a b.m3u"));
    EXPECT_EQ(m_host.parts.first().value(QStringLiteral("part")).toInt(), 0);
    EXPECT_EQ(m_host.parts.first().value(QStringLiteral("parts")).toInt(), 1);
    EXPECT_EQ(m_host.content(), "http://\xff\n");
    EXPECT_EQ(run(m_host.url(), {QStringLiteral("--json"), QStringLiteral("import"), name}).out,
        "{\"added\":3,\"known\":2,\"message\":\"One\\u001b is no station.\",\"skipped\":1}\n");
}

TEST_F(FileCommandsTest, ImportSendsALongFileInParts)
{
    QByteArray content(1024 * 1024, 'x');
    for (int i = 0; i < content.size(); i += 7)
        content[i] = static_cast<char>(i);
    EXPECT_EQ(import({file("long.opml", content)}).status, 0);
    EXPECT_EQ(m_host.parts.size(), 24);
    EXPECT_EQ(m_host.content(), content);
    for (int i = 0; i < m_host.parts.size(); ++i) {
        const QVariantHash &part = m_host.parts.at(i);
        EXPECT_EQ(part.value(QStringLiteral("part")).toInt(), i);
        EXPECT_EQ(part.value(QStringLiteral("parts")).toInt(), 24);
        EXPECT_EQ(
            part.value(QStringLiteral("id")), m_host.parts.first().value(QStringLiteral("id")));
    }
    const QVariant before = m_host.parts.first().value(QStringLiteral("id"));
    m_host.parts.clear();
    EXPECT_EQ(import({file("empty.m3u", "")}).status, 0);
    ASSERT_EQ(m_host.parts.size(), 1);
    EXPECT_NE(m_host.parts.first().value(QStringLiteral("id")), before);
}

TEST_F(FileCommandsTest, ImportSendsNothingOfWhatIsNoFile)
{
    const QString fifo = m_folder.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const struct {
        QString name;
        const char *complaint;
    } cases[] {
        {m_folder.filePath(QStringLiteral("none.m3u")), "No such file or directory"},
        {m_folder.path(), "is a folder"},
        {fifo, "is no ordinary file"},
        {QStringLiteral("/dev/zero"), "is no ordinary file"},
        {file("big.m3u", QByteArray(1024 * 1024 + 1, 'x')), "is larger than 1 MiB"},
    };
    for (const auto &each : cases) {
        const Outcome outcome = import({each.name});
        EXPECT_EQ(outcome.status, 1) << each.complaint;
        EXPECT_THAT(outcome.errors, HasSubstr("veskctl: " + each.name.toStdString()));
        EXPECT_THAT(outcome.errors, HasSubstr(each.complaint));
    }
    EXPECT_TRUE(m_host.parts.isEmpty());
}

TEST_F(FileCommandsTest, OneBadFileKeepsNoOtherOut)
{
    const QString good = file("good.m3u", "http://a/\n");
    const Outcome outcome = import({m_folder.filePath(QStringLiteral("none")), good});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("good.m3u: 3 added"));
}

TEST_F(FileCommandsTest, ImportStopsAtTheFirstPartThatIsRefused)
{
    m_host.setResult(QStringLiteral("setData Mine:in"),
        R"("error":{"code":-32000,"message":"This is no list."})");
    const Outcome outcome = import({file("a.m3u", QByteArray(100000, 'x'))});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: This is no list.\n");
    EXPECT_EQ(m_host.parts.size(), 1);
}

TEST_F(FileCommandsTest, TheServiceCanBeNamedInTwoWays)
{
    m_host.setScreen(QStringLiteral("host:services"),
        {withRole(serviceRow("other", "Other"), "import", "Other:in"),
            FilesHost::takesFiles(serviceRow("mine", "Mine"))});
    const QString name = file("a.m3u", "x");
    EXPECT_EQ(import({name}).status, 2);
    EXPECT_THAT(import({name}).errors, HasSubstr("--in (other, mine)"));
    EXPECT_EQ(import({name, QStringLiteral("--in"), QStringLiteral("mine")}).status, 0);
    EXPECT_EQ(
        run(m_host.url(), {QStringLiteral("mine"), QStringLiteral("import"), name}).status, 0);
    EXPECT_EQ(m_host.parts.size(), 2);
    m_host.setScreen(QStringLiteral("host:services"), {serviceRow("other", "Other")});
    EXPECT_EQ(import({name}).errors, "veskctl: this service takes no files\n");
}

TEST_F(FileCommandsTest, ExportWritesWhatTheServiceGives)
{
    const QByteArray answer
        = R"("result":{"values":[{"name":"stations.m3u","data":"#EXTM3U\nhttp://\u001b\u00e4/\n"}]})";
    m_host.setResult(QStringLiteral("getData Mine:out?format=m3u"), answer);
    m_host.setResult(QStringLiteral("getData Mine:out?format=opml"), answer);
    EXPECT_EQ(run(m_host.url(), words("export")).out, "#EXTM3U\nhttp://\x1b\u00e4/\n");
    EXPECT_EQ(run(m_host.url(), words("export"), {{}, 80, {}, {}, {}}).out,
        "#EXTM3U\nhttp://\ufffd\u00e4/\n\n")
        << "a terminal gets no control characters";
    const QString name = m_folder.filePath(QStringLiteral("all.OPML"));
    const Outcome outcome = run(m_host.url(), {QStringLiteral("export"), name});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    QFile written(name);
    ASSERT_TRUE(written.open(QFile::ReadOnly));
    EXPECT_EQ(written.readAll(), "#EXTM3U\nhttp://\x1b\xc3\xa4/\n");
    EXPECT_EQ(m_host.timesAsked(QStringLiteral("getData Mine:out?format=opml")), 1);
    EXPECT_EQ(run(m_host.url(), words("export --format opml")).status, 0);
    EXPECT_EQ(run(m_host.url(), words("export --format doc")).status, 2);
    EXPECT_EQ(run(m_host.url(), words("export /nowhere/at/all.m3u")).status, 1);
    EXPECT_EQ(run(m_host.url(), words("export --format pls")).status, 1)
        << "an error of the service";
}

} // namespace
