// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <glib.h>
#include <gmock/gmock.h>

#include <csignal>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const QString Start = QStringLiteral("pairing.start");
const QString Stop = QStringLiteral("pairing.stop");
constexpr char Started[] = R"("result":{"code":"012345","role":"listener","seconds":120,)"
                           R"("urls":["https://192.168.1.5:8765/","https://[fd00::5]:8765/"],)"
                           R"("fingerprint":"AB:CD"})";

QByteArray changed(const QByteArray &state)
{
    return R"({"jsonrpc":"2.0","method":"pairing.changed","params":)" + state + "}";
}

const QByteArray Opened = changed(R"({"state":"open","seconds":120,"device":null})");
const QByteArray Paired
    = changed(R"({"state":"paired","seconds":0,"device":{"id":"d1","name":"Tablet"}})");

/// Opens a pairing, and sends this process a signal as soon as it handles that.
class SignallingHost : public FakeHost {
public:
    explicit SignallingHost(int signal)
        : FakeHost({{Start, Started}, {Stop, R"("result":{})"}})
        , m_signal(signal)
    {
    }

protected:
    void prepare(const QString &method, const QVariantHash &) override
    {
        if (method == Start)
            g_timeout_add(1, &SignallingHost::raiseWhenHandled, GINT_TO_POINTER(m_signal));
    }

private:
    static gboolean raiseWhenHandled(gpointer number)
    {
        struct sigaction handling = {};
        ::sigaction(GPOINTER_TO_INT(number), nullptr, &handling);
        if (handling.sa_handler == SIG_DFL)
            return G_SOURCE_CONTINUE;
        ::raise(GPOINTER_TO_INT(number));
        return G_SOURCE_REMOVE;
    }

    const int m_signal;
};

class PairCommandTest : public testing::Test {
protected:
    Outcome pair(const QList<QByteArray> &news, const QStringList &more = {},
        const Surroundings &around = {})
    {
        m_host.setNotifications(Start, news);
        return run(m_host.url(), QStringList {QStringLiteral("pair")} + more, around);
    }

    FakeHost m_host {{{Start, Started}, {Stop, R"("result":{})"}}};
};

TEST_F(PairCommandTest, ShowsTheCodeAndEndsWhenADeviceIsPaired)
{
    const Outcome outcome = pair({Opened, Paired});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out,
        "Code: 012345\n"
        "For 120 seconds it can be entered at one of these addresses:\n"
        "    https://192.168.1.5:8765/pair\n"
        "    https://[fd00::5]:8765/pair\n"
        "or with: veskctl --host https://192.168.1.5:8765/ join 012345\n"
        "The fingerprint of the certificate is:\n"
        "    AB:CD\n"
        "Tablet: paired\n");
    EXPECT_EQ(m_host.asked(), QStringList {Start});
    EXPECT_EQ(m_host.paramsOf(Start).value(QStringLiteral("role")), QStringLiteral("listener"));
}

TEST_F(PairCommandTest, AnOwnerIsAskedFor)
{
    EXPECT_EQ(pair({Paired}, {QStringLiteral("--owner")}).status, 0);
    EXPECT_EQ(m_host.paramsOf(Start).value(QStringLiteral("role")), QStringLiteral("owner"));
}

TEST_F(PairCommandTest, EveryOtherEndIsAFailure)
{
    const struct {
        const char *state;
        const char *text;
    } cases[] {
        {R"({"state":"failed","seconds":0,"device":null})", "wrong codes"},
        {R"({"state":"expired","seconds":0,"device":null})", "nobody entered the code in time"},
        {R"({"state":"closed","seconds":0,"device":null})", "the pairing was stopped"},
    };
    for (const auto &[state, text] : cases) {
        const Outcome outcome = pair({Opened, changed(state)});
        EXPECT_EQ(outcome.status, 1) << state;
        EXPECT_THAT(outcome.errors, HasSubstr(text));
        EXPECT_EQ(m_host.timesAsked(Stop), 0);
    }
}

TEST_F(PairCommandTest, ACodeThatAnotherReplacesIsWorthNothing)
{
    m_host.setResult(Start, QByteArray(Started).replace("120", "60"));
    const Outcome outcome = pair({changed(R"({"state":"open","seconds":60})"), Opened});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("another code was made"));
    EXPECT_EQ(m_host.timesAsked(Stop), 0) << "that would stop the other one";
}

TEST_F(PairCommandTest, PrintsJson)
{
    const Outcome outcome = pair({Opened, Paired}, {QStringLiteral("--json")});
    EXPECT_EQ(outcome.status, 0);
    const QStringList lines = QString::fromStdString(outcome.out).split(QLatin1Char('\n'));
    EXPECT_THAT(lines.value(0).toStdString(),
        AllOf(HasSubstr(R"("code":"012345")"), HasSubstr(R"("fingerprint":"AB:CD")")));
    EXPECT_EQ(lines.value(1),
        QStringLiteral(R"({"device":{"id":"d1","name":"Tablet"},"seconds":0,"state":"paired"})"));
}

TEST_F(PairCommandTest, OnlyAUnicodeTerminalOfEnoughWidthGetsAQrCode)
{
    const std::string light = "\u2588\u2588\u2588\u2588";
    const auto shown = [&](int width, bool unicode, bool colours) {
        Surroundings around;
        around.width = width;
        around.unicode = unicode;
        around.colours = colours;
        return pair({Paired}, {}, around).out;
    };
    EXPECT_THAT(shown(80, true, false), AllOf(HasSubstr(light), Not(HasSubstr("\033["))));
    EXPECT_THAT(shown(80, true, true), HasSubstr("\033[97;40m" + light));
    EXPECT_THAT(shown(80, false, false), Not(HasSubstr(light)));
    EXPECT_THAT(shown(30, true, false), Not(HasSubstr(light)));
    EXPECT_THAT(shown(0, true, false), Not(HasSubstr(light)));
}

TEST_F(PairCommandTest, ATerminalGetsTheFingerprintInTwoLines)
{
    const QByteArray half("AB:AB:AB:AB:AB:AB:AB:AB:AB:AB:AB:AB:AB:AB:AB:AB");
    m_host.setResult(Start, QByteArray(Started).replace("AB:CD", half + ":" + half));
    Surroundings around;
    around.width = 80;
    EXPECT_THAT(pair({Paired}, {}, around).out,
        HasSubstr("\n    " + (half + ":\n    " + half + "\n").toStdString()));
    EXPECT_THAT(pair({Paired}).out, HasSubstr("\n    " + (half + ":" + half + "\n").toStdString()));
}

TEST_F(PairCommandTest, TellsTheHostsRefusal)
{
    m_host.setResult(Start, R"("error":{"code":-32000,"message":"Only this machine is served."})");
    const Outcome outcome = pair({});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: Only this machine is served.\n");
}

TEST_F(PairCommandTest, TellsThatTheHostIsGone)
{
    const Outcome outcome = pair({"no JSON"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.errors, "veskctl: the host is gone\n");
}

TEST_F(PairCommandTest, ASignalStopsThePairing)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SignallingHost host(signal);
        const Outcome outcome = run(host.url(), {QStringLiteral("pair")});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.errors, "veskctl: the pairing was stopped\n");
        EXPECT_EQ(host.asked(), (QStringList {Start, Stop}));
    }
}

TEST_F(PairCommandTest, AHostWithoutTextsIsNoTrouble)
{
    m_host.setResult(Start, R"("result":{"code":7,"urls":{},"fingerprint":[],"seconds":"x"})");
    EXPECT_EQ(pair({Paired}).status, 0);
    EXPECT_EQ(pair({changed("7"), changed("{}"), Paired}).status, 0);
}

} // namespace
