// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/TerminalProgram.h"
#include "tests/host/HostProcess.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The program itself on terminals, with a host started as users start it.
class VeskctlTerminalTest : public testing::Test {
protected:
    Shown show(const QString &commands, int columns, const char *more = "")
    {
        EXPECT_TRUE(m_host.isReady()) << m_host.errors().toStdString();
        return showOnTerminal(
            QString(commands).replace(QLatin1Char('@'), QStringLiteral("'" VESKCTL_PROGRAM "'")),
            columns,
            QStringLiteral("NO_COLOR=1 COLUMNS= VESK_HOST=%1 XDG_RUNTIME_DIR=%2 %3")
                .arg(m_host.url(), m_memory.path(), QLatin1String(more)));
    }

    const QTemporaryDir m_memory;
    HostProcess m_host {QStringLiteral(HOST_PROGRAM),
        {QStringLiteral("--plugin"), QStringLiteral(TEST_PLUGINS "/libvesk_cb_good.so")}};
};

TEST_F(VeskctlTerminalTest, ListsAreNoWiderThanTheTerminal)
{
    const Shown wide = show(QStringLiteral("@ ls host:settings"), 80);
    EXPECT_EQ(wide.status, 0);
    EXPECT_THAT(wide.text, StartsWith("Settings\n   0 "));
    EXPECT_THAT(wide.text, HasSubstr("= Language: en-US"));
    const Shown narrow = show(QStringLiteral("@ ls host:settings"), 40);
    EXPECT_THAT(narrow.text, HasSubstr("\u2026"));
    for (const auto &[text, columns] : {std::pair(wide.text, 80), std::pair(narrow.text, 40)}) {
        const QStringList lines = QString::fromStdString(text).split(QLatin1Char('\n'));
        EXPECT_GT(lines.size(), 5);
        for (const QString &line : lines)
            EXPECT_LE(line.size(), columns) << line.toStdString();
    }
}

TEST_F(VeskctlTerminalTest, ColumnsOverridesTheTerminalsWidth)
{
    const Shown shown = show(QStringLiteral("@ ls host:settings"), 80, "COLUMNS=30");
    const QStringList lines = QString::fromStdString(shown.text).split(QLatin1Char('\n'));
    for (const QString &line : lines)
        EXPECT_LE(line.size(), 30) << line.toStdString();
}

TEST_F(VeskctlTerminalTest, PipedListsHaveWholeFields)
{
    const Shown piped = show(QStringLiteral("@ ls host:settings | cat"), 40);
    EXPECT_THAT(piped.text, StartsWith("host:settings#0\t"));
    EXPECT_THAT(piped.text, HasSubstr("\tvalue\tLanguage\ten-US\t\n"));
    EXPECT_THAT(piped.text, Not(HasSubstr("\u2026")));
}

TEST_F(VeskctlTerminalTest, NumbersCountFromTheLastListOfTheTerminal)
{
    const Shown shown
        = show(QStringLiteral("@ ls Good:songs; @ play 0; echo status $?; @ ls 0 | cat"), 80);
    EXPECT_THAT(shown.text, StartsWith("   0 \u266a A song\n"));
    EXPECT_THAT(shown.text, HasSubstr("A song"));
    EXPECT_THAT(shown.text, HasSubstr("status 0\n"));
    EXPECT_THAT(shown.text, HasSubstr("Good:songs#0\taudio\tA song\t\t"));
    const Shown another = show(QStringLiteral("@ play 0"), 80);
    EXPECT_EQ(another.status, 1) << another.text;
    EXPECT_THAT(another.text, HasSubstr("nothing to play"));
}

TEST_F(VeskctlTerminalTest, ColoursAreOnlyForTerminals)
{
    EXPECT_THAT(show(QStringLiteral("unset NO_COLOR; @ ls"), 80).text, HasSubstr("\033["));
    EXPECT_THAT(show(QStringLiteral("@ ls"), 80).text, Not(HasSubstr("\033[")));
    EXPECT_THAT(
        show(QStringLiteral("unset NO_COLOR; @ ls | cat"), 80).text, Not(HasSubstr("\033[")));
}

TEST_F(VeskctlTerminalTest, PrintsInTheHostsLanguage)
{
    const Shown shown = show(
        QStringLiteral("@ set settings:ui/language de-DE; @ status; @ ls 99; @ ls host:settings"),
        40);
    EXPECT_THAT(
        shown.text, StartsWith("angehalten  Lautstärke 100\nveskctl: es gibt keine Zeile 99\n"));
    EXPECT_THAT(shown.text, HasSubstr("Sprache: de-DE"));
}

TEST_F(VeskctlTerminalTest, EachFailureHasItsStatus)
{
    EXPECT_EQ(show(QStringLiteral("@ ls"), 80).status, 0);
    EXPECT_EQ(show(QStringLiteral("@ ls Good:nothing"), 80).status, 1);
    EXPECT_EQ(show(QStringLiteral("@ serach x"), 80).status, 2);
    const Shown nobody = show(QStringLiteral("@ --host 127.0.0.1:1 ls"), 80);
    EXPECT_EQ(nobody.status, 3);
    EXPECT_THAT(nobody.text, HasSubstr("Start one with \"vesk-host\""));
}

} // namespace
