// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/tunein/VeskTuneInResponse.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

QVariantHash entry(const char *key, const QVariant &value)
{
    return {{QString::fromLatin1(key), value}};
}

struct Accessor {
    const char *key;
    QString (VeskTuneInBodyElement::*read)() const;
};

std::ostream &operator<<(std::ostream &out, const Accessor &accessor)
{
    return out << accessor.key;
}

using Element = VeskTuneInBodyElement;

class ElementEntry : public testing::TestWithParam<Accessor> {
protected:
    QString read(const QVariant &value) const
    {
        const Element element(entry(GetParam().key, value));
        return (element.*GetParam().read)();
    }
};

} // namespace

TEST_P(ElementEntry, IsReadFromItsJsonKey)
{
    EXPECT_EQ(read(QStringLiteral("a text")), QStringLiteral("a text"));
    EXPECT_EQ((Element().*GetParam().read)(), QString());
}

TEST_P(ElementEntry, IsTextWhateverItsJsonType)
{
    EXPECT_EQ(read(qlonglong(128)), QStringLiteral("128"));
    EXPECT_EQ(read(128.0), QStringLiteral("128"));
    EXPECT_EQ(read(true), QStringLiteral("true"));
    EXPECT_EQ(read(false), QStringLiteral("false"));
    EXPECT_EQ(read(QVariant()), QString());
    EXPECT_EQ(read(QVariantHash()), QString());
    EXPECT_EQ(read(QVariantList {QStringLiteral("a")}), QString());
}

INSTANTIATE_TEST_SUITE_P(VeskTuneInBodyElement, ElementEntry,
    testing::Values(Accessor {"element", &Element::element}, Accessor {"type", &Element::type},
        Accessor {"text", &Element::text}, Accessor {"subtext", &Element::subtext},
        Accessor {"URL", &Element::url}, Accessor {"url", &Element::urlAlternative},
        Accessor {"key", &Element::key}, Accessor {"guide_id", &Element::guideId},
        Accessor {"genre_id", &Element::genreId}, Accessor {"station_id", &Element::stationId},
        Accessor {"image", &Element::image}, Accessor {"item", &Element::item},
        Accessor {"is_preset", &Element::isPreset}, Accessor {"is_default", &Element::isDefault},
        Accessor {"bitrate", &Element::bitrate},
        Accessor {"playlist_type", &Element::playlist_type},
        Accessor {"account_id", &Element::accountId}, Accessor {"user_name", &Element::userName},
        Accessor {"first_name", &Element::firstName}, Accessor {"last_name", &Element::lastName},
        Accessor {"email", &Element::email}, Accessor {"session_id", &Element::sessionId}),
    [](const testing::TestParamInfo<Accessor> &accessor) {
        return std::to_string(accessor.index) + "_" + accessor.param.key;
    });

TEST(VeskTuneInBodyElement, TellsItsTwoUrlsApart)
{
    QVariantHash both = entry("URL", QStringLiteral("outline"));
    both.insert(QStringLiteral("url"), QStringLiteral("stream"));
    const Element element(both);
    EXPECT_EQ(element.url(), QStringLiteral("outline"));
    EXPECT_EQ(element.urlAlternative(), QStringLiteral("stream"));
}

TEST(VeskTuneInBodyElement, WritesUnderTheKeysItReads)
{
    Element element;
    element.setElement(QStringLiteral("outline"));
    element.setType(QStringLiteral("link"));
    element.setKey(QStringLiteral("presets"));
    element.setText(QStringLiteral("My Favorites"));
    element.setUrl(QStringLiteral("http://a/"));
    EXPECT_EQ(element.toHash(),
        QVariantHash({{QStringLiteral("element"), QStringLiteral("outline")},
            {QStringLiteral("type"), QStringLiteral("link")},
            {QStringLiteral("key"), QStringLiteral("presets")},
            {QStringLiteral("text"), QStringLiteral("My Favorites")},
            {QStringLiteral("URL"), QStringLiteral("http://a/")}}));
}

TEST(VeskTuneInBodyElement, HasChildren)
{
    EXPECT_TRUE(Element().children().isEmpty());
    const Element parent(entry("children", QVariantList {entry("text", QStringLiteral("a")), 5}));
    ASSERT_EQ(parent.children().size(), 2);
    EXPECT_EQ(parent.children().first().text(), QStringLiteral("a"));
    EXPECT_EQ(parent.children().at(1).text(), QString());
}

TEST(VeskTuneInBodyElement, TakesASingleObjectForAListOfOne)
{
    const Element parent(entry("children", entry("text", QStringLiteral("a"))));
    ASSERT_EQ(parent.children().size(), 1);
    EXPECT_EQ(parent.children().first().text(), QStringLiteral("a"));
    EXPECT_TRUE(Element(entry("children", QStringLiteral("a"))).children().isEmpty());
}

TEST(VeskTuneInResponse, ReadsItsHead)
{
    const VeskTuneInResponse response(VeskHash(entry("head",
        QVariantHash {{QStringLiteral("status"), QStringLiteral("400")},
            {QStringLiteral("title"), QStringLiteral("Browse")},
            {QStringLiteral("fault"), QStringLiteral("Invalid ID")},
            {QStringLiteral("fault_code"), QStringLiteral("request.idInvalid")}})));
    EXPECT_EQ(response.head().status(), QStringLiteral("400"));
    EXPECT_EQ(response.head().title(), QStringLiteral("Browse"));
    EXPECT_EQ(response.head().fault(), QStringLiteral("Invalid ID"));
    EXPECT_EQ(response.head().faultCode(), QStringLiteral("request.idInvalid"));
}

TEST(VeskTuneInResponse, TakesANumericStatusForItsText)
{
    const VeskTuneInResponse response(VeskHash(entry("head", entry("status", qlonglong(200)))));
    EXPECT_EQ(response.head().status(), QStringLiteral("200"));
}

TEST(VeskTuneInResponse, ReadsItsBody)
{
    const VeskTuneInResponse response(
        VeskHash(entry("body", QVariantList {entry("text", QStringLiteral("a"))})));
    ASSERT_EQ(response.body().size(), 1);
    EXPECT_EQ(response.body().first().text(), QStringLiteral("a"));
    const VeskTuneInResponse single(VeskHash(entry("body", entry("text", QStringLiteral("b")))));
    ASSERT_EQ(single.body().size(), 1);
    EXPECT_EQ(single.body().first().text(), QStringLiteral("b"));
}

TEST(VeskTuneInResponse, IsEmptyWhereTheAnswerIs)
{
    for (const QVariantHash &hash : {QVariantHash(), entry("head", QVariant()),
             entry("body", QVariant()), entry("body", QStringLiteral("x")),
             entry("head", QVariantList {entry("status", QStringLiteral("200"))})}) {
        const VeskTuneInResponse response {VeskHash(hash)};
        EXPECT_EQ(response.head().status(), QString());
        EXPECT_TRUE(response.body().isEmpty());
    }
}

TEST(VeskTuneInResponse, PrintsWithoutItsSecrets)
{
    const VeskTuneInResponse response(VeskHash(entry("body",
        QVariantList {QVariantHash {{QStringLiteral("session_id"), QStringLiteral("hidden")},
            {QStringLiteral("user_name"), QStringLiteral("me")}}})));
    std::ostringstream out;
    out << response;
    EXPECT_EQ(out.str(), "{body: [{session_id: ***, user_name: me}]}");
}
