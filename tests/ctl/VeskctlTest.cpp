#include "tests/host/HostProcess.h"

#include <QProcess>

#include <gmock/gmock.h>

namespace {

struct Outcome {
    int status = -1;
    std::string out;
    std::string errors;
};

/// The program itself, against a host as its users start it.
class VeskctlTest : public testing::Test {
protected:
    Outcome run(const QStringList &arguments, const QString &url = QString())
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VESK_HOST"), url.isEmpty() ? m_host.url() : url);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(VESKCTL_PROGRAM), arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
    }

    HostProcess m_host {QStringLiteral(HOST_PROGRAM),
        {QStringLiteral("--plugin"), QStringLiteral(TEST_PLUGINS "/libvesk_cb_good.so")}};
};

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

TEST_F(VeskctlTest, BrowsesTheOnlyService)
{
    ASSERT_TRUE(m_host.isReady()) << m_host.errors().toStdString();
    const Outcome outcome = run(words("ls"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, testing::StartsWith("Good plug-in\n   0 # Made by the plug-in"));
}

TEST_F(VeskctlTest, Searches)
{
    const Outcome outcome = run({QStringLiteral("search"), QStringLiteral("two words")});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, testing::StartsWith("Found\n"));
    EXPECT_THAT(outcome.out, testing::HasSubstr("q=two%20words"));
}

TEST_F(VeskctlTest, ReadsAndChangesSettings)
{
    EXPECT_EQ(run(words("get settings:ui/language")).out, "en-US\n");
    EXPECT_EQ(run(words("set settings:tunein/partnerId abc")).status, 0);
    EXPECT_EQ(run(words("get settings:tunein/partnerId")).out, "abc\n");
    EXPECT_EQ(run(words("set settings:tunein/enabledFixItWizard false")).status, 0);
    EXPECT_EQ(run(words("get settings:tunein/enabledFixItWizard")).out, "false\n");
    EXPECT_EQ(run(words("set settings:tunein/enabledFixItWizard perhaps")).status, 1);
    EXPECT_EQ(run(words("set system:memberId mine")).status, 1);
}

TEST_F(VeskctlTest, TellsFailuresApartByItsStatus)
{
    const Outcome missing = run(words("ls Good:nothing"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_THAT(missing.errors, testing::StartsWith("veskctl: "));
    EXPECT_EQ(run(words("ls nonsense")).status, 2);
    EXPECT_EQ(run(words("ls"), QStringLiteral("http://127.0.0.1:1/")).status, 3);
    EXPECT_EQ(run(words("--help")).status, 0);
}

} // namespace
