// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/ReadSettings.h"

#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

namespace {

using Ms = std::chrono::milliseconds;

const CMPath A(QStringLiteral("settings"), QStringLiteral("a"));
const CMPath B(QStringLiteral("settings"), QStringLiteral("b"));

VeskValue number(int value)
{
    return VeskValue::fromInt(value);
}

class ReadSettingsTest : public testing::Test {
protected:
    ReadSettingsTest()
    {
        m_settings.setTimes({Ms(200), Ms(1000)});
        QObject::connect(
            &m_settings, &ReadSettings::outdated, [this] { m_told += QLatin1Char('o'); });
        QObject::connect(
            &m_settings, &ReadSettings::upToDate, [this] { m_told += QLatin1Char('u'); });
        QObject::connect(
            &m_settings, &ReadSettings::settled, [this] { m_told += QLatin1Char('s'); });
        m_settings.begin();
    }

    std::string told(int milliseconds = 500)
    {
        spinUntil([] { return false; }, milliseconds);
        return m_told.toStdString();
    }

    ReadSettings m_settings;
    QString m_told;
};

TEST_F(ReadSettingsTest, AChangeOfAKeptSettingSettles)
{
    m_settings.noteKept(A, number(1));
    m_settings.noteChanged(B, number(1));
    EXPECT_EQ(told(), "");
    m_settings.noteChanged(A, number(2));
    EXPECT_TRUE(m_settings.isOutdated());
    EXPECT_EQ(m_told, QStringLiteral("o"));
    EXPECT_EQ(told(), "os");
}

TEST_F(ReadSettingsTest, ASettingMayCountWithoutBeingRead)
{
    m_settings.restartFor(A, number(1));
    m_settings.begin();
    m_settings.noteFollowed(A);
    m_settings.noteChanged(A, number(2));
    EXPECT_EQ(told(), "os");
    // The next one starts with the value of now.
    m_settings.begin();
    EXPECT_FALSE(m_settings.isOutdated());
    m_settings.noteChanged(A, number(1));
    EXPECT_TRUE(m_settings.isOutdated());
    m_settings.noteChanged(A, number(2));
    EXPECT_EQ(told(), "osou") << "back before it was restarted";
}

TEST_F(ReadSettingsTest, ABurstSettlesOnce)
{
    m_settings.noteKept(A, number(0));
    for (int i = 1; i <= 5; ++i) {
        m_settings.noteChanged(A, number(i));
        EXPECT_EQ(told(20), "o");
    }
    EXPECT_EQ(told(), "os");
}

TEST_F(ReadSettingsTest, ContinuousChangesSettleAtLast)
{
    m_settings.noteKept(A, number(0));
    int changes = 0;
    EXPECT_TRUE(spinUntil([&] {
        spinUntil([] { return false; }, 20);
        m_settings.noteChanged(A, number(++changes));
        return m_told == QLatin1String("os");
    }));
    EXPECT_GE(changes, 5);
}

TEST_F(ReadSettingsTest, AChangeBackNeedsNoRestart)
{
    m_settings.noteKept(A, number(1));
    m_settings.noteKept(B, number(1));
    m_settings.noteChanged(A, number(2));
    m_settings.noteChanged(B, number(2));
    m_settings.noteChanged(A, number(1));
    EXPECT_EQ(m_told, QStringLiteral("o"));
    m_settings.noteChanged(B, number(1));
    EXPECT_EQ(told(), "ou");
    EXPECT_FALSE(m_settings.isOutdated());
}

TEST_F(ReadSettingsTest, AValueReadAfterTheChangeNeedsNoRestart)
{
    m_settings.noteChanged(A, number(2));
    m_settings.noteKept(A, number(2));
    EXPECT_EQ(told(), "");
    m_settings.noteChanged(B, number(2));
    m_settings.noteKept(B, number(1)); // read before the change, reported after it
    EXPECT_EQ(told(), "os");
}

TEST_F(ReadSettingsTest, AFollowedSettingNeedsNoRestart)
{
    m_settings.noteKept(A, number(1));
    m_settings.noteChanged(A, number(2));
    m_settings.noteFollowed(A);
    EXPECT_EQ(told(), "ou");
}

TEST_F(ReadSettingsTest, ReportsCountOnlyForChangedSettings)
{
    m_settings.noteKept(A, number(1));
    m_settings.noteKept(A, number(7));
    EXPECT_EQ(told(), "") << "nothing has changed, whatever it says";
}

TEST_F(ReadSettingsTest, BeginForgetsEverything)
{
    m_settings.noteKept(A, number(1));
    m_settings.noteChanged(A, number(2));
    m_settings.begin();
    EXPECT_FALSE(m_settings.isOutdated());
    m_settings.noteChanged(A, number(3));
    EXPECT_EQ(told(), "o");
}

TEST_F(ReadSettingsTest, SettlesAgainOnRequest)
{
    m_settings.settleAgain();
    EXPECT_EQ(told(), "");
    m_settings.noteKept(A, number(1));
    m_settings.noteChanged(A, number(2));
    EXPECT_EQ(told(), "os");
    m_settings.settleAgain();
    EXPECT_EQ(told(), "oss");
}

} // namespace
