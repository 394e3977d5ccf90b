// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMValueItem.h"

#include "api/nodes/CMValuesWorker.h"
#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>

namespace {

class ValueItem : public testing::Test {
protected:
    std::unique_ptr<CMValueItem> follow(const char *to)
    {
        auto item = std::make_unique<CMValueItem>(path(to), nullptr);
        QObject::connect(item.get(), &CMValueItem::changed, item.get(),
            [this](const VeskValue &value) { seen.append(value.string_()); });
        return item;
    }
    bool sees(const QStringList &expected)
    {
        return spinUntil([&] { return seen.size() >= expected.size(); }) && seen == expected;
    }

    CMRootWorker root;
    CMValuesWorker values;
    QStringList seen;
};

QStringList strings(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *one : texts)
        result.append(QString::fromUtf8(one));
    return result;
}

TEST_F(ValueItem, EmitsTheCurrentValueAndEveryLaterOne)
{
    root.addWorker(QStringLiteral("V"), &values);
    values.define(path("V:x"), VeskValue::fromString(QStringLiteral("a")));
    const auto item = follow("V:x");
    EXPECT_TRUE(seen.isEmpty());
    EXPECT_TRUE(sees(strings({"a"})));
    values.setValue(path("V:x"), VeskValue::fromString(QStringLiteral("b")));
    EXPECT_TRUE(sees(strings({"a", "b"})));
    root.removeWorker(&values);
}

TEST_F(ValueItem, DoesNotRepeatAnEqualValue)
{
    root.addWorker(QStringLiteral("V"), &values);
    values.define(path("V:x"), VeskValue::fromString(QStringLiteral("a")));
    const auto item = follow("V:x");
    EXPECT_TRUE(sees(strings({"a"})));
    CMSubscribe().changed(path("V:x"), CMSubscribe::ValueChanged(), -1, -1);
    QCoreApplication::processEvents();
    values.setValue(path("V:x"), VeskValue::fromString(QStringLiteral("b")));
    EXPECT_TRUE(sees(strings({"a", "b"})));
    root.removeWorker(&values);
}

TEST_F(ValueItem, EmitsNothingUntilAWorkerHasTheValue)
{
    const auto item = follow("V:x");
    const auto later = follow("V:y");
    QCoreApplication::processEvents();
    EXPECT_TRUE(seen.isEmpty());
    values.define(path("V:x"), VeskValue::fromString(QStringLiteral("a")));
    QCoreApplication::processEvents();
    EXPECT_TRUE(seen.isEmpty());
    root.addWorker(QStringLiteral("V"), &values);
    EXPECT_TRUE(sees(strings({"a"})));
    values.define(path("V:y"), VeskValue::fromString(QStringLiteral("b")));
    EXPECT_TRUE(sees(strings({"a", "b"})));
    root.removeWorker(&values);
}

TEST_F(ValueItem, FollowsAValueOfANodeOnAnotherThread)
{
    VeskValue present = VeskValue::fromString(QStringLiteral("a"));
    ScriptThread thread(QStringLiteral("W"), [&](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("W:x"), [&](const CMRequest &request) {
            request.reply().setValue(QVariantList {present});
            return true;
        });
    });
    const auto item = follow("W:x");
    EXPECT_TRUE(sees(strings({"a"})));
    thread.call([&] {
        present = VeskValue::fromString(QStringLiteral("b"));
        CMSubscribe().changed(path("W:x"), CMSubscribe::ValueChanged(), -1, -1);
    });
    EXPECT_TRUE(sees(strings({"a", "b"})));
}

TEST_F(ValueItem, ReadsAgainWhenTheValueChangesWhileItReads)
{
    std::vector<CMRequest> asked;
    ScriptWorker worker(QStringLiteral("W"), [&](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("W:x"), [&](const CMRequest &request) {
            asked.push_back(request);
            return true;
        });
    });
    const auto item = follow("W:x");
    ASSERT_TRUE(spinUntil([&] { return asked.size() == 1; }));
    CMSubscribe().changed(path("W:x"), CMSubscribe::ValueChanged(), -1, -1);
    QCoreApplication::processEvents();
    EXPECT_EQ(asked.size(), 1U);
    asked[0].reply().setValue(QVariantList {VeskValue::fromString(QStringLiteral("old"))});
    ASSERT_TRUE(spinUntil([&] { return asked.size() == 2; }));
    asked[1].reply().setValue(QVariantList {VeskValue::fromString(QStringLiteral("new"))});
    EXPECT_TRUE(sees(strings({"old", "new"})));
}

TEST_F(ValueItem, MayBeDestroyedWhileItReads)
{
    std::vector<CMRequest> asked;
    ScriptWorker worker(QStringLiteral("W"), [&](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("W:x"), [&](const CMRequest &request) {
            asked.push_back(request);
            return true;
        });
    });
    auto item = follow("W:x");
    ASSERT_TRUE(spinUntil([&] { return asked.size() == 1; }));
    item.reset();
    asked[0].reply().setValue(QVariantList {VeskValue::fromString(QStringLiteral("a"))});
    QCoreApplication::processEvents();
    EXPECT_TRUE(seen.isEmpty());
}

TEST_F(ValueItem, MayBeDestroyedByASlotOfItsSignal)
{
    root.addWorker(QStringLiteral("V"), &values);
    values.define(path("V:x"), VeskValue::fromString(QStringLiteral("a")));
    bool told = false;
    auto *item = new CMValueItem(path("V:x"), nullptr);
    QObject::connect(item, &CMValueItem::changed, item, [&](const VeskValue &) {
        told = true;
        delete item;
    });
    EXPECT_TRUE(spinUntil([&] { return told; }));
    root.removeWorker(&values);
}

TEST(CMValueItem, EmitsNothingWithoutARoot)
{
    ASSERT_EQ(CMRoot(), nullptr);
    CMValueItem item(path("V:x"), nullptr);
    QObject::connect(&item, &CMValueItem::changed, &item, [](const VeskValue &) { FAIL(); });
    QCoreApplication::processEvents();
}

} // namespace
