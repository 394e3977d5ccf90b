// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/web/Artwork.h"

#include "api/web/AddressPolicy.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/WorkerThread.h"

#include <QCryptographicHash>

#include <gmock/gmock.h>

#include <mutex>

namespace {

const QByteArray Png = "\x89PNG\r\n\x1a\nand the rest";

class ArtworkTest : public testing::Test {
protected:
    QString url(const QByteArray &target) const
    {
        return QStringLiteral("http://127.0.0.1:%1%2")
            .arg(QString::number(m_server.port()), QString::fromLatin1(target));
    }

    static QByteArray pathOf(const QString &url)
    {
        return "/artwork/"
            + QCryptographicHash::hash(url.toUtf8(), QCryptographicHash::Sha256).toHex();
    }

    void ask(const QByteArray &path)
    {
        HttpRequest query;
        query.path = path;
        m_artwork->get(query, [this](const HttpResponse &answer) { m_answers.append(answer); });
    }

    /// The response for a picture that a service has named.
    HttpResponse askFor(const QByteArray &target)
    {
        m_artwork->remember(url(target));
        m_answers.clear();
        ask(pathOf(url(target)));
        EXPECT_TRUE(spinUntil([this] { return !m_answers.isEmpty(); }));
        return m_answers.value(0);
    }

    static QByteArray headerOf(const HttpResponse &answer, const QByteArray &name)
    {
        for (const auto &header : answer.headers) {
            if (header.first == name)
                return header.second;
        }
        return {};
    }

    ScriptedServer::Response m_response {200, Png, {{"Content-Type", "text/html"}}};
    ScriptedServer m_server {[this](const ScriptedServer::Request &) { return m_response; }};
    std::unique_ptr<Artwork> m_artwork = std::make_unique<Artwork>();
    QList<HttpResponse> m_answers;
};

TEST_F(ArtworkTest, ServesAPictureThatAServiceNamed)
{
    const HttpResponse answer = askFor("/a.png");
    EXPECT_EQ(answer.code, 200u);
    EXPECT_EQ(answer.type, "image/png"); // from its content, not from the header
    EXPECT_EQ(answer.body, Png);
    EXPECT_EQ(headerOf(answer, "Cache-Control"), "private, max-age=86400");
    EXPECT_EQ(headerOf(answer, "Content-Security-Policy"), "default-src 'none'; sandbox");
    EXPECT_EQ(headerOf(answer, "Cross-Origin-Resource-Policy"), "same-origin");
}

TEST_F(ArtworkTest, FetchesNothingThatThePolicyForbids)
{
    AddressPolicy::setCurrent(AddressReach::Internet);
    const HttpResponse answer = askFor("/a.png");
    AddressPolicy::setCurrent(AddressReach::Machine);
    EXPECT_EQ(answer.code, 502u);
    EXPECT_EQ(m_server.connections(), 0);
}

TEST_F(ArtworkTest, DoesNotFollowARedirectToAForbiddenAddress)
{
    m_response = {302, {}, {{"Location", "http://169.254.169.254/latest/a.png"}}};
    EXPECT_EQ(askFor("/a.png").code, 502u);
    EXPECT_EQ(m_server.connections(), 1);
}

TEST_F(ArtworkTest, FetchesNothingThatNoServiceNamed)
{
    for (const QByteArray &path : {pathOf(url("/a.png")), "/artwork/" + url("/a.png").toUtf8(),
             QByteArray("/artwork/"), QByteArray("/artwork/../secret")})
        ask(path);
    ASSERT_EQ(m_answers.size(), 4);
    for (const HttpResponse &answer : std::as_const(m_answers))
        EXPECT_EQ(answer.code, 404u);
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(ArtworkTest, ServesOnlyPictures)
{
    m_response.body = "<svg xmlns='http://www.w3.org/2000/svg'><script>alert(1)</script></svg>";
    m_response.headers = {{"Content-Type", "image/png"}};
    const HttpResponse answer = askFor("/a.png");
    EXPECT_EQ(answer.code, 502u);
    EXPECT_EQ(answer.type, "text/plain; charset=utf-8");
    EXPECT_FALSE(answer.body.contains("svg"));
}

TEST_F(ArtworkTest, DoesNotServeThePictureOfAnErrorResponse)
{
    m_response.code = 404;
    EXPECT_EQ(askFor("/a.png").code, 502u);
}

TEST_F(ArtworkTest, ServesAtMostTwoMebibytes)
{
    m_response.body = Png.leftJustified(Artwork::MaxBytes, '.');
    EXPECT_EQ(askFor("/exact.png").code, 200u);
    m_response.body.append('.');
    EXPECT_EQ(askFor("/over.png").code, 502u);
}

TEST_F(ArtworkTest, FetchesOnceForSeveralRequests)
{
    m_artwork->remember(url("/a.png"));
    for (int i = 0; i < 3; ++i)
        ask(pathOf(url("/a.png")));
    ASSERT_TRUE(spinUntil([this] { return m_answers.size() == 3; }));
    EXPECT_EQ(m_server.requests().size(), 1);
    for (const HttpResponse &answer : std::as_const(m_answers))
        EXPECT_EQ(answer.code, 200u);
}

TEST_F(ArtworkTest, FetchesABoundedNumberAtATime)
{
    m_response.end = ScriptedServer::End::StallBeforeHead;
    for (int i = 0; i <= Artwork::MaxRunning; ++i) {
        const QString picture = url("/" + QByteArray::number(i));
        m_artwork->remember(picture);
        ask(pathOf(picture));
    }
    ASSERT_EQ(m_answers.size(), 1);
    EXPECT_EQ(m_answers.first().code, 503u);
}

TEST_F(ArtworkTest, DoesNotRespondOnceItIsDestroyed)
{
    m_response.end = ScriptedServer::End::StallBeforeHead;
    m_artwork->remember(url("/a.png"));
    ask(pathOf(url("/a.png")));
    ASSERT_TRUE(m_server.waitForRequests(0));
    m_artwork.reset();
    EXPECT_TRUE(m_answers.isEmpty());
}

TEST_F(ArtworkTest, OwnsOnlyItsFolder)
{
    EXPECT_TRUE(m_artwork->owns("/artwork/x"));
    for (const char *path : {"/", "/artwork", "/x/artwork/y", "artwork/x"})
        EXPECT_FALSE(m_artwork->owns(path)) << path;
}

} // namespace
