// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/Language.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

namespace {

const QString catalogues = QStringLiteral(TEST_CATALOGUES);

class LanguageTest : public testing::Test {
protected:
    void TearDown() override { Language::setCurrent(QStringLiteral("en"), {}); }

    static bool use(const char *language)
    {
        return Language::setCurrent(QString::fromLatin1(language), {catalogues});
    }

    static QString favorites() { return TrString("Test", "My Favorites").toString(); }

    static QString stations(int count)
    {
        return TrString(QStringLiteral("Test"), QStringLiteral("%n station(s)"), QString(), count)
            .toString();
    }
};

} // namespace

TEST_F(LanguageTest, IsEnglishAtStart)
{
    EXPECT_EQ(Language::current(), QStringLiteral("en"));
    EXPECT_EQ(favorites(), QStringLiteral("My Favorites"));
}

TEST_F(LanguageTest, SwitchesTextsThatExistAlready)
{
    const TrString title("Test", "My Favorites");
    EXPECT_EQ(title.toString(), QStringLiteral("My Favorites"));
    ASSERT_TRUE(use("de"));
    EXPECT_EQ(title.toString(), QStringLiteral("Meine Favoriten"));
    EXPECT_EQ(Language::current(), QStringLiteral("de"));
    ASSERT_TRUE(use("fr-CA"));
    EXPECT_EQ(title.toString(), QStringLiteral("Mes favoris"));
    ASSERT_TRUE(use("en"));
    EXPECT_EQ(title.toString(), QStringLiteral("My Favorites"));
}

TEST_F(LanguageTest, ReplacesTheFormerCatalogueAltogether)
{
    ASSERT_TRUE(use("de"));
    const TrString open(QStringLiteral("Test"), QStringLiteral("Open"), QStringLiteral("verb"));
    ASSERT_EQ(open.toString(), QStringLiteral("\u00d6ffnen"));
    ASSERT_TRUE(use("fr-CA"));
    EXPECT_EQ(open.toString(), QStringLiteral("Open")) << "the French catalogue does not have it";
}

TEST_F(LanguageTest, TellsContextsAndDisambiguationsApart)
{
    ASSERT_TRUE(use("de"));
    const QString test = QStringLiteral("Test");
    const QString open = QStringLiteral("Open");
    EXPECT_EQ(
        TrString(test, open, QStringLiteral("verb")).toString(), QStringLiteral("\u00d6ffnen"));
    EXPECT_EQ(
        TrString(test, open, QStringLiteral("adjective")).toString(), QStringLiteral("Offen"));
    EXPECT_EQ(TrString(trExtractContext("virtual QString TestNode::title(const QString&)"), open)
                  .toString(),
        QStringLiteral("Auf"));
    EXPECT_EQ(TrString(QStringLiteral("Elsewhere"), open).toString(), open);
}

TEST_F(LanguageTest, ChoosesPluralForms)
{
    EXPECT_EQ(stations(1), QStringLiteral("1 station(s)"));
    ASSERT_TRUE(use("en"));
    EXPECT_EQ(stations(1), QStringLiteral("1 station"));
    EXPECT_EQ(stations(2), QStringLiteral("2 stations"));
    EXPECT_EQ(stations(0), QStringLiteral("0 stations"));
    ASSERT_TRUE(use("de"));
    EXPECT_EQ(stations(1), QStringLiteral("1 Sender"));
    EXPECT_EQ(stations(5), QStringLiteral("5 Sender zusammen"));
}

TEST_F(LanguageTest, FillsArgumentsIntoTheTranslation)
{
    ASSERT_TRUE(use("de"));
    const TrString text(QStringLiteral("Test"), QStringLiteral("%1 of %2"), QString(), -1,
        {TrArg(QStringLiteral("%2")), TrArg(QStringLiteral("9"))});
    EXPECT_EQ(text.toString(), QStringLiteral("aus 9: %2"));
}

TEST_F(LanguageTest, DoesNotTranslateNames)
{
    ASSERT_TRUE(use("de"));
    EXPECT_EQ(
        Language::ntr(QStringLiteral("My Favorites")).toString(), QStringLiteral("My Favorites"));
}

TEST_F(LanguageTest, FallsBackToTheLanguageOfARegion)
{
    ASSERT_TRUE(use("de-AT"));
    EXPECT_EQ(favorites(), QStringLiteral("Meine Favoriten"));
    EXPECT_EQ(Language::current(), QStringLiteral("de-AT"));
    ASSERT_TRUE(use("de-Latn-AT"));
    EXPECT_EQ(favorites(), QStringLiteral("Meine Favoriten"));
    ASSERT_TRUE(use("fr_CA"));
    EXPECT_EQ(favorites(), QStringLiteral("Mes favoris"));
}

TEST_F(LanguageTest, DoesNotTakeARegionForItsLanguage)
{
    EXPECT_FALSE(use("fr"));
    EXPECT_FALSE(use("fr-FR"));
    EXPECT_EQ(favorites(), QStringLiteral("My Favorites"));
}

TEST_F(LanguageTest, NeedsNoCatalogueForEnglish)
{
    for (const char *tag : {"en", "en-US", "en_GB", "EN"}) {
        EXPECT_TRUE(Language::setCurrent(QString::fromLatin1(tag), {})) << tag;
        EXPECT_EQ(Language::current(), QString::fromLatin1(tag));
        EXPECT_EQ(stations(1), QStringLiteral("1 station(s)"));
    }
}

TEST_F(LanguageTest, ShowsSourceTextsWhenThereIsNoCatalogue)
{
    ASSERT_TRUE(use("de"));
    EXPECT_FALSE(use("it"));
    EXPECT_EQ(favorites(), QStringLiteral("My Favorites"));
    EXPECT_EQ(Language::current(), QStringLiteral("it"));
}

TEST_F(LanguageTest, TakesTheFirstFolderThatHasTheLanguage)
{
    QTemporaryDir empty;
    QTemporaryDir own;
    ASSERT_TRUE(QFile::copy(QDir(catalogues).filePath(QStringLiteral("vesk_fr-CA.qm")),
        QDir(own.path()).filePath(QStringLiteral("vesk_de.qm"))));
    ASSERT_TRUE(
        Language::setCurrent(QStringLiteral("de-DE"), {empty.path(), own.path(), catalogues}));
    EXPECT_EQ(favorites(), QStringLiteral("Mes favoris"));
    ASSERT_TRUE(Language::setCurrent(QStringLiteral("de-DE"), {catalogues, own.path()}));
    EXPECT_EQ(favorites(), QStringLiteral("Meine Favoriten"));
}

TEST_F(LanguageTest, PassesOverAFileThatIsNoCatalogue)
{
    QTemporaryDir broken;
    QFile file(QDir(broken.path()).filePath(QStringLiteral("vesk_de.qm")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a catalogue");
    file.close();
    EXPECT_FALSE(Language::setCurrent(QStringLiteral("de"), {broken.path()}));
    EXPECT_TRUE(Language::setCurrent(QStringLiteral("de"), {broken.path(), catalogues}));
    EXPECT_EQ(favorites(), QStringLiteral("Meine Favoriten"));
}

TEST_F(LanguageTest, NeverLeavesTheFolder)
{
    QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("vesk_x")));
    ASSERT_TRUE(QFile::copy(QDir(catalogues).filePath(QStringLiteral("vesk_de.qm")),
        QDir(folder.path()).filePath(QStringLiteral("de.qm"))));
    for (const char *tag : {"x/../de", "../de", "/de", "de\n", "", "d", "de-", "-de", "de--AT"}) {
        EXPECT_FALSE(Language::setCurrent(QString::fromLatin1(tag), {folder.path(), catalogues}))
            << tag;
        EXPECT_EQ(favorites(), QStringLiteral("My Favorites")) << tag;
    }
}

TEST_F(LanguageTest, GivesReadersOnOtherThreadsOneLanguageOrTheOther)
{
    std::atomic<bool> stop {false};
    std::atomic<int> strange {0};
    std::thread reader([&] {
        while (!stop) {
            const QString text = favorites();
            if (text != QLatin1String("Meine Favoriten") && text != QLatin1String("Mes favoris")
                && text != QLatin1String("My Favorites"))
                ++strange;
        }
    });
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(use(i % 2 ? "de" : "fr-CA"));
    stop = true;
    reader.join();
    EXPECT_EQ(strange, 0);
}

TEST(LanguageDeathTest, IsNotSwitchedFromAnotherThread)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(std::thread([] { Language::setCurrent(QStringLiteral("en"), {}); }).join(),
        "Assertion failed: isMainThread");
}

TEST_F(LanguageTest, PluginsHaveCataloguesOfTheirOwn)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(QFile::copy(catalogues + QStringLiteral("/vesk_fr-CA.qm"),
        folder.filePath(QStringLiteral("radio_de.qm"))));
    Language::addCatalogues(folder.path(), QStringLiteral("radio"));
    Language::addCatalogues(folder.path(), QStringLiteral("radio"));
    EXPECT_EQ(favorites(), QStringLiteral("My Favorites"))
        << "they count from the next language on";

    EXPECT_FALSE(Language::setCurrent(QStringLiteral("de-CH"), {})) << "the host has no texts";
    EXPECT_EQ(favorites(), QStringLiteral("Mes favoris"));
    ASSERT_TRUE(use("de"));
    EXPECT_EQ(favorites(), QStringLiteral("Meine Favoriten")) << "the host's come first";
    ASSERT_TRUE(use("en"));
    EXPECT_EQ(favorites(), QStringLiteral("My Favorites"));
}
