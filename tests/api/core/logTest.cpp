// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/log.h"

#include "api/core/TrString.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <QMap>
#include <QStringList>

#include <sstream>
#include <thread>
#include <vector>

VESK_LOGGER("Test")

namespace {

template <class T>
std::string print(const T &value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

QVariantHash hash(std::initializer_list<std::pair<QString, QVariant>> entries)
{
    QVariantHash result;
    for (const auto &entry : entries)
        result.insert(entry.first, entry.second);
    return result;
}

struct Printable { };

} // namespace

/// In no unnamed namespace, which Qt 6 takes for a part of the type's name.
struct Unprintable { };

Q_DECLARE_METATYPE(Unprintable)
Q_DECLARE_METATYPE(Printable)

TEST(Log, WritesLevelAndText)
{
    LogCapture capture("Test");
    VESK_TRACE("a" << 1);
    VESK_DEBUG(QStringLiteral("b") << ' ' << true);
    VESK_INFO("c");
    VESK_WARN("d");
    VESK_ERROR("e");
    VESK_FATAL("f");
    EXPECT_EQ(capture.lines(),
        QStringList(
            {QStringLiteral("TRACE a1"), QStringLiteral("DEBUG b 1"), QStringLiteral("INFO c"),
                QStringLiteral("WARN d"), QStringLiteral("ERROR e"), QStringLiteral("FATAL f")}));
}

TEST(Log, ExpectedErrorsAreDebug)
{
    LogCapture capture("Test");
    {
        const VeskExpectedErrors outer;
        {
            const VeskExpectedErrors inner;
            VESK_ERROR("a");
        }
        VESK_ERROR("b");
        VESK_WARN("c");
        std::thread([] { VESK_ERROR("d"); }).join();
    }
    VESK_ERROR("e");
    EXPECT_EQ(capture.lines(),
        QStringList({QStringLiteral("DEBUG a"), QStringLiteral("DEBUG b"), QStringLiteral("WARN c"),
            QStringLiteral("ERROR d"), QStringLiteral("ERROR e")}));
}

TEST(Log, ExpectedErrorsAreNotWrittenWhereDebugIsOff)
{
    LogCapture capture("Test");
    log4cplus::Logger logger = veskLogger();
    const log4cplus::LogLevel level = logger.getLogLevel();
    logger.setLogLevel(log4cplus::INFO_LOG_LEVEL);
    {
        const VeskExpectedErrors expected;
        VESK_ERROR("a");
    }
    VESK_ERROR("b");
    logger.setLogLevel(level);
    EXPECT_EQ(capture.lines(), QStringList({QStringLiteral("ERROR b")}));
}

TEST(Log, TellsWhereItComesFrom)
{
    LogCapture capture("Test");
    veskWriteLog(veskLogger(), log4cplus::INFO_LOG_LEVEL, "text",
        "src/modules/tunein/cb_tunein.cpp", 12, "void f(int)");
    VESK_INFO("here");
    ASSERT_EQ(capture.sources().size(), 2);
    EXPECT_EQ(capture.sources().at(0), QStringLiteral("modules/tunein/cb_tunein:void f(int)"));
    EXPECT_EQ(capture.sources().at(1),
        QStringLiteral("tests/api/core/logTest:") + QString::fromLatin1(__PRETTY_FUNCTION__));
}

TEST(Log, BuildsNoTextForALevelThatIsOff)
{
    log4cplus::Logger logger = log4cplus::Logger::getInstance("Test");
    const auto former = logger.getLogLevel();
    logger.setLogLevel(log4cplus::ERROR_LOG_LEVEL);
    int built = 0;
    const auto text = [&built] { return ++built; };
    VESK_DEBUG(text());
    EXPECT_EQ(built, 0);
    logger.setLogLevel(former);
    LogCapture capture("Test");
    VESK_DEBUG(text());
    EXPECT_EQ(built, 1);
}

TEST(LogCapture, KeepsRecordsOfItsLoggerOnlyAndOnlyWhileItLives)
{
    auto capture = std::make_unique<LogCapture>("Test.other");
    VESK_ERROR("not here");
    EXPECT_TRUE(capture->lines().isEmpty());
    log4cplus::Logger other = log4cplus::Logger::getInstance("Test.other");
    EXPECT_TRUE(other.isEnabledFor(log4cplus::TRACE_LOG_LEVEL));
    other.forcedLog(log4cplus::WARN_LOG_LEVEL, "here");
    EXPECT_TRUE(capture->contains(QStringLiteral("WARN here")));
    EXPECT_FALSE(capture->contains(QStringLiteral("here")));
    EXPECT_EQ(capture->lines(QStringLiteral("WARN")), QStringList(QStringLiteral("here")));
    EXPECT_TRUE(capture->lines(QStringLiteral("INFO")).isEmpty());
    capture->clear();
    EXPECT_TRUE(capture->lines().isEmpty());
    capture.reset();
    EXPECT_EQ(other.getLogLevel(), log4cplus::NOT_SET_LOG_LEVEL);
    EXPECT_TRUE(other.getAllAppenders().empty());
}

TEST(LogCapture, TakesRecordsFromManyThreads)
{
    LogCapture capture("Test");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 100; ++i)
                VESK_INFO(t << ' ' << i);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QStringList lines = capture.lines();
    EXPECT_EQ(lines.size(), 400);
    EXPECT_EQ(lines.removeDuplicates(), 0);
}

TEST(LogSourceName, StartsAfterSrcAndHasNoExtension)
{
    EXPECT_EQ(veskLogSourceName("src/modules/tunein/cb_tunein.cpp"), "modules/tunein/cb_tunein");
    EXPECT_EQ(veskLogSourceName("/home/me/vesk/src/api/core/log.cpp"), "api/core/log");
    EXPECT_EQ(veskLogSourceName("../src/host/main.cpp"), "host/main");
    EXPECT_EQ(veskLogSourceName("src/a/src/b.cpp"), "a/src/b");
    EXPECT_EQ(veskLogSourceName("tests/api/core/logTest.cpp"), "tests/api/core/logTest");
}

TEST(LogSourceName, TakesSrcForAWholeFolderNameOnly)
{
    EXPECT_EQ(veskLogSourceName("mysrc/a.cpp"), "mysrc/a");
    EXPECT_EQ(veskLogSourceName("mysrc/src/a.cpp"), "a");
    EXPECT_EQ(veskLogSourceName("src.d/a.cpp"), "src.d/a");
}

TEST(LogSourceName, CutsTheFilesExtensionOnly)
{
    EXPECT_EQ(veskLogSourceName("src/v1.2/Makefile"), "v1.2/Makefile");
    EXPECT_EQ(veskLogSourceName("src/a.b.cpp"), "a.b");
    EXPECT_EQ(veskLogSourceName(""), "");
    EXPECT_EQ(veskLogSourceName(nullptr), "");
}

TEST(LogScopedFunction, IsTheSignatureAsItIs)
{
    const char *const signature
        = "TuneInAccountNode::TuneInAccountNode(CMTuneInWorker*, const CMPath&)";
    EXPECT_EQ(dbglog_scopedFunction(signature, "CB_TuneIn"), QString::fromLatin1(signature));
    EXPECT_EQ(dbglog_scopedFunction(nullptr, nullptr), QString());
}

TEST(LogPrint, WritesTextAsUtf8)
{
    EXPECT_EQ(print(QStringLiteral("na\u00efve \U0001F600 'x' \"y\" \\")),
        "na\xc3\xafve \xf0\x9f\x98\x80 'x' \"y\" \\");
    EXPECT_EQ(print(QString()), "");
    EXPECT_EQ(print(QStringLiteral("")), "");
    EXPECT_EQ(print(QByteArray("a\xff")), "a\xff");
    EXPECT_EQ(print(QByteArray()), "");
}

TEST(LogPrint, LetsNoTextPassForAnotherRecord)
{
    EXPECT_EQ(print(QStringLiteral("a\nERROR b\r\nc\td")), "a\\nERROR b\\r\\nc\\td");
    EXPECT_EQ(print(QByteArray("{\r\n}")), "{\\r\\n}");
    for (ushort c = 0; c < 0x20; ++c) {
        EXPECT_EQ(print(QString(QChar(c))).front(), '\\') << c;
        EXPECT_EQ(print(QByteArray(1, char(c))).front(), '\\') << c;
    }
    EXPECT_EQ(print(QString::fromLatin1("a\0b\x1b[2J", 7)), "a\\x00b\\x1b[2J");
    EXPECT_EQ(print(QStringLiteral("\u007f\u0085\u009b\u00a0")), "\\x7f\\x85\\x9b\xc2\xa0");
    EXPECT_EQ(print(QByteArray("\xc2")), "\xc2");
}

TEST(LogPrint, WritesVariantsByTheirContent)
{
    EXPECT_EQ(print(QVariant()), "null");
    EXPECT_EQ(print(QVariant::fromValue(nullptr)), "null");
    EXPECT_EQ(print(QVariant(QString())), "");
    EXPECT_EQ(print(QVariant(QStringLiteral("text"))), "text");
    EXPECT_EQ(print(QVariant(QByteArray("bytes\n"))), "bytes\\n");
    EXPECT_EQ(print(QVariant(true)), "true");
    EXPECT_EQ(print(QVariant(-12)), "-12");
    EXPECT_EQ(print(QVariant(qlonglong(9007199254740993))), "9007199254740993");
    EXPECT_EQ(print(QVariant(128.0)), "128");
    EXPECT_EQ(print(QVariant(0.1)), "0.1");
    EXPECT_EQ(print(QVariant(TrString("Test", "a %1"))), "a %1");
    EXPECT_EQ(print(QVariant(QStringList({QStringLiteral("a"), QStringLiteral("b")}))), "[a, b]");
}

TEST(LogPrint, WritesHashesInTheOrderOfTheirKeys)
{
    QVariantHash entries;
    std::string expected = "{";
    for (char c = 'a'; c <= 'z'; ++c) {
        entries.insert(QString(QLatin1Char(c)), int(c));
        expected += (c == 'a' ? "" : ", ") + std::string(1, c) + ": " + std::to_string(int(c));
    }
    EXPECT_EQ(print(entries), expected + "}");
    EXPECT_EQ(print(QVariant(entries)), expected + "}");
    EXPECT_EQ(print(QVariantHash()), "{}");
}

TEST(LogPrint, WritesNestedContainers)
{
    const QVariant inner
        = hash({{QStringLiteral("y"), QVariantList {1, QVariant(), QStringLiteral("z")}},
            {QStringLiteral("x"), QVariantMap {{QStringLiteral("k"), false}}}});
    EXPECT_EQ(print(hash({{QStringLiteral("a"), inner}, {QStringLiteral("b"), QVariantList()}})),
        "{a: {x: {k: false}, y: [1, null, z]}, b: []}");
}

TEST(LogPrint, HidesSecretsAtEveryDepth)
{
    const QVariantHash login = hash({{QStringLiteral("userName"), QStringLiteral("me")},
        {QStringLiteral("password"), QStringLiteral("hidden")}, {QStringLiteral("sessionId"), 7},
        {QStringLiteral("Session_ID"), QVariantList {QStringLiteral("hidden")}},
        {QStringLiteral("token"), hash({{QStringLiteral("a"), QStringLiteral("hidden")}})}});
    const std::string expected
        = "{Session_ID: ***, password: ***, sessionId: ***, token: ***, userName: me}";
    EXPECT_EQ(print(login), expected);
    EXPECT_EQ(print(QVariant(QVariantList {login})), "[" + expected + "]");
    EXPECT_EQ(print(QVariant(QVariantMap {{QStringLiteral("PASSWORD"), QStringLiteral("x")}})),
        "{PASSWORD: ***}");
}

TEST(LogPrint, EscapesKeysToo)
{
    EXPECT_EQ(print(hash({{QStringLiteral("a\nb"), 1}})), "{a\\nb: 1}");
}

TEST(LogPrint, WritesParameterMaps)
{
    using Map = QMap<QString, QString>;
    EXPECT_EQ(print(Map()), "QMap()");
    EXPECT_EQ(print(Map {{QStringLiteral("sid"), QStringLiteral("s1")},
                  {QStringLiteral("c"), QStringLiteral("a b")},
                  {QStringLiteral("password"), QStringLiteral("hidden")}}),
        "QMap((c, a b)(password, ***)(sid, s1))");
}

TEST(LogPrint, WritesTypesThatItDoesNotKnow)
{
    EXPECT_EQ(print(QVariant::fromValue(Unprintable())), "<Unprintable>");
    const bool registered = QMetaType::registerConverter<Printable, VeskLogText>(
        [](const Printable &) { return VeskLogText {"printed"}; });
    ASSERT_TRUE(registered);
    EXPECT_EQ(print(QVariant::fromValue(Printable())), "printed");
}

TEST(LogSecretKey, IsRecognisedInAnyCase)
{
    for (const char *key : {"password", "Password", "PASSWORD", "session", "sessionId", "SessionID",
             "session_id", "SESSION_ID", "token", "Token"})
        EXPECT_TRUE(veskIsSecretKey(QString::fromLatin1(key))) << key;
    for (const char *key : {"", "pass", "passwords", "xpassword", "userName", "sessions", "id",
             "listenId", "tokens", "key"})
        EXPECT_FALSE(veskIsSecretKey(QString::fromLatin1(key))) << key;
}
