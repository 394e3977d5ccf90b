#include "tests/system/Product.h"

#include <QTemporaryFile>

#include <gmock/gmock.h>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// What a directory may do to a screen, and what the user is told. An empty message stands for an
/// empty screen.
struct Misbehaviour {
    const char *name;
    const char *fault;
    const char *message;
};

constexpr Misbehaviour misbehaviours[] = {
    {"forbidden_with_a_page", "http-status:403", "Invalid data returned."},
    {"server_error_with_a_page", "http-status:500", "Invalid data returned."},
    {"fault_in_the_head", "head-fault:400,request.idInvalid,Invalid ID for browse", ""},
    {"empty_body", "empty", "Invalid response."},
    {"closed_within_the_body", "truncated:100", "Failed to connect to TuneIn"},
    {"body_that_ends_early", "cut:100", "Invalid data returned."},
    {"no_json", "malformed", "Invalid data returned."},
    {"ten_megabytes", "oversized:10000000", "Failed to connect to TuneIn"},
    {"reset", "reset", "Failed to connect to TuneIn"},
    {"redirect_circle", "redirect-loop", "Failed to connect to TuneIn"},
    {"six_redirects", "redirect-chain:6", "Failed to connect to TuneIn"},
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

TEST_P(HostileAnswers, EndInTheOutcomeThatTheUserIsToldAndTheNextRequestIsServed)
{
    ASSERT_TRUE(s_product->isUp());
    const QVariantHash params {{text("path"), text("TuneIn:browse/uri/Browse.ashx?c=music")}};
    s_product->setFault(GetParam().fault);
    const QVariantHash answer = s_product->rpc(text("getRows"), params);
    s_product->clearFaults();
    if (*GetParam().message) {
        const QVariantHash error = answer.value(text("error")).toHash();
        EXPECT_EQ(error.value(text("code")).toInt(), -32000);
        EXPECT_EQ(error.value(text("message")).toString(), text(GetParam().message));
    } else {
        ASSERT_TRUE(answer.contains(text("result")));
        EXPECT_TRUE(answer.value(text("result")).toHash().value(text("rows")).toList().isEmpty());
    }
    EXPECT_FALSE(s_product->rows(text("TuneIn:browse/uri/Browse.ashx?c=music"), {}).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Directory, HostileAnswers, testing::ValuesIn(misbehaviours),
    [](const testing::TestParamInfo<Misbehaviour> &instance) { return instance.param.name; });

TEST(HostileRequests, EndInAnErrorOfTheProtocolAndTheNextRequestIsServed)
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
