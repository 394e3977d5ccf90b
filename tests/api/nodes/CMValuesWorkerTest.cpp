// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMValuesWorker.h"

#include "api/values/VeskAccount.h"
#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>

#include <atomic>
#include <csignal>
#include <limits>
#include <thread>

namespace {

const QString valueRole = VeskRoles::Value();

class Values : public testing::Test {
protected:
    void SetUp() override
    {
        root.addWorker(QStringLiteral("V"), &values);
        values.define(path("V:bool"), VeskValue::fromBool(false), CMValuesWorker::Writable);
        values.define(path("V:int"), VeskValue::fromInt(1), CMValuesWorker::Writable);
        values.define(path("V:text"), VeskValue::fromString(QStringLiteral("a")),
            CMValuesWorker::Writable, text("Text"));
        values.define(path("V:fixed"), VeskValue::fromString(QStringLiteral("f")));
        QObject::connect(&values, &CMValuesWorker::valueChanged, &values,
            [this](const CMPath &changed, const VeskValue &, bool byRequest) {
                told.append(
                    changed.toEncoded() + (byRequest ? QStringLiteral(" by request") : QString()));
            });
    }
    void TearDown() override { root.removeWorker(&values); }

    Answer set(const char *to, const QVariant &value)
    {
        return setData(root, path(to), valueRole, value);
    }

    CMRootWorker root;
    CMValuesWorker values;
    QStringList told;
};

TEST_F(Values, AnswerAtOnceOnTheCallersThread)
{
    const Answer answer = getData(root, path("V:text"), {valueRole});
    ASSERT_TRUE(answer.isThere());
    EXPECT_EQ(VeskValue(VeskHash(answer.list().value(0).toHash())).string_(), QStringLiteral("a"));
    std::thread([this] {
        EXPECT_EQ(VeskValue(VeskHash(root.getValue(path("V:int")).toHash())).int_(), 1);
    }).join();
}

TEST_F(Values, AnswerTheRolesOfAValue)
{
    const Answer answer = getData(root, path("V:text?p=1"),
        {VeskRoles::Path(), VeskRoles::Type(), VeskRoles::Title(), VeskRoles::Icon()});
    EXPECT_EQ(answer.list().value(0), QVariant(QStringLiteral("V:text?p=1")));
    EXPECT_EQ(answer.list().value(1), QVariant(4));
    EXPECT_EQ(TrString::fromVariant(answer.list().value(2)), text("Text"));
    EXPECT_FALSE(answer.list().value(3).isValid());
    EXPECT_EQ(getData(root, path("V:text"), CMAllRoles()).list().size(), VeskRoles::all().size());
    EXPECT_TRUE(getData(root, path("V:bool"), {VeskRoles::Title()}).list().value(0).isNull());
}

TEST_F(Values, AnswerUnknownPathsAndRowsRequestsWithErrors)
{
    for (const char *elsewhere : {"V:", "V:gone", "V:text/x"})
        EXPECT_EQ(getData(root, path(elsewhere), {valueRole}).errorName(), CMError::NoNodeName());
    EXPECT_EQ(setData(root, path("V:gone"), valueRole, 1).errorName(), CMError::NoNodeName());
    EXPECT_EQ(getRows(root, path("V:text"), {valueRole}, 0, 9).errorText(),
        QStringLiteral("A value has no rows."));
    EXPECT_TRUE(matchRow(root, path("V:text"), valueRole, 1).isError());
}

TEST_F(Values, AreSetByRequestsWithAVeskValueOrAPlainValue)
{
    const Answer hash = set("V:text", VeskValue::fromString(QStringLiteral("b")));
    EXPECT_EQ(VeskValue(VeskHash(hash.value().toHash())).string_(), QStringLiteral("b"));
    EXPECT_EQ(values.value(path("V:text")).string_(), QStringLiteral("b"));

    const Answer plain = set("V:bool", true);
    EXPECT_TRUE(VeskValue(VeskHash(plain.value().toHash())).bool_());
    EXPECT_TRUE(values.value(path("V:bool")).bool_());
    set("V:int?p=1", 5.0);
    EXPECT_EQ(values.value(path("V:int")).int_(), 5);
    EXPECT_EQ(told,
        (QStringList {QStringLiteral("V:text by request"), QStringLiteral("V:bool by request"),
            QStringLiteral("V:int by request")}));
}

TEST_F(Values, AnswerTheirDescriptionAndWhetherTheyArePinned)
{
    const QStringList roles {VeskRoles::Description(), QStringLiteral("pinned")};
    const Answer before = getData(root, path("V:text"), roles);
    EXPECT_FALSE(before.list().value(0).isValid());
    EXPECT_FALSE(before.list().value(1).isValid());
    values.describe(path("V:text"), text("For nothing"));
    values.pin(path("V:text"));
    const Answer after = getData(root, path("V:text"), roles);
    EXPECT_EQ(TrString::fromVariant(after.list().value(0)), text("For nothing"));
    EXPECT_EQ(after.list().value(1), QVariant(true));
    EXPECT_FALSE(getData(root, path("V:bool"), roles).list().value(1).isValid());
}

TEST_F(Values, RefuseRequestsWithoutWriteAccess)
{
    const Answer fixed = set("V:fixed", QStringLiteral("x"));
    EXPECT_EQ(fixed.errorText(), QStringLiteral("The value cannot be changed."));
    values.pin(path("V:text"));
    EXPECT_TRUE(set("V:text", QStringLiteral("x")).isError());
    EXPECT_TRUE(setData(root, path("V:int"), VeskRoles::Title(), 3).isError());
    EXPECT_EQ(values.value(path("V:fixed")).string_(), QStringLiteral("f"));
    EXPECT_EQ(values.value(path("V:text")).string_(), QStringLiteral("a"));
    EXPECT_EQ(values.value(path("V:int")).int_(), 1);
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(Values, RefuseValuesOfAWrongType)
{
    VeskValue odd;
    odd.insert(QStringLiteral("type"), static_cast<int>(VeskValueType::string_));
    odd.insert(QStringLiteral("string_"), QVariantList {1});
    const std::vector<std::pair<const char *, QVariant>> wrong {
        {"V:bool", QStringLiteral("yes")},
        {"V:bool", 2},
        {"V:bool", VeskValue::fromString(QStringLiteral("true"))},
        {"V:int", QStringLiteral("five")},
        {"V:int", 1.5},
        {"V:int", 4e9},
        {"V:int", true},
        {"V:int", std::numeric_limits<double>::quiet_NaN()},
        {"V:text", QVariant()},
        {"V:text", QVariantList {1}},
        {"V:text", QVariantHash {{QStringLiteral("a"), 1}}},
        {"V:text", VeskValue::fromInt(1)},
        {"V:text", odd},
        {"V:text", QVariantHash {{QStringLiteral("type"), 4}}},
    };
    for (const auto &[to, value] : wrong) {
        const Answer answer = set(to, value);
        EXPECT_EQ(answer.errorText(), QStringLiteral("The value is not of the right type."))
            << to << " " << value.typeName();
    }
    EXPECT_TRUE(told.isEmpty());
    EXPECT_FALSE(values.value(path("V:bool")).bool_());
    EXPECT_EQ(values.value(path("V:int")).int_(), 1);
    EXPECT_EQ(values.value(path("V:text")).string_(), QStringLiteral("a"));
}

TEST_F(Values, RefuseValuesThatFailTheirCheck)
{
    values.setCheck(path("V:int"), [](const QVariant &sent, const VeskValue &value) {
        if (value.isEmpty())
            return CMError(TrString("Test", "no number: " + sent.toByteArray()));
        return value.int_() < 10 ? CMError() : CMError(text("less than 10"));
    });
    EXPECT_EQ(set("V:int", 10).errorText(), QStringLiteral("less than 10"));
    EXPECT_EQ(set("V:int", QStringLiteral("many")).errorText(), QStringLiteral("no number: many"));
    EXPECT_EQ(values.value(path("V:int")).int_(), 1);
    EXPECT_TRUE(told.isEmpty());
    EXPECT_FALSE(set("V:int", 9).isError());
    EXPECT_TRUE(values.setValue(path("V:int"), VeskValue::fromInt(11))) << "the host knows";
    values.pin(path("V:int"));
    EXPECT_EQ(set("V:int", 12).errorText(), QStringLiteral("The value cannot be changed."));
}

TEST_F(Values, EmitASignalWhenARequestReadsThem)
{
    QStringList read;
    QObject::connect(
        &values, &CMValuesWorker::valueRead, [&](const CMPath &of, const VeskValue &value) {
            read.append(of.toEncoded() + QLatin1Char('=') + value.string_());
        });
    root.getValue(path("V:text?p=1"));
    getData(root, path("V:text"), {VeskRoles::Title()});
    getData(root, path("V:gone"), {valueRole});
    values.value(path("V:text"));
    EXPECT_EQ(read, QStringList(QStringLiteral("V:text=a")));
    getData(root, path("V:fixed"), CMAllRoles());
    EXPECT_EQ(read.value(1), QStringLiteral("V:fixed=f"));
}

TEST_F(Values, AreSetByTheHostWhateverTheirAccess)
{
    EXPECT_TRUE(values.setValue(path("V:fixed"), VeskValue::fromString(QStringLiteral("g"))));
    EXPECT_EQ(told, QStringList {QStringLiteral("V:fixed")});
    EXPECT_FALSE(values.setValue(path("V:fixed"), VeskValue::fromInt(1)));
    EXPECT_FALSE(values.setValue(path("V:gone"), VeskValue::fromInt(1)));
    values.pin(path("V:fixed"));
    EXPECT_FALSE(values.setValue(path("V:fixed"), VeskValue::fromString(QStringLiteral("h"))));
    EXPECT_EQ(values.value(path("V:fixed")).string_(), QStringLiteral("g"));
}

TEST_F(Values, NotifySubscribersOnlyWhenTheyChange)
{
    QObject context;
    QStringList heard;
    const auto note = [&](const CMChange &change) {
        EXPECT_EQ(change.kind, CMSubscribe::ValueChanged());
        heard.append(change.path.toEncoded());
    };
    const auto plain = root.subscribe(path("V:text"), &context, note);
    const auto copied = root.subscribe(path("V:text?sid=1"), &context, note);
    const auto other = root.subscribe(path("V:int"), &context, note);
    EXPECT_FALSE(set("V:text", QStringLiteral("a")).isError());
    QCoreApplication::processEvents();
    EXPECT_TRUE(heard.isEmpty());
    EXPECT_TRUE(told.isEmpty());
    set("V:text", QStringLiteral("b"));
    QCoreApplication::processEvents();
    heard.sort();
    EXPECT_EQ(heard, (QStringList {QStringLiteral("V:text"), QStringLiteral("V:text?sid=1")}));
}

TEST_F(Values, NotifySubscribersOfTranslatedTitlesWhenTheLanguageChanges)
{
    QObject context;
    QStringList heard;
    const auto note = [&](const CMChange &change) { heard.append(change.path.toEncoded()); };
    const auto titled = root.subscribe(path("V:text"), &context, note);
    const auto plain = root.subscribe(path("V:int"), &context, note);
    root.notifyLanguageChanged();
    QCoreApplication::processEvents();
    EXPECT_EQ(heard, QStringList {QStringLiteral("V:text")});
}

TEST_F(Values, ListTheirPaths)
{
    EXPECT_EQ(values.paths().size(), 4);
    EXPECT_TRUE(values.paths().contains(path("V:text")));
    EXPECT_TRUE(values.value(path("V:gone")).isEmpty());
}

/// Values whose changes take effect once the test reports them as persisted.
class KeptValues : public Values {
protected:
    void SetUp() override
    {
        Values::SetUp();
        values.setKeep([this](const CMPath &, const VeskValue &, const CMValuesWorker::Kept &kept) {
            waiting.push_back(kept);
        });
    }
    QString present() const { return values.value(path("V:text")).string_(); }

    std::vector<CMValuesWorker::Kept> waiting;
};

TEST_F(KeptValues, TakeEffectAndAnswerOncePersisted)
{
    const Answer answer = set("V:text", QStringLiteral("b"));
    ASSERT_EQ(waiting.size(), 1u);
    EXPECT_FALSE(answer.isThere());
    EXPECT_EQ(present(), QStringLiteral("a"));
    EXPECT_EQ(told, QStringList());
    waiting[0](CMError());
    EXPECT_TRUE(answer.isThere());
    EXPECT_FALSE(answer.isError());
    EXPECT_EQ(present(), QStringLiteral("b"));
    EXPECT_EQ(told, QStringList {QStringLiteral("V:text by request")});
}

TEST_F(KeptValues, StayUnchangedWhenPersistingFails)
{
    const Answer answer = set("V:text", QStringLiteral("b"));
    waiting.at(0)(CMError(text("No room.")));
    EXPECT_EQ(answer.errorText(), QStringLiteral("No room."));
    EXPECT_EQ(present(), QStringLiteral("a"));
    EXPECT_EQ(told, QStringList());
}

TEST_F(KeptValues, AnswerWithAnErrorWhenTheCallbackIsDropped)
{
    const Answer answer = set("V:text", QStringLiteral("b"));
    waiting.clear();
    EXPECT_EQ(answer.errorName(), CMError::UnansweredName());
    EXPECT_EQ(present(), QStringLiteral("a"));
}

TEST_F(KeptValues, ArePersistedInOrderAlsoWhenUnchanged)
{
    const Answer first = set("V:text", QStringLiteral("b"));
    const Answer second = set("V:text", QStringLiteral("a"));
    ASSERT_EQ(waiting.size(), 2u);
    EXPECT_FALSE(second.isThere());
    waiting[0](CMError());
    waiting[1](CMError());
    EXPECT_EQ(present(), QStringLiteral("a"));
}

TEST_F(KeptValues, AreNotPersistedWhenRefused)
{
    values.pin(path("V:int"));
    EXPECT_TRUE(set("V:int", 7).isError());
    EXPECT_TRUE(set("V:fixed", QStringLiteral("x")).isError());
    EXPECT_TRUE(set("V:bool", QStringLiteral("perhaps")).isError());
    EXPECT_TRUE(set("V:gone", 1).isError());
    EXPECT_TRUE(waiting.empty());
}

TEST_F(KeptValues, TakeEffectAtOnceWhenTheHostSetsThem)
{
    EXPECT_TRUE(values.setValue(path("V:text"), VeskValue::fromString(QStringLiteral("b"))));
    EXPECT_EQ(present(), QStringLiteral("b"));
    EXPECT_TRUE(waiting.empty());
}

TEST_F(Values, CanBeSetByManyThreadsAtOnce)
{
    QObject::disconnect(&values, nullptr, &values, nullptr);
    std::atomic<int> changes {0};
    QObject::connect(
        &values, &CMValuesWorker::valueChanged, &values,
        [&](const CMPath &, const VeskValue &, bool) { ++changes; }, Qt::DirectConnection);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this, i] {
            for (int n = 0; n < 250; ++n) {
                ASSERT_TRUE(set("V:int", 10 + i * 250 + n).isThere());
                ASSERT_TRUE(root.getValue(path("V:int")).isValid());
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(changes, 1000);
}

TEST(ValuesFromPlain, ConvertsPlainValuesToTheType)
{
    const auto read = &CMValuesWorker::fromPlain;
    for (const QVariant &yes : {QVariant(true), QVariant(QStringLiteral("true")), QVariant(1),
             QVariant(QStringLiteral("1"))})
        EXPECT_EQ(read(yes, VeskValueType::bool_), VeskValue::fromBool(true));
    EXPECT_EQ(read(QStringLiteral("false"), VeskValueType::bool_), VeskValue::fromBool(false));
    EXPECT_EQ(read(QStringLiteral("-7"), VeskValueType::int_), VeskValue::fromInt(-7));
    EXPECT_EQ(read(QVariant(7.0), VeskValueType::int_), VeskValue::fromInt(7));
    EXPECT_EQ(read(QStringLiteral("1.5"), VeskValueType::double_).double_(), 1.5);
    EXPECT_EQ(
        read(QVariant(128), VeskValueType::string_), VeskValue::fromString(QStringLiteral("128")));
    EXPECT_EQ(read(QString(), VeskValueType::string_), VeskValue::fromString(QString()));

    VeskTuneInAccount account;
    account.setUserName(QStringLiteral("me"));
    EXPECT_EQ(read(account, VeskValueType::tuneInAccount).tuneInAccount().userName(),
        QStringLiteral("me"));
    EXPECT_EQ(read(account, VeskValueType::account).account().userName(), QStringLiteral("me"));
    EXPECT_TRUE(read(5, VeskValueType::account).isEmpty());
    QVariantMap map;
    map.insert(QStringLiteral("userName"), QStringLiteral("me"));
    EXPECT_EQ(
        read(map, VeskValueType::tuneInAccount).tuneInAccount().userName(), QStringLiteral("me"));
    EXPECT_TRUE(read(QStringLiteral("x"), VeskValueType::tuneInAccount).isEmpty());
    EXPECT_TRUE(read(true, VeskValueType::none).isEmpty());
    EXPECT_TRUE(
        read(QVariant(std::numeric_limits<double>::infinity()), VeskValueType::double_).isEmpty());
}

TEST(ValuesDeathTest, AreDefinedOnce)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            CMValuesWorker values;
            values.define(path("V:x"), VeskValue::fromInt(1));
            values.define(path("V:x"), VeskValue::fromInt(2));
        },
        testing::KilledBySignal(SIGABRT), "");
}

} // namespace
