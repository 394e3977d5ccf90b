// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/Product.h"

#include <QElapsedTimer>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <thread>

namespace {

QString serialOf(const QString &request)
{
    return QRegularExpression(text("serial=([^&]*)")).match(request).captured(1);
}

TEST(HostLifecycle, TheMemberIdOfTheFirstStartStaysTheSerial)
{
    Product product;
    ASSERT_TRUE(product.isUp());
    product.rows(text("TuneIn:"), {});
    const QString serial = serialOf(product.requestLog().last());
    EXPECT_TRUE(QRegularExpression(text("^[0-9a-f]{32}$")).match(serial).hasMatch())
        << serial.toStdString();
    EXPECT_EQ(product.stopHost(), 0);
    ASSERT_TRUE(product.startHost());
    product.rows(text("TuneIn:"), {});
    EXPECT_EQ(serialOf(product.requestLog().last()), serial);
}

TEST(HostLifecycle, ChangedSettingsAreKept)
{
    Product product;
    ASSERT_TRUE(product.isUp());
    const QString path = text("settings:browser/childElementsInSingleList");
    ASSERT_EQ(product.ctl({text("set"), path, text("false")}).code, 0);
    EXPECT_EQ(product.stopHost(), 0);
    ASSERT_TRUE(product.startHost());
    EXPECT_EQ(product.ctl({text("get"), path}).out.trimmed(), text("false"));
}

TEST(HostLifecycle, AnotherLanguageTranslatesThePluginsTexts)
{
    Product product;
    ASSERT_TRUE(product.isUp());
    const auto title = [&product] {
        return product
            .rpc(text("getData"),
                {{text("path"), text("TuneIn:searches")},
                    {text("roles"), QStringList {text("title")}}})
            .value(text("result"))
            .toHash()
            .value(text("values"))
            .toList()
            .value(0)
            .toString();
    };
    EXPECT_EQ(title(), text("Station, Show, Song, or Artist"));
    ASSERT_EQ(product.ctl({text("set"), text("settings:ui/language"), text("de-DE")}).code, 0);
    EXPECT_EQ(title(), text("Sender, Sendung, Titel oder Interpret"));
}

TEST(HostLifecycle, EndsAtOnceWhileThePluginWaitsForAnAnswer)
{
    Product product;
    ASSERT_TRUE(product.isUp());
    product.setFault("stall");
    const int before = product.requestLog().size();
    std::thread waiting([&product] { product.rows(text("TuneIn:"), {}); });
    QElapsedTimer elapsed;
    elapsed.start();
    while (product.requestLog().size() == before && elapsed.elapsed() < 30000)
        std::this_thread::yield();
    elapsed.restart();
    EXPECT_EQ(product.stopHost(), 0);
    EXPECT_LT(elapsed.elapsed(), 10000);
    waiting.join();
}

TEST(HostLifecycle, APluginThatDoesNotLoadDoesNotAffectOthers)
{
    Product product({text("--plugin"), text("/nowhere/libvesk_cb_missing.so")});
    ASSERT_TRUE(product.isUp());
    EXPECT_FALSE(product.rows(text("TuneIn:"), {}).isEmpty());
}

TEST(HostLifecycle, BadArgumentsAreRefusedInOneLine)
{
    const QList<QStringList> bad {
        {text("--no-such-option")},
        {text("--listen"), text("nonsense")},
        {text("--listen"), text("radio.example:0")},
        {text("--cert"), text("certificate.pem")},
        {text("--set"), text("settings:nowhere=1")},
        {text("--set"), text("network:connected=perhaps")},
        {text("--connect-to"), text("one:two")},
        {text("--log-level"), text("loud")},
    };
    for (const QStringList &arguments : bad) {
        const Outcome outcome = runProgram(text("vesk-host"), arguments);
        EXPECT_EQ(outcome.code, 2) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(outcome.err.count(QLatin1Char('\n')), 1) << outcome.err.toStdString();
        EXPECT_TRUE(outcome.out.isEmpty());
    }
}

} // namespace
