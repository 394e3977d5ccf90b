// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/JsonRpc.h"

#include "api/web/VeskJson.h"

#include <gmock/gmock.h>

namespace {

JsonRpcRequest only(const QByteArray &bytes)
{
    const JsonRpcMessage message = parseJsonRpc(bytes);
    EXPECT_EQ(message.requests.size(), 1);
    EXPECT_FALSE(message.isBatch);
    return message.requests.first();
}

TEST(JsonRpcTest, ReadsACall)
{
    const JsonRpcRequest request
        = only(R"({"jsonrpc":"2.0","id":7,"method":"getRows","params":{"path":"a:b"}})");
    EXPECT_FALSE(request.isInvalid);
    EXPECT_FALSE(request.isNotification);
    EXPECT_EQ(request.method, QStringLiteral("getRows"));
    EXPECT_EQ(request.id, QVariant(7LL));
    EXPECT_EQ(request.params.value(QStringLiteral("path")), QVariant(QStringLiteral("a:b")));
}

TEST(JsonRpcTest, AcceptsTextNumbersAndNullAsIds)
{
    EXPECT_EQ(only(R"({"jsonrpc":"2.0","id":"x","method":"m"})").id, QStringLiteral("x"));
    EXPECT_EQ(only(R"({"jsonrpc":"2.0","id":1.5,"method":"m"})").id, 1.5);
    const JsonRpcRequest null = only(R"({"jsonrpc":"2.0","id":null,"method":"m"})");
    EXPECT_FALSE(null.isInvalid);
    EXPECT_FALSE(null.isNotification) << "a request with a null id is answered";
}

TEST(JsonRpcTest, SendsNumbersBackAsTheyCame)
{
    for (const char *id :
        {"0", "-1", "9007199254740991", "-9007199254740991", "0.1", "-123456.789012345"}) {
        const JsonRpcRequest request
            = only(QByteArray(R"({"jsonrpc":"2.0","method":"m","id":)") + id + "}");
        EXPECT_FALSE(request.isInvalid) << id;
        EXPECT_EQ(VeskJson::write(request.id), id);
    }
}

TEST(JsonRpcTest, TreatsACallWithoutIdAsANotification)
{
    EXPECT_TRUE(only(R"({"jsonrpc":"2.0","method":"m"})").isNotification);
}

struct BadMessage {
    const char *bytes;
    int code;
    QVariant id;
};

class JsonRpcBadMessageTest : public testing::TestWithParam<BadMessage> { };

TEST_P(JsonRpcBadMessageTest, IsOneInvalidRequest)
{
    const JsonRpcRequest request = only(GetParam().bytes);
    EXPECT_TRUE(request.isInvalid);
    EXPECT_FALSE(request.isNotification) << "the client has to get the error";
    EXPECT_EQ(request.error.code, GetParam().code);
    EXPECT_EQ(request.id, GetParam().id);
    EXPECT_FALSE(request.error.message.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Messages, JsonRpcBadMessageTest,
    testing::Values(BadMessage {"", -32700, {}}, BadMessage {"{", -32700, {}},
        BadMessage {"{\"jsonrpc\":\"2.0\",\"id\":1", -32700, {}},
        BadMessage {"\xff\xfe", -32700, {}}, BadMessage {"null", -32600, {}},
        BadMessage {"1", -32600, {}}, BadMessage {"\"text\"", -32600, {}},
        BadMessage {"[]", -32600, {}}, BadMessage {"{}", -32600, {}},
        BadMessage {R"({"id":3,"method":"m"})", -32600, 3LL},
        BadMessage {R"({"jsonrpc":"1.0","id":3,"method":"m"})", -32600, 3LL},
        BadMessage {R"({"jsonrpc":2.0,"id":3,"method":"m"})", -32600, 3LL},
        BadMessage {R"({"jsonrpc":"2.0","id":3})", -32600, 3LL},
        BadMessage {R"({"jsonrpc":"2.0","id":3,"method":1})", -32600, 3LL},
        BadMessage {R"({"jsonrpc":"2.0","id":true,"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"2.0","id":12345678901234567890,"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"2.0","id":-9223372036854775809,"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"2.0","id":9007199254740993.0,"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"2.0","id":1e300,"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"2.0","id":0.12345678901234567,"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"1.0","id":12345678901234567890,"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"2.0","id":{"a":1},"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"2.0","id":[1],"method":"m"})", -32600, {}},
        BadMessage {R"({"jsonrpc":"2.0","id":3,"method":"m","params":"bar"})", -32600, 3LL},
        BadMessage {R"({"jsonrpc":"2.0","id":3,"method":"m","params":null})", -32600, 3LL},
        BadMessage {R"({"jsonrpc":"2.0","id":3,"method":"m","params":[1]})", -32602, 3LL}));

TEST(JsonRpcTest, TreatsAnEmptyListOfParametersAsNone)
{
    EXPECT_FALSE(only(R"({"jsonrpc":"2.0","id":3,"method":"m","params":[]})").isInvalid);
}

TEST(JsonRpcTest, RefusesDeepNesting)
{
    EXPECT_EQ(only(QByteArray(100000, '[')).error.code, -32700);
    EXPECT_EQ(only(QByteArray("{\"a\":").repeated(20000)).error.code, -32700);
}

TEST(JsonRpcTest, ReadsEachRequestOfABatchSeparately)
{
    const JsonRpcMessage message = parseJsonRpc(
        R"([1,{"jsonrpc":"2.0","id":1,"method":"a"},{"jsonrpc":"2.0","method":"b"}])");
    EXPECT_TRUE(message.isBatch);
    ASSERT_EQ(message.requests.size(), 3);
    EXPECT_TRUE(message.requests.at(0).isInvalid);
    EXPECT_EQ(message.requests.at(1).method, QStringLiteral("a"));
    EXPECT_TRUE(message.requests.at(2).isNotification);
}

TEST(JsonRpcTest, TakesABatchOfAtMostFiftyRequests)
{
    const QByteArray call = R"({"jsonrpc":"2.0","id":1,"method":"m"},)";
    const auto batch = [&](int size) {
        QByteArray bytes = "[" + call.repeated(size);
        bytes[bytes.size() - 1] = ']';
        return bytes;
    };
    EXPECT_EQ(parseJsonRpc(batch(50)).requests.size(), 50);
    EXPECT_EQ(only(batch(51)).error.code, -32600);
}

} // namespace
