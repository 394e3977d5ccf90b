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

    /// Stores a response whose request was sent just now.
    void store(const HttpCacheHeaders &headers, const QByteArray &url = "u")
    {
        cache.store(url, headers, "body", now);
    }
    bool isFresh(const QByteArray &url = "u") { return cache.find(url) == QByteArray("body"); }
    /// Whether the response is fresh for exactly \a seconds.
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

TEST_F(HttpCacheTest, StoresNothingWithoutASize)
{
    HttpCache none([this] { return now; });
    EXPECT_FALSE(none.isEnabled());
    none.store("u", cacheControl("max-age=60"), "body", now);
    EXPECT_FALSE(none.find("u"));
}

TEST_F(HttpCacheTest, StoresAResponseForItsMaxAge)
{
    store(cacheControl("max-age=60"));
    EXPECT_FALSE(cache.find("other"));
    EXPECT_TRUE(isFreshFor(60));
}

TEST_F(HttpCacheTest, ReadsCacheControlAsServersWriteIt)
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

TEST_F(HttpCacheTest, StoresNothingWithoutAMaxAge)
{
    for (const char *value : {"", "public", "max-age", "max-age=", "max-age=x", "max-age=-1",
             "max-age=1.5", "max-age=0", "no-store, max-age=60", "No-Store", "no-cache, max-age=60",
             "no-cache=\"Set-Cookie\", max-age=60", "max-age=60, x=\"no-store"}) {
        store(cacheControl(value));
        EXPECT_FALSE(cache.find("u")) << value;
    }
}

TEST_F(HttpCacheTest, SubtractsTheAgeAndTheTimeOfTheExchange)
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

    // The request was sent 50 s ago: the response's delay counts towards its age (RFC 9111, section
    // 4.2.3).
    cache.store("u", cacheControl("max-age=60"), "body", now - 50000);
    EXPECT_TRUE(isFreshFor(10));
}

TEST_F(HttpCacheTest, StoresNothingThatVariesByEverything)
{
    HttpCacheHeaders headers = cacheControl("max-age=60");
    headers.vary = "Accept-Encoding, Cookie";
    store(headers);
    EXPECT_TRUE(isFresh());
    for (const char *vary : {"*", "Accept-Encoding, *"}) {
        headers.vary = vary;
        store(headers);
        EXPECT_FALSE(isFresh()) << vary;
    }
}

TEST_F(HttpCacheTest, AResponseThatMustNotBeStoredReplacesTheOneBefore)
{
    store(cacheControl("max-age=60"));
    store(cacheControl("no-store"));
    EXPECT_FALSE(cache.find("u"));
}

TEST_F(HttpCacheTest, RemovesAndCountsRemovals)
{
    store(cacheControl("max-age=60"));
    const quint64 before = cache.removals();
    cache.remove("u");
    EXPECT_FALSE(cache.find("u"));
    EXPECT_NE(cache.removals(), before);
}

TEST_F(HttpCacheTest, DropsTheLeastRecentlyUsedResponse)
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
}

TEST_F(HttpCacheTest, CountsMoreThanTheBody)
{
    // If the URL and the entry's own size did not count, 100 of the first and all of the second
    // entries would fit.
    for (int i = 0; i < 101; ++i)
        cache.store(
            QByteArray(1000, 'u') + QByteArray::number(i), cacheControl("max-age=60"), {}, now);
    EXPECT_FALSE(cache.find(QByteArray(1000, 'u') + '0'));
    for (int i = 0; i < 10000; ++i)
        cache.store(QByteArray::number(i), cacheControl("max-age=60"), {}, now);
    EXPECT_FALSE(cache.find("0"));
    EXPECT_TRUE(cache.find("9999"));
}

TEST_F(HttpCacheTest, DoesNotStoreWhatIsLargerThanItself)
{
    store(cacheControl("max-age=60"), "small");
    cache.store("large", cacheControl("max-age=60"), QByteArray(100000, 'x'), now);
    EXPECT_FALSE(cache.find("large"));
    EXPECT_TRUE(isFresh("small"));
}

TEST_F(HttpCacheTest, ASmallerSizeDropsWhatNoLongerFits)
{
    cache.store("a", cacheControl("max-age=60"), QByteArray(10000, 'x'), now);
    store(cacheControl("max-age=60"), "b");
    cache.setSize(10000);
    EXPECT_FALSE(cache.find("a"));
    EXPECT_TRUE(isFresh("b"));
    cache.setSize(0);
    EXPECT_FALSE(cache.find("b"));
}

TEST(HttpCacheClockTest, TheDefaultClockNeverGoesBack)
{
    const HttpCache cache;
    const qint64 first = cache.now();
    EXPECT_GT(first, 0);
    EXPECT_GE(cache.now(), first);
}
