// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/secrets.h"

#include <gtest/gtest.h>

namespace {

std::string shown(const char *address)
{
    return veskWithoutSecrets(QString::fromUtf8(address)).toStdString();
}

TEST(SecretKey, isRecognisedInAnyCase)
{
    for (const char *key : {"password", "Password", "PASSWORD", "session", "sessionId", "SessionID",
             "session_id", "SESSION_ID", "token", "Token"})
        EXPECT_TRUE(veskIsSecretKey(QString::fromLatin1(key))) << key;
    for (const char *key : {"", "pass", "passwords", "xpassword", "userName", "sessions", "id",
             "listenId", "tokens", "key"})
        EXPECT_FALSE(veskIsSecretKey(QString::fromLatin1(key))) << key;
}

TEST(WithoutSecrets, showsOfAStreamsAddressWhatTellsOfTheStream)
{
    EXPECT_EQ(shown("http://a.example/live?accessKey=k3y&Format=mp3&bitrate=128&u=ann&id=7"),
        "http://a.example/live?accessKey=***&Format=mp3&bitrate=128&u=***&id=***");
    EXPECT_EQ(shown("http://h/live?Signature=s&X-Amz-Credential=c&a=b=k3y"),
        "http://h/live?Signature=***&X-Amz-Credential=***&a=***");
    EXPECT_EQ(shown("http://h/live?forma%74=aac&t%79pe=x"), "http://h/live?forma%74=aac&t%79pe=x");
    for (const char *harmless : {"", "?", "#", "http://h", "http://h/a.mp3", "http://h/a@b",
             "http://h/?type=a%2fb+c", "no address", "{uri} a", "http://h/?&&type=", "//h:80/a"})
        EXPECT_EQ(shown(harmless), harmless);
}

TEST(WithoutSecrets, showsOfThePagesOfTheDirectoryWhatIsAskedFor)
{
    EXPECT_EQ(shown("https://h/Account.ashx?c=auth&username=me&password=p%20w&partnerId=p&serial=s"
                    "&render=json&formats=mp3,aac&latlon=1,2&email=e&sessionId=x&listenId=9"),
        "https://h/Account.ashx?c=auth&username=***&password=***&partnerId=***&serial=***"
        "&render=json&formats=mp3,aac&latlon=***&email=***&sessionId=***&listenId=***");
    EXPECT_EQ(shown("/browse.ASHX?c=music&id=s1&filter=s:popular&offset=25&key=k"),
        "/browse.ASHX?c=music&id=s1&filter=s:popular&offset=25&key=***");
    EXPECT_EQ(shown("http://h/Browse.ashx?pass%77ord=x&&password&login=l"),
        "http://h/Browse.ashx?pass%77ord=***&&***&login=***");
}

TEST(WithoutSecrets, showsNoUsersAndNoUnknownFragments)
{
    EXPECT_EQ(shown("http://u:secret@h:80/p"), "http://***@h:80/p");
    EXPECT_EQ(shown("http://u:s@x@h/"), "http://***@h/");
    EXPECT_EQ(shown("//u@h"), "//***@h");
    EXPECT_EQ(shown("http://u@h?k3y"), "http://***@h?***");
    EXPECT_EQ(shown("http://h/#k3y"), "http://h/#***");
    EXPECT_EQ(
        shown("http://h/#access_token=x&type=a?b"), "http://h/#access_token=***&type=a%3F***");
    EXPECT_EQ(shown("http://h/a?type=1#"), "http://h/a?type=1#");
}

TEST(WithoutSecrets, showsAddressesInsideByTheSameRule)
{
    EXPECT_EQ(
        shown("http://r/Report.ashx?streamUrl=http%3A%2F%2Fh%2Fa%3Flogin%3DS%26type%3D1&id=2"),
        "http://r/Report.ashx?streamUrl=http%3A%2F%2Fh%2Fa%3Flogin%3D***%26type%3D1&id=2");
    EXPECT_EQ(shown("http://r/Report.ashx?streamUrl=//me:secret@h/"),
        "http://r/Report.ashx?streamUrl=%2F%2F***%40h%2F");
    // What has none stays as it stands, to the letter.
    for (const char *without : {"http://r/x.ashx?url=http://h/?type=b",
             "http://r/x.ashx?url=http%3a%2f%2fh%2f%3Ftype%3Db+c", "http://r/x.ashx?query=who%3F"})
        EXPECT_EQ(shown(without), without);
    // However deep someone goes.
    QString deep = QStringLiteral("x://h/?token=SECRET");
    for (int i = 0; i < 10'000; ++i)
        deep.prepend(QStringLiteral("x://h.ashx?type="));
    EXPECT_FALSE(veskWithoutSecrets(deep).contains(QStringLiteral("SECRET")));
}

TEST(WithoutSecrets, showsOfPathsWhatPlugInsGiveTheirScreens)
{
    EXPECT_EQ(shown("TuneIn:browse?veskGuideId=s1&key=k&query=jazz&VeskTitle=a"),
        "TuneIn:browse?veskGuideId=s1&key=***&query=jazz&VeskTitle=a");
    EXPECT_EQ(shown("TuneIn:browse/uri/Browse.ashx?c=music&serial=s&veskNavigation=a"),
        "TuneIn:browse/uri/Browse.ashx?c=music&serial=***&veskNavigation=a");
    EXPECT_EQ(shown("TuneIn:browse/uri/live?id=listener&veskPlayPath=http%3A%2F%2Fh%2F%3Fid%3Dme"),
        "TuneIn:browse/uri/live?id=***&veskPlayPath=http%3A%2F%2Fh%2F%3Fid%3D***");
    const QString base = QStringLiteral("browse/uri/Browse.ashx");
    EXPECT_EQ(veskShownParameter(base, QStringLiteral("c"), QStringLiteral("music")),
        QStringLiteral("music"));
    EXPECT_EQ(veskShownParameter(base, QStringLiteral("serial"), QStringLiteral("s")),
        QStringLiteral("***"));
}

TEST(TextWithoutSecrets, isATextUnlessItBeginsAsAnAddressAndHasNoBlanks)
{
    const auto shownText = [](const char *text) {
        return veskTextWithoutSecrets(QString::fromUtf8(text)).toStdString();
    };
    EXPECT_EQ(shownText("http://h/?a=b"), "http://h/?a=***");
    for (const char *text : {"", "What? a=b", "a?b=c", "Note: a=b?c=d e", "http://h/?a=b c"})
        EXPECT_EQ(shownText(text), text);
}

} // namespace
