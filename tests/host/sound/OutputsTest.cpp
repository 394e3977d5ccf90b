// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/Outputs.h"

#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskRowsRoles.h"
#include "host/sound/OutputsScreen.h"
#include "host/sound/SoundOutput.h"
#include "tests/support/Text.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>

#include <atomic>
#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>

namespace {

OutputDevice sink(const char *name)
{
    return {*AudioOutputSpec::parse(text("pulse:") + text(name)), text(name).toUpper()};
}

QStringList words(std::initializer_list<const char *> all)
{
    QStringList list;
    for (const char *each : all)
        list.append(text(each));
    return list;
}

template <class Condition>
bool waitFor(Condition condition, int milliseconds = 10000)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    return condition();
}

/// The machine's devices, which come and go, or hang.
struct Machine {
    std::mutex mutex;
    std::condition_variable changed;
    QVector<OutputDevice> devices;
    bool hangs = false;
    int asked = 0;

    QVector<OutputDevice> probe()
    {
        std::unique_lock<std::mutex> lock(mutex);
        ++asked;
        changed.wait(lock, [this] { return !hangs; });
        return devices;
    }
    void set(const QVector<OutputDevice> &all, bool hang = false)
    {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            devices = all;
            hangs = hang;
        }
        changed.notify_all();
    }
};

class OutputsTest : public testing::Test {
protected:
    OutputsTest()
    {
        machine->devices = {sink("kitchen"), sink("bath")};
        values.define(playerOutputPath(), VeskValue::fromString(text("auto")),
            CMValuesWorker::Writable, TrString());
    }
    ~OutputsTest() override { machine->set({}); }

    std::unique_ptr<Outputs> make(const std::optional<AudioOutputSpec> &given = {})
    {
        return std::make_unique<Outputs>(
            sound, &values, given, [machine = machine] { return machine->probe(); });
    }
    QStringList listed(Outputs &outputs)
    {
        QStringList all;
        bool isListed = false;
        outputs.list([&](const QVector<ListedOutput> &list) {
            for (const ListedOutput &each : list) {
                all.append(each.spec.text() + text(each.isCurrent ? " current" : "")
                    + text(each.isAvailable ? "" : " gone"));
            }
            isListed = true;
        });
        EXPECT_TRUE(waitFor([&] { return isListed; }));
        return all;
    }
    /// Empty: chosen.
    std::string choose(Outputs &outputs, const char *output)
    {
        std::optional<std::string> problem;
        outputs.choose(text(output), [&](const Result<void, TrString> &result) {
            problem = result ? std::string() : result.error().toSourceString().toStdString();
        });
        EXPECT_TRUE(waitFor([&] { return problem.has_value(); }));
        return problem.value_or("nothing");
    }
    QString setting() const
    {
        return values.value(playerOutputPath())
            .value(VeskValueType::toString(VeskValueType::string_))
            .toString();
    }

    const std::shared_ptr<Machine> machine = std::make_shared<Machine>();
    CMValuesWorker values;
    const std::shared_ptr<SoundOutput> sound
        = std::make_shared<SoundOutput>(AudioOutputSpec {AudioOutputSpec::Auto});
};

} // namespace

TEST_F(OutputsTest, AreAScreenWhoseRowsChoose)
{
    const auto outputs = make();
    EXPECT_EQ(choose(*outputs, "pulse:kitchen"), "");
    machine->set({sink("bath")});
    CMRootWorker root;
    CMNodesWorker worker({}, text("host"));
    new OutputsScreen(outputs.get(), worker.nodes());
    const auto rows = [] {
        const auto reply = std::make_shared<CMReplyData<QVariant>>();
        CMRoot()->request(CMGetRowsRequest(CMPath::fromEncoded(text("host:outputs")),
            {VeskRoles::Path(), VeskRoles::Description(), VeskRoles::Type(), VeskRoles::Disabled()},
            0, 99, CMReply<QVariant>(reply)));
        EXPECT_TRUE(waitFor([&] { return reply->isFinished(); }));
        QStringList all;
        for (const QVariant &row : VeskRowsRoles(reply->value().toHash()).rows()) {
            const QVariantList roles = row.toList();
            EXPECT_EQ(roles.value(2).toInt(), VeskRolesType::Activate());
            all.append(CMPath::fromEncoded(roles.value(0).toString()).param(text("output"))
                + QLatin1Char(' ') + roles.value(1).value<TrString>().toSourceString()
                + text(roles.value(3).toBool() ? " disabled" : ""));
        }
        return all;
    };
    const auto activate = [](const char *path) {
        const auto reply = std::make_shared<CMReplyData<QVariant>>();
        CMRoot()->request(CMSetDataRequest(CMPath::fromEncoded(text(path)), VeskRoles::Activate(),
            QVariant(), CMReply<QVariant>(reply)));
        EXPECT_TRUE(waitFor([&] { return reply->isFinished(); }));
        return reply->error().message().toSourceString().toStdString();
    };
    EXPECT_EQ(
        rows(), words({"auto ", "pulse:bath ", "pulse:kitchen Not there at the moment disabled"}));
    EXPECT_EQ(activate("host:outputs?output=pulse%3Abath"), "");
    EXPECT_EQ(rows().filter(text("In use")), words({"pulse:bath In use"}));
    EXPECT_NE(activate("host:outputs?output=wav%3A/tmp/x.wav"), "");
    EXPECT_NE(activate("host:outputs"), "");
}

TEST_F(OutputsTest, ListsTheDevicesThatThereAre)
{
    const auto outputs = make();
    EXPECT_EQ(listed(*outputs), words({"auto current", "pulse:kitchen", "pulse:bath"}));
    machine->set({sink("bath")});
    EXPECT_EQ(listed(*outputs), words({"auto current", "pulse:bath"}));
}

TEST_F(OutputsTest, WhatIsChosenIsKept)
{
    const auto outputs = make();
    EXPECT_EQ(choose(*outputs, "pulse:bath"), "");
    EXPECT_EQ(outputs->current().text(), text("pulse:bath"));
    EXPECT_EQ(setting(), text("pulse:bath"));
    EXPECT_EQ(listed(*outputs), words({"auto", "pulse:kitchen", "pulse:bath current"}));
    machine->set({sink("kitchen")});
    EXPECT_EQ(listed(*outputs), words({"auto", "pulse:kitchen", "pulse:bath current gone"}));
}

TEST_F(OutputsTest, ADeviceThatIsNotThereIsRefused)
{
    const auto outputs = make();
    EXPECT_EQ(choose(*outputs, "pulse:garden"), "There is no sound device \"pulse:garden\".");
    EXPECT_EQ(outputs->current().text(), text("auto"));
    EXPECT_EQ(setting(), text("auto"));
    // It is asked for, not remembered.
    machine->set({sink("garden")});
    EXPECT_EQ(choose(*outputs, "pulse:garden"), "");
    EXPECT_EQ(choose(*outputs, "pulse"), "");
    machine->set({});
    EXPECT_EQ(choose(*outputs, "pulse:garden"), "There is no sound device \"pulse:garden\".");
}

TEST_F(OutputsTest, ClientsCannotNameFilesAndServers)
{
    const auto outputs = make(*AudioOutputSpec::parse(text("pipe:/run/sound")));
    for (const char *output : {"wav:/tmp/x", "pipe:/tmp/x", "tcp:localhost:1", "alsa:file:/tmp/x"})
        EXPECT_NE(choose(*outputs, output).find("can only be given when"), std::string::npos);
    EXPECT_EQ(choose(*outputs, "pulse:"),
        "\"pulse:\" has no name after the colon; pulse is the default one");
    EXPECT_EQ(setting(), text("auto"));
    // But back to what the host was started with.
    EXPECT_EQ(choose(*outputs, "null"), "");
    EXPECT_EQ(choose(*outputs, "pipe:/run/sound"), "");
    EXPECT_EQ(outputs->current().text(), text("pipe:/run/sound"));
    EXPECT_EQ(setting(), text("auto"));
}

TEST_F(OutputsTest, TheSettingIsFollowedUnlessTheHostWasStartedWithAnother)
{
    values.setValue(playerOutputPath(), VeskValue::fromString(text("pulse:kitchen")));
    const auto given = make(AudioOutputSpec {AudioOutputSpec::Null});
    const auto outputs = make();
    EXPECT_TRUE(waitFor([&] { return outputs->current().text() == text("pulse:kitchen"); }));
    values.setValue(playerOutputPath(), VeskValue::fromString(text("null")));
    EXPECT_TRUE(waitFor([&] { return outputs->current().text() == text("null"); }));
}

TEST_F(OutputsTest, ASoundSystemThatHangsIsNotWaitedFor)
{
    const auto outputs = make();
    listed(*outputs);
    machine->set({}, true);
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(listed(*outputs), words({"auto current", "pulse:kitchen", "pulse:bath"}))
        << "as far as is known";
    EXPECT_LT(time.elapsed(), 5000);
    EXPECT_GE(time.elapsed(), 2800); // a coarse timer may be early by a twentieth
    // It is not asked again before it has answered.
    listed(*outputs);
    EXPECT_EQ(machine->asked, 2);
    machine->set({sink("garden")});
    EXPECT_TRUE(waitFor([&] {
        return listed(*outputs) == words({"auto current", "pulse:garden"});
    }));
}

TEST_F(OutputsTest, MayBeDestroyedWhileASoundSystemHangs)
{
    machine->set({}, true);
    auto outputs = make();
    outputs->list([](const auto &) { FAIL(); });
    outputs.reset();
    machine->set({});
    QCoreApplication::processEvents();
}

TEST_F(OutputsTest, ADeviceThatFailsIsLookedForUntilItIsBack)
{
    const auto outputs = make();
    ASSERT_EQ(choose(*outputs, "pulse:bath"), "");
    listed(*outputs);
    machine->set({sink("kitchen")});
    int back = 0;
    QObject::connect(outputs.get(), &Outputs::deviceIsBack, [&] { ++back; });
    Q_EMIT sound->failed(TrString("Player", "The sound output does not work."));
    EXPECT_TRUE(waitFor([&] { return !outputs->problem().isEmpty(); }));
    EXPECT_EQ(outputs->problem().toSourceString(),
        text("The sound device \"BATH\" has gone or does not work."));
    EXPECT_FALSE(waitFor([&] { return back > 0; }, 2500));
    machine->set({sink("bath")});
    EXPECT_TRUE(waitFor([&] { return back > 0; }));
    EXPECT_TRUE(outputs->problem().isEmpty());
    const int asked = machine->asked;
    EXPECT_FALSE(waitFor([&] { return machine->asked > asked; }, 2500)) << "not any more";
    EXPECT_EQ(back, 1);
}
