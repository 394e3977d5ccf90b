// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPath.h"
#include "tests/support/Text.h"
#include "tests/system/FavoritesFixture.h"

#include <QDeadlineTimer>
#include <QFile>

#include <chrono>
#include <random>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Reads the host's log.
class FavoritesLog : public FavoritesFixture {
protected:
    FavoritesLog()
        : FavoritesFixture(
            {text("--log-level"), text("warn"), text("--log-file"), text("%1/host.log")})
    {
    }
    /// Whether \a line is logged after the lines that earlier calls found. The log of a plug-in's
    /// process may arrive after its response.
    bool isLogged(const char *line)
    {
        const QDeadlineTimer deadline(5000);
        for (;;) {
            QFile file(folder.filePath(text("host.log")));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            const QByteArray all = file.readAll();
            const bool found = all.indexOf(line, m_seen) >= 0;
            if (found) {
                m_seen = all.size();
                return true;
            }
            if (deadline.hasExpired())
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }

private:
    int m_seen = 0;
};

struct Failing {
    const char *fault;
    const char *message;
    const char *name;
};

const Failing failing[] = {
    {"head-fault@%1:403", "Access forbidden.", "VeskError:0"},
    {"head-fault@%1:400,validation.error,Odd", "A validation error occurred.", "VeskError:6"},
    {"head-fault@%1:503", "TuneIn request failed.", "VeskError:0"},
    {"http-status@%1:500", "Invalid data returned.", "VeskError"},
    {"malformed@%1", "Invalid data returned.", "VeskError"},
    {"empty@%1", "Invalid data received.", "VeskError"},
    {"reset@%1", "Invalid data received.", "VeskError"},
};

QByteArray faultAt(const Failing &each, const char *page)
{
    return QByteArray(each.fault).replace("%1", page);
}

TEST_F(FavoritesLog, AFailedChangeIsReportedAndLosesNothing)
{
    const QList<Item> trials = found("trial");
    runFirstOf(trials.value(0).browserMenu);
    const std::vector<std::string> before = favorites();
    ASSERT_THAT(before, ElementsAre(HasSubstr("Trial 01")));
    for (const Failing &each : failing) {
        for (int i = 0; i < 2; ++i) {
            SCOPED_TRACE(std::string(each.fault) + (i == 0 ? " removing" : " adding"));
            const QString menuPath = trials.value(i).browserMenu;
            product.setFault(faultAt(each, "Preset.ashx"));
            const Complaint complaint = Complaint::of(runFirstOf(menuPath));
            product.clearFaults();
            EXPECT_EQ(complaint.message.toStdString(), each.message);
            EXPECT_EQ(complaint.name.toStdString(), each.name);
            EXPECT_EQ(complaint.title, text("Error"));
            EXPECT_TRUE(
                isLogged("TuneInAddRemovePresetsNode::on_node_invoke: %1: failed, error: '"));
            EXPECT_EQ(favorites(), before);
            EXPECT_EQ(titleIn(menuPath), i == 0 ? RemoveTitle : AddTitle);
        }
    }
    EXPECT_TRUE(runFirstOf(trials.value(1).browserMenu).contains(text("result")));
    EXPECT_TRUE(runFirstOf(trials.value(0).browserMenu).contains(text("result")));
    EXPECT_THAT(favorites(), ElementsAre(HasSubstr("Trial 02")));
}

TEST_F(FavoritesLog, AnItemThatCannotBeLookedUpIsOfferedForAdding)
{
    const Item item = station();
    runFirstOf(item.browserMenu);
    for (const Failing &each : failing) {
        SCOPED_TRACE(each.fault);
        product.setFault(faultAt(each, "Describe.ashx"));
        EXPECT_EQ(titleIn(item.browserMenu), AddTitle);
        product.clearFaults();
        EXPECT_TRUE(isLogged("CMTuneInWorker: reporting status: failed: error: '"));
        EXPECT_EQ(titleIn(item.browserMenu), RemoveTitle);
    }
    for (const char *body : {"", "{\"element\":\"link\",\"is_preset\":\"true\"}",
             "{\"element\":\"link\"},{\"element\":\"station\",\"is_preset\":\"true\"}"}) {
        answerOnce("Describe.ashx", body);
        EXPECT_EQ(titleIn(item.browserMenu), AddTitle) << body;
        EXPECT_TRUE(isLogged("TuneInAddRemovePresetsNode::isPreset: Invalid response!"));
    }
    answerOnce("Describe.ashx", "{\"element\":\"station\",\"is_preset\":\"True\"}");
    EXPECT_EQ(titleIn(item.browserMenu), AddTitle);
    answerOnce("Describe.ashx", "{\"element\":\"show\",\"is_preset\":true}");
    EXPECT_EQ(titleIn(item.browserMenu), RemoveTitle);
    EXPECT_THAT(favorites(), ElementsAre(HasSubstr("Trial 01")));
}

TEST_F(FavoritesLog, AMenuWithoutItemDoesNothing)
{
    EXPECT_EQ(titleIn(text("TuneIn:browser_context")), "Error");
    EXPECT_TRUE(isLogged("Query not including 'veskMatchingPath'"));
    requests();
    const QVariantHash answer = run(text("TuneIn:browser_context/presets"));
    EXPECT_EQ(Complaint::of(answer).name, text("VeskError:unanswered"));
    EXPECT_TRUE(isLogged("Query not including 'veskMatchingPath'"));

    const Item item = station();
    requests();
    CMPath entry = CMPath::fromEncoded(item.browserMenu) + text("/presets");
    EXPECT_EQ(Complaint::of(run(entry.toEncoded())).name, text("VeskError:unanswered"));
    EXPECT_TRUE(isLogged("Invalid command: ''"));
    EXPECT_THAT(requests(), testing::IsEmpty());
}

/// Changes favorites while the host is killed from time to time. The directory keeps running.
class FavoritesCrash : public FavoritesFixture {
protected:
    /// The guide ids of the directory's favorites.
    QStringList kept() const
    {
        QStringList ids;
        const QVariantHash answer
            = product.directory(text("/Browse.ashx?c=presets&render=json&formats=")
                + text(AllFormats) + text("&serial=") + serial);
        const QVariantList body = answer.value(text("body")).toList();
        for (const QVariant &row : body)
            ids.append(row.toHash().value(text("guide_id")).toString());
        ids.removeAll(QString());
        return ids;
    }
    /// The favorites that the host shows.
    QStringList shown() const
    {
        QStringList ids;
        const QList<Item> rows = items(text(FavoritesScreen));
        for (const Item &item : rows)
            ids.append(item.guideId);
        ids.removeAll(QString());
        return ids;
    }
    void expectAgreement() const
    {
        ASSERT_EQ(kept(), expected);
        ASSERT_EQ(shown(), expected);
    }

    void change(const Item &item)
    {
        const bool adding = !expected.contains(item.guideId);
        const Entry entry = menu(item.browserMenu).value(0);
        ASSERT_EQ(entry.title, text(adding ? AddTitle : RemoveTitle));
        ASSERT_TRUE(run(entry.path).contains(text("result")));
        note(item, adding);
    }
    /// The same, with the host killed \a microseconds after the start of the change.
    void changeAndCrash(const Item &item, int after)
    {
        const bool adding = !expected.contains(item.guideId);
        std::thread killer([this, after] {
            std::this_thread::sleep_for(std::chrono::microseconds(after));
            product.killHost();
        });
        const bool confirmed = runFirstOf(item.browserMenu).contains(text("result"));
        killer.join();
        product.waitForHostsEnd();
        ASSERT_TRUE(product.startHost());
        ASSERT_EQ(product.serial(), serial);
        ++crashes;
        unconfirmed += confirmed ? 0 : 1;

        const bool happened = kept().contains(item.guideId) == adding;
        ASSERT_TRUE(happened || !confirmed) << "lost after it was confirmed";
        if (happened)
            note(item, adding);
        expectAgreement();
    }

    QStringList expected; ///< in the order of adding
    int crashes = 0;
    int unconfirmed = 0; ///< crashes before the response

private:
    void note(const Item &item, bool adding)
    {
        if (adding)
            expected.append(item.guideId);
        else
            expected.removeAll(item.guideId);
    }
};

unsigned seed()
{
    const QByteArray given = qgetenv("VESK_TEST_SEED");
    return given.isEmpty() ? std::random_device()() : given.toUInt();
}

TEST_F(FavoritesCrash, HostAndDirectoryAgreeAfterAThousandChangesWithCrashes)
{
    constexpr int Rounds = 1000;
    const unsigned chosenSeed = seed();
    std::cout << "VESK_TEST_SEED=" << chosenSeed << '\n';
    std::mt19937 random(chosenSeed);
    const auto pick
        = [&random](int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); };
    const QList<Item> trials = found("trial");
    ASSERT_GE(trials.size(), 10);
    int made = 0;
    while (made < Rounds && !HasFatalFailure()) {
        SCOPED_TRACE(testing::Message() << "round " << made);
        const Item &item = trials.at(pick(10));
        if (pick(8) == 0)
            changeAndCrash(item, pick(4000));
        else
            change(item);
        ++made;
    }
    EXPECT_EQ(made, Rounds);
    expectAgreement();
    std::cout << crashes << " crashes, " << unconfirmed << " of them before the answer\n";
    EXPECT_GT(crashes, 60);
    EXPECT_GT(unconfirmed, 10);
}

} // namespace
