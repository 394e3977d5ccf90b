// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskUrl.h"
#include "tests/support/Text.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <sstream>

namespace {

VeskUrl url(const char *utf8)
{
    return VeskUrl(text(utf8));
}

std::string shown(const VeskUrl &value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

using Items = VeskUrl::QueryItems;

} // namespace

TEST(VeskUrlTest, ReadsThePartsOfAUrl)
{
    const VeskUrl value
        = url("http://user@opml.radiotime.com:81/Browse.ashx?c=music&id=g%2079#top");
    EXPECT_EQ(value.scheme(), text("http"));
    EXPECT_EQ(value.authority(), text("user@opml.radiotime.com:81"));
    EXPECT_EQ(value.host(), text("opml.radiotime.com"));
    EXPECT_EQ(value.path(), text("/Browse.ashx"));
    EXPECT_EQ(value.queryItems(), (Items {{text("c"), text("music")}, {text("id"), text("g 79")}}));
    EXPECT_FALSE(value.isEmpty());
    EXPECT_TRUE(VeskUrl().isEmpty());
    EXPECT_TRUE(VeskUrl(QString()).isEmpty());
}

TEST(VeskUrlTest, WritesUnchangedPartsByteForByte)
{
    for (const char *same : {"http://opml.radiotime.com/Tune.ashx?id=s1&sid=p2&filter=s:~A",
             "HTTP://Host.Example:8000/;stream.mp3", "http://h/a/../b/./c//d?x=1&&y&=z&",
             "http://h?", "http://h/?#", "http://h#a?b#c", "http://h/%zz%4?%=%1&%41=%c3%28",
             "//h/p", "/p?q", "?q", "#f", "p", "mms://h/x", "http:p", "http://[::1]:80/",
             "http://a@b@c/", "http://h/{a}|b\\^`\"<>?{QUERY}=[x]|", "1http://x", "http//x", ":",
             "http:", "http://", "data:text/plain,hello", ""}) {
        EXPECT_EQ(url(same).toString(), text(same));
        EXPECT_EQ(url(same).toEncoded(), QByteArray(same));
        EXPECT_EQ(VeskUrl::fromEncoded(same).toString(), text(same));
        EXPECT_EQ(url(same), VeskUrl::fromEncoded(same));
    }
}

TEST(VeskUrlTest, EncodesWhatWouldBreakARequestLine)
{
    EXPECT_EQ(url("http://h/a b\r\nX: y\t\x7f?q=ä").toString(),
        text("http://h/a%20b%0D%0AX:%20y%09%7F?q=%C3%A4"));
    EXPECT_EQ(VeskUrl(QString(3, QChar(0))).toString(), text("%00%00%00"));
    EXPECT_EQ(VeskUrl::fromEncoded(QByteArray("http://h/\xff\xc3\xa4 \0x", 14)).toString(),
        text("http://h/%FF%C3%A4%20%00"));
    EXPECT_EQ(url("http://h/\xF0\x9F\x8E\xB5").toString(), text("http://h/%F0%9F%8E%B5"));
    const QChar half(0xD83C);
    EXPECT_EQ(VeskUrl(text("http://h/") + half).toString(), text("http://h/%EF%BF%BD"));
}

TEST(VeskUrlTest, ReadsTheHostOutOfAnyAuthority)
{
    EXPECT_EQ(url("http://h").host(), text("h"));
    EXPECT_EQ(url("http://h:80").host(), text("h"));
    EXPECT_EQ(url("http://u:p@h:80/x").host(), text("h"));
    EXPECT_EQ(url("http://u@x@h/").host(), text("h"));
    EXPECT_EQ(url("http://[fe80::1]:80/").host(), text("fe80::1"));
    EXPECT_EQ(url("http://[fe80::1").host(), text("fe80::1"));
    EXPECT_EQ(url("http:///x").host(), QString());
    EXPECT_EQ(url("/x").host(), QString());
    EXPECT_EQ(url("http://h?x:y@z").host(), text("h"));
}

TEST(VeskUrlTest, ARelativeReferenceHasNoSchemeAndNoAuthority)
{
    const VeskUrl value = url("/Browse.ashx?c=presets");
    EXPECT_EQ(value.scheme(), QString());
    EXPECT_EQ(value.authority(), QString());
    EXPECT_EQ(value.path(), text("/Browse.ashx"));
    EXPECT_EQ(value.queryItemValue(text("c")), text("presets"));
}

TEST(VeskUrlTest, ChangesTheSchemeAlone)
{
    VeskUrl value = url("http://h/p?q=%zz#f");
    value.setScheme(text("https"));
    EXPECT_EQ(value.toString(), text("https://h/p?q=%zz#f"));
    EXPECT_EQ(value.path(), text("/p"));
    for (const char *none : {"1x", "ht tp", "http:", "a/b", "ä"})
        value.setScheme(text(none));
    EXPECT_EQ(value.toString(), text("https://h/p?q=%zz#f"));
    value.setScheme(QString());
    EXPECT_EQ(value.toString(), text("//h/p?q=%zz#f"));
    EXPECT_EQ(value.authority(), text("h"));
}

TEST(VeskUrlTest, WithoutItsSchemeAPathDoesNotTurnIntoOne)
{
    VeskUrl value = url("x:y:z");
    value.setScheme(QString());
    EXPECT_EQ(value.scheme(), QString());
    EXPECT_EQ(value.path(), text("y:z"));
    EXPECT_EQ(VeskUrl(value.toString()), value);
}

TEST(VeskUrlTest, EncodesAndDecodesThePath)
{
    VeskUrl value = url("http://opml.radiotime.com");
    value.setPath(text("/Browse.ashx"));
    EXPECT_EQ(value.toString(), text("http://opml.radiotime.com/Browse.ashx"));
    for (const char *path : {"/a b/ü?#%41+&;=:@", "/", "", "/%", "//x", "/a//b/.."}) {
        value.setPath(text(path));
        EXPECT_EQ(value.path(), text(path));
        EXPECT_EQ(VeskUrl(value.toString()).path(), text(path)) << path;
        EXPECT_EQ(value.host(), text("opml.radiotime.com"));
    }
    value.setPath(text("Browse.ashx"));
    EXPECT_EQ(value.path(), text("/Browse.ashx"));
    EXPECT_EQ(url("http://h/a+b%2Bc").path(), text("/a+b+c"));
    EXPECT_EQ(url("http://h/%41%zz%4").path(), text("/A%zz%4"));
    EXPECT_EQ(url("http://h/%FFx").path(), text("/\xEF\xBF\xBDx"));
    EXPECT_EQ(url("%EF%BB%BFx").path(), QChar(QChar::ByteOrderMark) + text("x"));
}

TEST(VeskUrlTest, APathStaysAPathWhateverItLooksLike)
{
    for (const char *path : {"//host/x", "a:b", "http://x", "?q", "#f", "//", "a:b:c"}) {
        VeskUrl value = url("?q=1");
        value.setPath(text(path));
        EXPECT_EQ(value.path(), text(path));
        EXPECT_EQ(value.scheme(), QString());
        EXPECT_EQ(value.authority(), QString());
        EXPECT_EQ(VeskUrl(value.toString()).path(), text(path)) << path;
        EXPECT_EQ(value.queryItemValue(text("q")), text("1"));
    }
}

TEST(VeskUrlTest, ReadsQueryItemsLeniently)
{
    EXPECT_EQ(url("?a=1&b&=c&&d==e=&%61=%zz+%2B&a=2").queryItems(),
        (Items {{text("a"), text("1")}, {text("b"), QString()}, {QString(), text("c")},
            {text("d"), text("=e=")}, {text("a"), text("%zz +")}, {text("a"), text("2")}}));
    EXPECT_EQ(url("http://h/").queryItems(), Items());
    EXPECT_EQ(url("http://h/?").queryItems(), Items());
    EXPECT_EQ(url("http://h/?&&#a=1").queryItems(), Items());
    EXPECT_EQ(url("?a+b=c+d").queryItems(), (Items {{text("a b"), text("c d")}}));
}

TEST(VeskUrlTest, LooksItemsUpByTheirDecodedKey)
{
    const VeskUrl value = url("?a=1&%61=2&b&c+d=3&E=4");
    EXPECT_EQ(value.queryItemValue(text("a")), text("1"));
    EXPECT_EQ(value.queryItemValue(text("c d")), text("3"));
    EXPECT_TRUE(value.hasQueryItem(text("b")));
    EXPECT_TRUE(value.queryItemValue(text("b")).isEmpty());
    EXPECT_FALSE(value.hasQueryItem(text("e")));
    EXPECT_FALSE(value.hasQueryItem(text("c+d")));
    EXPECT_FALSE(value.hasQueryItem(text("1")));
    EXPECT_EQ(url("?%61=2&a=1").queryItemValue(text("a")), text("2"));
}

TEST(VeskUrlTest, EncodesItemsThatAreAdded)
{
    VeskUrl value = url("http://h/p#f");
    value.addQueryItem(text("q"), text("a b+c&d=e#f%41ä~"));
    value.addQueryItem(text("k&="), QString());
    EXPECT_EQ(value.toString(), text("http://h/p?q=a%20b%2Bc%26d%3De%23f%2541%C3%A4~&k%26%3D=#f"));
    EXPECT_EQ(value.queryItems(),
        (Items {{text("q"), text("a b+c&d=e#f%41ä~")}, {text("k&="), QString()}}));
    EXPECT_EQ(VeskUrl(value.toString()).queryItems(), value.queryItems());
}

TEST(VeskUrlTest, AppendsItemsToAnyQuery)
{
    const auto added = [](const char *before) {
        VeskUrl value = url(before);
        value.addQueryItem(text("k"), text("v"));
        EXPECT_EQ(value.queryItemValue(text("k")), text("v"));
        return value.toEncoded().toStdString();
    };
    EXPECT_EQ(added("http://h"), "http://h?k=v");
    EXPECT_EQ(added("http://h/p?"), "http://h/p?k=v");
    EXPECT_EQ(added("http://h/p?a=%zz"), "http://h/p?a=%zz&k=v");
    EXPECT_EQ(added("http://h/p?a&"), "http://h/p?a&k=v");
    EXPECT_EQ(added("http://h/p#f?x"), "http://h/p?k=v#f?x");
    EXPECT_EQ(added("http://h/p?a#"), "http://h/p?a&k=v#");
    EXPECT_EQ(added(""), "?k=v");
}

TEST(VeskUrlTest, ReplacesTheWholeQuery)
{
    VeskUrl value = url("http://h/p?a=1&b=2#f");
    value.setQueryItems({{text("x"), text("1 2")}, {text("x"), text("3")}});
    EXPECT_EQ(value.toString(), text("http://h/p?x=1%202&x=3#f"));
    value.setQueryItems({});
    EXPECT_EQ(value.toString(), text("http://h/p#f"));
    value.setQueryItems({{QString(), QString()}});
    EXPECT_EQ(value.queryItems(), (Items {{QString(), QString()}}));
}

TEST(VeskUrlTest, RemovesTheFirstItemOfAKey)
{
    const auto removed = [](const char *before, const char *key) {
        VeskUrl value = url(before);
        value.removeQueryItem(text(key));
        EXPECT_EQ(VeskUrl(value.toString()).queryItems(), value.queryItems());
        return value.toEncoded().toStdString();
    };
    EXPECT_EQ(removed("http://h/?a=1&b=%zz&a=2", "a"), "http://h/?b=%zz&a=2");
    EXPECT_EQ(removed("http://h/?a=1&b=2&c=3", "b"), "http://h/?a=1&c=3");
    EXPECT_EQ(removed("http://h/?a=1&b=2#f", "b"), "http://h/?a=1#f");
    EXPECT_EQ(removed("http://h/?a=1#f", "a"), "http://h/#f");
    EXPECT_EQ(removed("http://h/?a=1", "A"), "http://h/?a=1");
    EXPECT_EQ(removed("http://h/?%61=1&b", "a"), "http://h/?b");
    EXPECT_EQ(removed("http://h/", "a"), "http://h/");
}

TEST(VeskUrlTest, ComparesByText)
{
    EXPECT_EQ(url("http://h/a"), url("http://h/a"));
    EXPECT_NE(url("http://h/a"), url("http://h/%61"));
    VeskUrl built = url("http://h");
    built.setPath(text("/a"));
    EXPECT_EQ(built, url("http://h/a"));
}

TEST(VeskUrlTest, HidesSecretsInItsDisplayText)
{
    EXPECT_EQ(shown(url("https://h/Account.ashx?c=auth&username=me&password=p%20w&Session=x#f")),
        "https://h/Account.ashx?c=auth&username=me&password=***&Session=***#f");
    EXPECT_EQ(shown(url("http://u:secret@h:80/p?a=b")), "http://***@h:80/p?a=b");
    EXPECT_EQ(shown(url("http://u:s@x@h/")), "http://***@h/");
    EXPECT_EQ(
        shown(url("http://h/?pass%77ord=secret&&password")), "http://h/?pass%77ord=***&&password");
    EXPECT_EQ(shown(url("http://h/#password=secret")), "http://h/#password=***");
    EXPECT_EQ(shown(url("http://h/live?accessKey=k3y&bitrate=128&Signature=s&X-Amz-Credential=c")),
        "http://h/live?accessKey=***&bitrate=128&Signature=***&X-Amz-Credential=***");
    EXPECT_EQ(shown(url("http://h/a@b?c@d")), "http://h/a@b?c@d");
    EXPECT_EQ(shown(url("?")), "?");
    EXPECT_EQ(shown(VeskUrl()), "");
    EXPECT_EQ(url("http://u:p@h/?password=x").toString(), text("http://u:p@h/?password=x"));
}

TEST(VeskUrlTest, HidesSecretsOfNestedAddresses)
{
    EXPECT_EQ(
        shown(url("http://r/Report.ashx?streamUrl=http%3A%2F%2Fh%2Fa%3Ftoken%3DS%26b%3D1&id=2")),
        "http://r/Report.ashx?streamUrl=http%3A%2F%2Fh%2Fa%3Ftoken%3D***%26b%3D1&id=2");
    EXPECT_EQ(shown(url("http://r/?u=http://me:secret@h/")), "http://r/?u=http%3A%2F%2F***%40h%2F");
    // In a URL nested in a nested one.
    EXPECT_EQ(
        shown(
            url("http://r/?u=http%3A%2F%2Fh%2F%3Fv%3Dhttp%253A%252F%252Fi%252F%253Fsession%253DS")),
        "http://r/?u=http%3A%2F%2Fh%2F%3Fv%3Dhttp%253A%252F%252Fi%252F%253Fsession%253D***");
    // A URL without secrets is unchanged, to the byte.
    for (const char *without : {"http://r/?u=http://h/?a=b",
             "http://r/?u=http%3a%2f%2fh%2f%3Fa%3Db+c", "http://r/?u=a://b&c"})
        EXPECT_EQ(shown(url(without)), without);
    // At any depth.
    QString deep = text("x://h/?token=SECRET");
    for (int i = 0; i < 10'000; ++i)
        deep.prepend(text("x://?u="));
    EXPECT_FALSE(VeskUrl(deep).toDisplayString().contains(text("SECRET")));
}

TEST(VeskUrlTest, HidesSecretsInPlainTexts)
{
    EXPECT_EQ(VeskUrl::displayText(text("http://h/a.mp3?token=S&b=1")),
        text("http://h/a.mp3?token=***&b=1"));
    EXPECT_EQ(VeskUrl::displayText(text("http://u:p@h/")), text("http://***@h/"));
    for (const char *without :
        {"", "no address", "http://h/a b?c=\"d\"", "{uri} http://h/%zz", "http://h/?a=%7e"})
        EXPECT_EQ(VeskUrl::displayText(text(without)), text(without));
}
