// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/Product.h"

#include <QTemporaryFile>

#include <gmock/gmock.h>

namespace {

constexpr char Refuses[] = "The TuneIn service refuses this device (HTTP 403). Check the setting "
                           "\"TuneIn partner id\".";
constexpr char OutOfOrder[]
    = "The TuneIn service is out of order (HTTP 500). Please try again later.";
constexpr char Unreadable[] = "What came is no answer of the TuneIn service. It may be out of "
                              "order, or this network may want a login first.";
constexpr char Broken[]
    = "The answer of the TuneIn service did not come whole. Please try again later.";
constexpr char Unreachable[] = "The TuneIn service cannot be reached. Please try again later.";

/// A fault of the directory, and the messages for the user: the plug-in's, empty for an empty
/// screen, and the host's, which is more precise.
struct Misbehaviour {
    const char *name;
    const char *fault;
    const char *message;
    const char *problem;
};

constexpr Misbehaviour Misbehaviours[] = {
    {"forbidden_with_a_page", "http-status:403", Refuses, ""},
    {"server_error_with_a_page", "http-status:500", "Invalid data returned.", OutOfOrder},
    {"fault_in_the_head", "head-fault:400,request.idInvalid,Invalid ID for browse", "",
        "The TuneIn service cannot answer this (400)."},
    {"refusal_in_the_head", "head-fault:403", "",
        "The TuneIn service refuses this device (403). Check the setting \"TuneIn partner id\"."},
    {"server_error_in_the_head", "head-fault:503", "",
        "The TuneIn service is out of order (503). Please try again later."},
    {"empty_body", "empty", "Invalid response.", Unreadable},
    {"json_of_another_kind", "body:" TEST_DATA_DIR "/list.json", "", Unreadable},
    {"json_of_another_service", "body:" TEST_DATA_DIR "/other.json", "", Unreadable},
    {"closed_within_the_body", "truncated:100", "Failed to connect to TuneIn", Broken},
    {"body_that_ends_early", "cut:100", "Invalid data returned.", Unreadable},
    {"no_json", "malformed", "Invalid data returned.", Unreadable},
    {"a_networks_login_page", "login-page", "Invalid data returned.", Unreadable},
    {"ten_megabytes", "oversized:10000000", "Failed to connect to TuneIn", Broken},
    {"reset", "reset", "Failed to connect to TuneIn", Broken},
    {"redirect_circle", "redirect-loop", "Failed to connect to TuneIn", Unreachable},
    {"six_redirects", "redirect-chain:6", "Failed to connect to TuneIn", Unreachable},
};

void PrintTo(const Misbehaviour &misbehaviour, std::ostream *out)
{
    *out << misbehaviour.fault;
}

class HostileAnswers : public testing::TestWithParam<Misbehaviour> {
protected:
    static void SetUpTestSuite() { s_product = new Product; }
    static void TearDownTestSuite()
    {
        delete s_product;
        s_product = nullptr;
    }

    static Product *s_product;
};

Product *HostileAnswers::s_product = nullptr;

TEST_P(HostileAnswers, AreReportedAndTheNextRequestIsServed)
{
    ASSERT_TRUE(s_product->isUp());
    const QVariantHash params {{text("path"), text("TuneIn:browse/uri/Browse.ashx?c=music")}};
    s_product->setFault(GetParam().fault);
    const QVariantHash answer = s_product->rpc(text("getRows"), params);
    const Outcome ls = s_product->ctl({text("ls"), text("TuneIn:browse/uri/Browse.ashx?c=music")});
    s_product->clearFaults();
    QVariant problem;
    if (*GetParam().message) {
        const QVariantHash error = answer.value(text("error")).toHash();
        EXPECT_EQ(error.value(text("code")).toInt(), -32000);
        EXPECT_EQ(error.value(text("message")).toString(), text(GetParam().message));
        problem = error.value(text("data")).toHash().value(text("problem"));
    } else {
        ASSERT_TRUE(answer.contains(text("result")));
        const QVariantHash result = answer.value(text("result")).toHash();
        EXPECT_EQ(result.value(text("rows")).toList(), QVariantList());
        EXPECT_EQ(result.value(text("rowsCount")).toInt(), 0);
        problem = result.value(text("problem"));
    }
    EXPECT_EQ(problem.toString(), text(GetParam().problem));
    EXPECT_EQ(ls.code, 1);
    EXPECT_EQ(ls.out, QString());
    const bool hasProblem = *GetParam().problem != '\0';
    EXPECT_THAT(ls.err.toStdString(),
        testing::HasSubstr(hasProblem ? GetParam().problem : GetParam().message));
    EXPECT_FALSE(s_product->rows(text("TuneIn:browse/uri/Browse.ashx?c=music"), {}).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Directory, HostileAnswers, testing::ValuesIn(Misbehaviours),
    [](const testing::TestParamInfo<Misbehaviour> &instance) { return instance.param.name; });

TEST(ServiceFaults, AnEmptyListIsNoFault)
{
    const Product product;
    ASSERT_TRUE(product.isUp());
    // A list without entries, and a section that the answer does not contain.
    product.setFault("body:" TEST_DATA_DIR "/nothing.json");
    for (const char *screen : {"TuneIn:browse/uri/Browse.ashx?c=music",
             "TuneIn:browse/uri/Browse.ashx?c=music&veskNavigation=gone"}) {
        const QVariantHash answer = product.rpc(text("getRows"), {{text("path"), text(screen)}});
        const QVariantHash result = answer.value(text("result")).toHash();
        EXPECT_EQ(result.value(text("rowsCount")), QVariant(0LL)) << screen;
        EXPECT_FALSE(result.contains(text("problem"))) << screen;
        EXPECT_EQ(product.ctl({text("ls"), text(screen)}).code, 0);
    }
}

TEST(ServiceFaults, ATimeOutIsReportedAsNoAnswer)
{
    const Product product;
    ASSERT_TRUE(product.isUp());
    product.setFault("slow-headers@Browse.ashx:40");
    const QVariantHash error
        = product
              .rpc(text("getRows"), {{text("path"), text("TuneIn:browse/uri/Browse.ashx?c=talk")}})
              .value(text("error"))
              .toHash();
    EXPECT_EQ(error.value(text("message")).toString(), text("Failed to connect to TuneIn"));
    EXPECT_EQ(error.value(text("data")).toHash().value(text("problem")).toString(),
        text("The TuneIn service does not answer. Please try again later."));
}

TEST(ServiceFaults, AreReportedInTheUsersLanguage)
{
    const Product product;
    ASSERT_TRUE(product.isUp());
    ASSERT_EQ(product.ctl({text("set"), text("settings:ui/language"), text("de-DE")}).code, 0);
    product.setFault("http-status:403");
    const Outcome ls = product.ctl({text("ls")});
    EXPECT_EQ(ls.code, 1);
    EXPECT_THAT(ls.err.toStdString(),
        testing::HasSubstr("Der Dienst TuneIn weist dieses Gerät ab (HTTP 403). Prüfen Sie die "
                           "Einstellung „TuneIn-Partnerkennung“."));
}

TEST(ServiceFaults, AreNotReportedForOtherRequests)
{
    const Product product;
    ASSERT_TRUE(product.isUp());
    product.setFault("http-status@Browse.ashx:500*1");
    EXPECT_TRUE(
        product.rpc(text("getRows"), {{text("path"), text("TuneIn:")}}).contains(text("error")));
    product.setFault("body:" TEST_DATA_DIR "/nothing.json");
    const QVariantHash answer = product.rpc(text("getRows"), {{text("path"), text("TuneIn:")}});
    EXPECT_FALSE(answer.value(text("result")).toHash().contains(text("problem")));
}

TEST(HostileRequests, AreProtocolErrorsAndTheNextRequestIsServed)
{
    Product product;
    ASSERT_TRUE(product.isUp());
    const QByteArray requests[] = {
        "",
        "{",
        "[]",
        "null",
        "42",
        "\"getRows\"",
        "[1,2,3]",
        "{\"jsonrpc\":\"2.0\"}",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":7}",
        "{\"jsonrpc\":\"2.0\",\"id\":{},\"method\":\"getRows\"}",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"getRows\",\"params\":{\"path\":7}}",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"getRows\",\"params\":[]}",
        "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"getRows\",\"params\":{\"path\":\"TuneIn:\","
        "\"first\":-1,\"last\":1e99}}",
        "\xff\xfe\x00\x01",
        QByteArray(1000, '[') + QByteArray(1000, ']'),
        QByteArray(60000, '['),
    };
    for (const QByteArray &request : requests) {
        const QByteArray answer = product.post(request);
        EXPECT_TRUE(answer.contains("\"error\"")) << request.left(80).constData() << "\n"
                                                  << answer.left(200).constData();
    }
    EXPECT_FALSE(product.rows(QStringLiteral("TuneIn:"), {}).isEmpty());
}

} // namespace
