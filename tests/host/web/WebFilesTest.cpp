// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/web/WebFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

class WebFilesTest : public testing::Test {
protected:
    void write(const QString &name, const QByteArray &content)
    {
        const QString path = m_folder.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
        file.write(content);
    }

    /// A page with one script.
    void writePage()
    {
        write(QStringLiteral("index.html"), "<p>");
        write(QStringLiteral("assets/main-1.js"), "script");
        write(QStringLiteral("assets/main-1.js.gz"), "zipped");
    }

    HttpResponse get(const QByteArray &path, const QByteArray &acceptEncoding = {},
        const QByteArray &ifNoneMatch = {})
    {
        WebFiles files(m_folder.path());
        HttpResponse result;
        HttpRequest request;
        request.path = path;
        request.host = "127.0.0.1:8765";
        request.acceptEncoding = acceptEncoding;
        request.ifNoneMatch = ifNoneMatch;
        files.get(request, [&](const HttpResponse &answer) { result = answer; });
        return result;
    }

    static QByteArray headerOf(const HttpResponse &answer, const QByteArray &name)
    {
        for (const auto &header : answer.headers) {
            if (header.first == name)
                return header.second;
        }
        return {};
    }

    QTemporaryDir m_folder;
};

TEST_F(WebFilesTest, ServesThePageAtItsRoot)
{
    writePage();
    const HttpResponse answer = get("/");
    EXPECT_EQ(answer.code, 200u);
    EXPECT_EQ(answer.type, "text/html; charset=utf-8");
    EXPECT_EQ(answer.body, "<p>");
    EXPECT_EQ(headerOf(answer, "Cache-Control"), "no-cache");
}

TEST_F(WebFilesTest, LimitsThePageToItsOwnScriptsAndServer)
{
    writePage();
    const QByteArray policy = headerOf(get("/"), "Content-Security-Policy");
    EXPECT_TRUE(policy.startsWith("default-src 'none'; script-src 'self';"));
    EXPECT_TRUE(policy.contains("connect-src 'self' ws://127.0.0.1:8765 wss://127.0.0.1:8765;"));
    EXPECT_TRUE(policy.contains("worker-src 'self'; media-src blob:;"));
    EXPECT_TRUE(policy.contains("frame-ancestors 'none'"));
    EXPECT_TRUE(policy.contains("require-trusted-types-for 'script'; trusted-types vesk"));
    EXPECT_FALSE(policy.contains("unsafe"));
}

TEST_F(WebFilesTest, SendsTypesAndCachesFilesWithAHashInTheirName)
{
    writePage();
    write(QStringLiteral("assets/main-1.css"), "style");
    write(QStringLiteral("favicon.svg"), "<svg/>");
    write(QStringLiteral("notices.txt"), "licenses");
    EXPECT_EQ(get("/assets/main-1.js").type, "text/javascript; charset=utf-8");
    EXPECT_EQ(get("/assets/main-1.css").type, "text/css; charset=utf-8");
    EXPECT_EQ(get("/favicon.svg").type, "image/svg+xml");
    EXPECT_EQ(get("/notices.txt").type, "text/plain; charset=utf-8");
    EXPECT_EQ(
        headerOf(get("/assets/main-1.js"), "Cache-Control"), "public, max-age=31536000, immutable");
    EXPECT_EQ(headerOf(get("/favicon.svg"), "Cache-Control"), "no-cache");
}

TEST_F(WebFilesTest, ServesTheCompressedFormIfAccepted)
{
    writePage();
    for (const char *taken : {"gzip", "br, gzip;q=0.5", "deflate,GZIP"}) {
        const HttpResponse answer = get("/assets/main-1.js", taken);
        EXPECT_EQ(answer.body, "zipped") << taken;
        EXPECT_EQ(headerOf(answer, "Content-Encoding"), "gzip");
        EXPECT_EQ(headerOf(answer, "Vary"), "Accept-Encoding");
    }
    for (const char *refused : {"", "br", "gzip;q=0", "gzip; q=0.0", "notgzip"}) {
        const HttpResponse answer = get("/assets/main-1.js", refused);
        EXPECT_EQ(answer.body, "script") << refused;
        EXPECT_EQ(headerOf(answer, "Content-Encoding"), "");
    }
}

TEST_F(WebFilesTest, RespondsNotModifiedToAMatchingTag)
{
    writePage();
    const QByteArray tag = headerOf(get("/"), "ETag");
    ASSERT_TRUE(tag.startsWith('"') && tag.endsWith('"')) << tag.constData();
    for (const QByteArray &known : {tag, "W/" + tag, "\"x\", " + tag, QByteArray("*")}) {
        const HttpResponse answer = get("/", {}, known);
        EXPECT_EQ(answer.code, 304u) << known.constData();
        EXPECT_TRUE(answer.type.isNull());
        EXPECT_EQ(headerOf(answer, "ETag"), tag);
    }
    EXPECT_EQ(get("/", {}, "\"x\"").code, 200u);
    write(QStringLiteral("index.html"), "<b>");
    EXPECT_EQ(get("/", {}, tag).code, 200u);
}

TEST_F(WebFilesTest, OwnsTheFilesOfItsFolderAndNoOtherPath)
{
    writePage();
    write(QStringLiteral("notes.bak"), "of no type that is served");
    write(QStringLiteral(".hidden.js"), "hidden");
    QFile::link(QStringLiteral("/etc/hostname"), m_folder.filePath(QStringLiteral("linked.js")));
    const WebFiles files(m_folder.path());
    EXPECT_TRUE(files.owns("/"));
    EXPECT_TRUE(files.owns("/index.html"));
    EXPECT_TRUE(files.owns("/assets/main-1.js"));
    for (const char *path : {"", "//", "/assets", "/assets/", "/assets/main-1.js.gz",
             "/assets/../index.html", "/../secret.js", "/./index.html", "/INDEX.HTML", "/notes.bak",
             "/.hidden.js", "/linked.js", "/index.html/"})
        EXPECT_FALSE(files.owns(path)) << path;
}

TEST_F(WebFilesTest, HasNoPageWithoutAFolderOrAnIndex)
{
    EXPECT_TRUE(WebFiles({}).isEmpty());
    EXPECT_TRUE(WebFiles(m_folder.filePath(QStringLiteral("nothing"))).isEmpty());
    write(QStringLiteral("main.js"), "script");
    const WebFiles files(m_folder.path());
    EXPECT_TRUE(files.isEmpty());
    EXPECT_FALSE(files.owns("/"));
    EXPECT_FALSE(files.owns("/main.js"));
}

TEST_F(WebFilesTest, RefusesAFolderThatIsTooLarge)
{
    writePage();
    for (int i = 0; i <= WebFiles::MaxFiles; ++i)
        write(QString::number(i) + QStringLiteral(".js"), "x");
    EXPECT_TRUE(WebFiles(m_folder.path()).isEmpty());
}

TEST_F(WebFilesTest, ThePairingPageStandsAtPair)
{
    writePage();
    EXPECT_FALSE(WebFiles(m_folder.path()).owns("/pair"));
    write(QStringLiteral("pair/index.html"), "<p>code");
    const WebFiles files(m_folder.path());
    EXPECT_TRUE(files.owns("/pair"));
    EXPECT_FALSE(files.owns("/pair/"));
    EXPECT_EQ(get("/pair").body, "<p>code");
    EXPECT_THAT(headerOf(get("/pair"), "Content-Security-Policy").toStdString(),
        testing::HasSubstr("default-src 'none'"));
}

} // namespace
