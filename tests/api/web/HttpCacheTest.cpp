// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/HttpCache.h"

#include <gtest/gtest.h>

namespace {

class HttpCacheTest : public testing::Test {
protected:
    HttpCacheTest() { cache.setSize(100000); }

    static HttpCacheHeaders cacheControl(const char *value)
    {
        HttpCacheHeaders headers;
        headers.cacheControl = value;
        return headers;
    }

    /// Keeps an answer that was asked for just now.
    void store(const HttpCacheHeaders &headers, const QByteArray &url = "u")
    {
        cache.store(url, headers, "body", now);
    }
    bool isFresh(const QByteArray &url = "u")
    {
        const auto found = cache.find(url);
        return found && found->fresh && found->body == "body";
    }
    /// Whether the answer is kept for exactly that many seconds.
    testing::AssertionResult isFreshFor(qint64 seconds)
    {
        const qint64 start = now;
        now = start + seconds * 1000 - 1;
        const bool before = isFresh();
        now = start + seconds * 1000;
        const bool after = isFresh();
        if (before && !after)
            return testing::AssertionSuccess();
        return testing::AssertionFailure()
            << "fresh just before: " << before << ", at the end: " << after;
    }

    qint64 now = 5000;
    HttpCache cache {[this] { return now; }};
};

} // namespace

TEST_F(HttpCacheTest, keepsNothingUnlessItHasASize)
{
    HttpCache none([this] { return now; });
    EXPECT_FALSE(none.isEnabled());
    none.store("u", cacheControl("max-age=60"), "body", now);
    EXPECT_FALSE(none.find("u"));
}

TEST_F(HttpCacheTest, keepsAnAnswerForItsMaxAge)
{
    store(cacheControl("max-age=60"));
    EXPECT_FALSE(cache.find("other"));
    EXPECT_TRUE(isFreshFor(60));
}

TEST_F(HttpCacheTest, readsCacheControlAsServersWriteIt)
{
    store(cacheControl("private, MAX-AGE=60 , x=\"a, max-age=1\""));
    EXPECT_TRUE(isFreshFor(60));
    store(cacheControl("max-age=\"30\""));
    EXPECT_TRUE(isFreshFor(30));
    store(cacheControl("max-age=50, max-age=20"));
    EXPECT_TRUE(isFreshFor(20));
    store(cacheControl("max-age=99999999999999999999999"));
    EXPECT_TRUE(isFreshFor(365LL * 24 * 3600));
}

TEST_F(HttpCacheTest, keepsNothingWithoutAnExplicitTime)
{
    for (const char *value : {"", "public", "max-age", "max-age=", "max-age=x", "max-age=-1",
             "max-age=1.5", "max-age=0", "no-store, max-age=60", "No-Store", "no-cache, max-age=60",
             "no-cache=\"Set-Cookie\", max-age=60", "max-age=60, x=\"no-store"}) {
        store(cacheControl(value));
        EXPECT_FALSE(cache.find("u")) << value;
    }
    HttpCacheHeaders etagOnly;
    etagOnly.etag = "\"1\"";
    store(etagOnly);
    EXPECT_FALSE(cache.find("u"));
}

TEST_F(HttpCacheTest, takesExpiresMinusDateWithoutLookingAtTheDevicesDate)
{
    HttpCacheHeaders headers;
    headers.date = "Thu, 01 Jan 1998 10:00:00 GMT";
    headers.expires = "Thu, 01 Jan 1998 10:02:00 GMT";
    store(headers);
    EXPECT_TRUE(isFreshFor(120));

    headers.cacheControl = "max-age=10";
    store(headers);
    EXPECT_TRUE(isFreshFor(10));
}

TEST_F(HttpCacheTest, takesAnUnreadableExpiresForThePast)
{
    for (const char *expires : {"0", "-1", "", "soon", "Thu, 01 Jan 1998 09:00:00 GMT"}) {
        HttpCacheHeaders headers;
        headers.date = "Thu, 01 Jan 1998 10:00:00 GMT";
        headers.expires = expires;
        store(headers);
        EXPECT_FALSE(cache.find("u")) << expires;
    }
    HttpCacheHeaders dateless;
    dateless.expires = "Thu, 01 Jan 2099 10:00:00 GMT";
    store(dateless);
    EXPECT_FALSE(cache.find("u"));
}

TEST_F(HttpCacheTest, countsTheAgeOnArrivalAndOnTheWay)
{
    HttpCacheHeaders headers = cacheControl("max-age=60");
    headers.age = "45";
    store(headers);
    EXPECT_TRUE(isFreshFor(15));

    headers.age = "60";
    store(headers);
    EXPECT_FALSE(cache.find("u"));
    headers.age = "old";
    store(headers);
    EXPECT_FALSE(cache.find("u"));

    // Asked for 50 s ago: the answer may be as old as that.
    cache.store("u", cacheControl("max-age=60"), "body", now - 50000);
    EXPECT_TRUE(isFreshFor(10));
}

TEST_F(HttpCacheTest, keepsOnlyWhatVariesByEncodingAlone)
{
    HttpCacheHeaders headers = cacheControl("max-age=60");
    headers.vary = "accept-encoding, Accept-Encoding";
    store(headers);
    EXPECT_TRUE(isFresh());
    for (const char *vary : {"*", "Cookie", "Accept-Encoding, Accept-Language"}) {
        headers.vary = vary;
        store(headers);
        EXPECT_FALSE(cache.find("u")) << vary;
    }
}

TEST_F(HttpCacheTest, keepsAgedAnswersOnlyForTheirValidators)
{
    HttpCacheHeaders headers = cacheControl("max-age=60");
    headers.etag = "\"1\"";
    headers.lastModified = "Thu, 01 Jan 1998 10:00:00 GMT";
    store(headers);
    now += 60000;
    const auto aged = cache.find("u");
    ASSERT_TRUE(aged);
    EXPECT_FALSE(aged->fresh);
    EXPECT_EQ(aged->etag, headers.etag);
    EXPECT_EQ(aged->lastModified, headers.lastModified);

    store(cacheControl("max-age=60"));
    now += 60000;
    EXPECT_FALSE(cache.find("u"));
    EXPECT_EQ(cache.usedBytes(), 0);
}

TEST_F(HttpCacheTest, keepsANoCacheAnswerForItsValidatorOnly)
{
    HttpCacheHeaders headers = cacheControl("no-cache, max-age=60");
    headers.lastModified = "Thu, 01 Jan 1998 10:00:00 GMT";
    store(headers);
    ASSERT_TRUE(cache.find("u"));
    EXPECT_FALSE(cache.find("u")->fresh);
}

TEST_F(HttpCacheTest, aConfirmedAnswerIsFreshAgain)
{
    HttpCacheHeaders headers = cacheControl("max-age=60");
    headers.etag = "\"1\"";
    headers.age = "30";
    store(headers);
    now += 60000;
    const auto aged = cache.find("u");
    ASSERT_TRUE(aged);
    cache.refresh("u", {}, *aged, now);
    EXPECT_TRUE(isFreshFor(60));
    cache.refresh("u", cacheControl("max-age=5"), *cache.find("u"), now);
    EXPECT_TRUE(isFreshFor(5));
    cache.refresh("u", cacheControl("no-store"), *cache.find("u"), now);
    EXPECT_FALSE(cache.find("u"));
}

TEST_F(HttpCacheTest, aConfirmationOfWhatIsGoneKeepsWhatItSays)
{
    HttpCacheHeaders headers = cacheControl("max-age=60");
    headers.etag = "\"1\"";
    store(headers);
    now += 60000;
    const auto aged = cache.find("u");
    ASSERT_TRUE(aged);
    cache.remove("u");
    cache.refresh("u", {}, *aged, now);
    EXPECT_FALSE(cache.find("u"));
    cache.refresh("u", cacheControl("max-age=5"), *aged, now);
    EXPECT_TRUE(isFreshFor(5));
}

TEST_F(HttpCacheTest, anAnswerThatMayNotBeKeptDropsTheOneBefore)
{
    store(cacheControl("max-age=60"));
    store(cacheControl("no-store"));
    EXPECT_FALSE(cache.find("u"));
}

TEST_F(HttpCacheTest, removesAndCountsRemovals)
{
    store(cacheControl("max-age=60"));
    const quint64 before = cache.removals();
    cache.remove("u");
    EXPECT_FALSE(cache.find("u"));
    EXPECT_NE(cache.removals(), before);
    EXPECT_EQ(cache.usedBytes(), 0);
}

TEST_F(HttpCacheTest, keepsTheAnswersUsedLast)
{
    const QByteArray body(10000, 'x');
    cache.setSize(35000);
    for (const char *url : {"a", "b", "c"})
        cache.store(url, cacheControl("max-age=60"), body, now);
    EXPECT_TRUE(cache.find("a"));
    cache.store("d", cacheControl("max-age=60"), body, now);
    EXPECT_FALSE(cache.find("b"));
    for (const char *url : {"a", "c", "d"})
        EXPECT_TRUE(cache.find(url)) << url;
    EXPECT_LE(cache.usedBytes(), 35000);
}

TEST_F(HttpCacheTest, countsMoreThanTheBody)
{
    cache.setSize(100000);
    const QByteArray longUrl(1000, 'u');
    HttpCacheHeaders headers = cacheControl("max-age=60");
    headers.etag = QByteArray(500, 'e');
    cache.store(longUrl, headers, "body", now);
    EXPECT_GT(cache.usedBytes(), 1504);

    // Empty bodies must not fill the memory either.
    for (int i = 0; i < 10000; ++i)
        cache.store(QByteArray::number(i), cacheControl("max-age=60"), {}, now);
    EXPECT_LE(cache.usedBytes(), 100000);
    EXPECT_FALSE(cache.find("0"));
    EXPECT_TRUE(cache.find("9999"));
}

TEST_F(HttpCacheTest, doesNotKeepWhatIsLargerThanItself)
{
    store(cacheControl("max-age=60"), "small");
    cache.store("large", cacheControl("max-age=60"), QByteArray(100000, 'x'), now);
    EXPECT_FALSE(cache.find("large"));
    EXPECT_TRUE(isFresh("small"));
}

TEST_F(HttpCacheTest, aSmallerSizeDropsWhatNoLongerFits)
{
    store(cacheControl("max-age=60"), "a");
    store(cacheControl("max-age=60"), "b");
    cache.setSize(cache.usedBytes() - 1);
    EXPECT_FALSE(cache.find("a"));
    EXPECT_TRUE(isFresh("b"));
    cache.setSize(0);
    EXPECT_FALSE(cache.find("b"));
    EXPECT_EQ(cache.usedBytes(), 0);
}

TEST(HttpCacheClockTest, theClockOfItsOwnRunsForward)
{
    const HttpCache cache;
    const qint64 first = cache.now();
    EXPECT_GT(first, 0);
    EXPECT_GE(cache.now(), first);
}
