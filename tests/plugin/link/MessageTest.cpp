// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/Message.h"

#include "api/values/VeskValue.h"
#include "plugin/link/Wire.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

CMPath path(const char *text)
{
    return CMPath::fromEncoded(QString::fromUtf8(text));
}

RequestMessage request(CMRequest::Kind kind)
{
    RequestMessage message;
    message.id = 77;
    message.kind = kind;
    message.path = path("TuneIn:browse?id=s1");
    message.hops = 3;
    message.poll = true;
    if (kind == CMRequest::GetRows || kind == CMRequest::GetData)
        message.roles = QStringList {QStringLiteral("title"), QStringLiteral("path")};
    if (kind == CMRequest::GetRows) {
        message.first = 5;
        message.last = 17;
    }
    if (kind == CMRequest::SetData || kind == CMRequest::MatchRow) {
        message.role = QStringLiteral("value");
        message.value = QVariantHash {{QStringLiteral("k"), 1}};
    }
    return message;
}

constexpr CMRequest::Kind AllRequests[]
    = {CMRequest::GetRows, CMRequest::GetData, CMRequest::SetData, CMRequest::MatchRow};

ValueMessage value()
{
    return {path("settings:a/b"), {{QStringLiteral("type"), 1}}, true, TrString("Values", "Title")};
}

StartMessage start()
{
    StartMessage message;
    message.file = QStringLiteral("/plug-ins/a.so");
    message.config = {{QStringLiteral("id"), QStringLiteral("tunein")}};
    message.network = true;
    message.logLevel = QStringLiteral("debug");
    message.connectTo = QStringList {QStringLiteral("a:80:b:81"), QStringLiteral("c:1:d:2")};
    message.caFile = QStringLiteral("/ca.pem");
    message.translations = QStringList {QStringLiteral("/t")};
    message.catalogueFolder = QStringLiteral("/p/words");
    message.catalogueName = QStringLiteral("radio");
    message.valuePrefixes = QStringList {QStringLiteral("settings"), QStringLiteral("system")};
    message.values = {value(), value()};
    message.player = {{QStringLiteral("title"), TrString("Player", "Now")}};
    message.answerForm
        = {{QStringLiteral("head"), QStringLiteral("status")}, {QStringLiteral("200")}};
    return message;
}

ResponseMessage answer()
{
    ResponseMessage message;
    message.id = std::numeric_limits<quint64>::max();
    message.value = QVariantList {1, QStringLiteral("two")};
    return message;
}

ChangeMessage change()
{
    return {{path("A:x"), CMSubscribe::RowsChangeInserted(), 2, 4, 1}, true};
}

/// One of every kind.
QList<QByteArray> examples()
{
    QList<QByteArray> payloads {encode(HelloMessage()), encode(start()),
        encode(LoadedMessage {path("A:"), QStringLiteral("error")}), encode(StopMessage()),
        encode(answer()), encode(SubscribeMessage {path("A:x"), true}), encode(change()),
        encode(RouteMessage {path("A:"), true}), encode(value()),
        encode(PlayerMessage {{{QStringLiteral("k"), 1}}}), encode(CancelMessage {7}),
        encode(AliveMessage()), encode(KeptMessage {path("settings:a"), {}, true})};
    for (const CMRequest::Kind kind : AllRequests)
        payloads.append(encode(request(kind)));
    return payloads;
}

/// Whether the message of the payload's kind can be read.
bool isReadable(const QByteArray &payload)
{
    switch (kindOf(payload)) {
    case MessageKind::Hello:
        return decode<HelloMessage>(payload).has_value();
    case MessageKind::Start:
        return decode<StartMessage>(payload).has_value();
    case MessageKind::Loaded:
        return decode<LoadedMessage>(payload).has_value();
    case MessageKind::Stop:
        return decode<StopMessage>(payload).has_value();
    case MessageKind::Request:
        return decode<RequestMessage>(payload).has_value();
    case MessageKind::Response:
        return decode<ResponseMessage>(payload).has_value();
    case MessageKind::Subscribe:
        return decode<SubscribeMessage>(payload).has_value();
    case MessageKind::Change:
        return decode<ChangeMessage>(payload).has_value();
    case MessageKind::Route:
        return decode<RouteMessage>(payload).has_value();
    case MessageKind::Value:
        return decode<ValueMessage>(payload).has_value();
    case MessageKind::Player:
        return decode<PlayerMessage>(payload).has_value();
    case MessageKind::Cancel:
        return decode<CancelMessage>(payload).has_value();
    case MessageKind::Alive:
        return decode<AliveMessage>(payload).has_value();
    case MessageKind::Kept:
        return decode<KeptMessage>(payload).has_value();
    }
    return false;
}

void expectEqual(const ValueMessage &read, const ValueMessage &written)
{
    EXPECT_EQ(read.path, written.path);
    EXPECT_EQ(read.value, written.value);
    EXPECT_EQ(read.writable, written.writable);
    EXPECT_EQ(read.title, written.title);
}

TEST(Message, HelloSurvives)
{
    const QByteArray payload = encode(HelloMessage {17, 18});
    EXPECT_EQ(kindOf(payload), MessageKind::Hello);
    const auto read = decode<HelloMessage>(payload);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->magic, 17U);
    EXPECT_EQ(read->version, 18U);
    EXPECT_EQ(decode<HelloMessage>(encode(HelloMessage()))->magic, HelloMessage::TheMagic);
}

TEST(Message, ServiceFaultsSurvive)
{
    ResponseMessage message = answer();
    message.fault = {VeskServiceFault::Reported, -7};
    const auto read = decode<ResponseMessage>(encode(message));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->fault == message.fault);
    message.fault.kind = static_cast<VeskServiceFault::Kind>(VeskServiceFault::Reported + 1);
    EXPECT_FALSE(decode<ResponseMessage>(encode(message))) << "there is no such kind";
}

TEST(Message, KeptSurvives)
{
    const VeskValue kept = VeskValue::fromString(QStringLiteral("abc"));
    const QByteArray payload = encode(KeptMessage {path("settings:a/b"), kept.toHash(), true});
    EXPECT_EQ(kindOf(payload), MessageKind::Kept);
    const auto read = decode<KeptMessage>(payload);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->setting, path("settings:a/b"));
    EXPECT_EQ(read->value, kept.toHash());
    EXPECT_TRUE(read->keeps);
    EXPECT_FALSE(decode<KeptMessage>(encode(KeptMessage()))->keeps);
}

TEST(Message, StartSurvives)
{
    const StartMessage written = start();
    const QByteArray payload = encode(written);
    EXPECT_EQ(kindOf(payload), MessageKind::Start);
    const auto read = decode<StartMessage>(payload);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->file, written.file);
    EXPECT_EQ(read->config, written.config);
    EXPECT_TRUE(read->network);
    EXPECT_EQ(read->logLevel, written.logLevel);
    EXPECT_EQ(read->connectTo, written.connectTo);
    EXPECT_EQ(read->caFile, written.caFile);
    EXPECT_EQ(read->translations, written.translations);
    EXPECT_EQ(read->catalogueFolder, written.catalogueFolder);
    EXPECT_EQ(read->catalogueName, written.catalogueName);
    EXPECT_EQ(read->valuePrefixes, written.valuePrefixes);
    ASSERT_EQ(read->values.size(), written.values.size());
    for (int i = 0; i < written.values.size(); ++i)
        expectEqual(read->values.at(i), written.values.at(i));
    EXPECT_EQ(
        read->player.value(QStringLiteral("title")).value<TrString>(), TrString("Player", "Now"));
    EXPECT_FALSE(decode<StartMessage>(encode(StartMessage()))->network);
}

TEST(Message, LoadedSurvives)
{
    const auto read
        = decode<LoadedMessage>(encode(LoadedMessage {path("A:"), QStringLiteral("why")}));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->root, path("A:"));
    EXPECT_EQ(read->error, QStringLiteral("why"));
}

TEST(Message, StopSurvives)
{
    const QByteArray payload = encode(StopMessage());
    EXPECT_EQ(kindOf(payload), MessageKind::Stop);
    EXPECT_TRUE(decode<StopMessage>(payload));
}

TEST(Message, RequestsSurvive)
{
    for (const CMRequest::Kind kind : AllRequests) {
        const RequestMessage written = request(kind);
        const QByteArray payload = encode(written);
        EXPECT_EQ(kindOf(payload), MessageKind::Request);
        const auto read = decode<RequestMessage>(payload);
        ASSERT_TRUE(read) << kind;
        EXPECT_EQ(read->id, written.id);
        EXPECT_EQ(read->kind, kind);
        EXPECT_EQ(read->path, written.path);
        EXPECT_EQ(read->hops, written.hops);
        EXPECT_EQ(read->poll, written.poll);
        EXPECT_EQ(read->roles, written.roles);
        EXPECT_EQ(read->first, written.first);
        EXPECT_EQ(read->last, written.last);
        EXPECT_EQ(read->role, written.role);
        EXPECT_EQ(read->value, written.value);
    }
}

TEST(Message, RequestsAreRestored)
{
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    const CMReply<QVariant> reply(data);
    const CMPath to = path("A:x");
    const QStringList roles {QStringLiteral("title")};
    const QString role = QStringLiteral("value");
    const auto sent = [](const CMRequest &asked) {
        const RequestMessage message = RequestMessage::of(9, asked);
        EXPECT_EQ(message.id, 9U);
        return *decode<RequestMessage>(encode(message));
    };

    const CMGetRowsRequest rows(
        sent(CMGetRowsRequest(to, roles, 3, 8, reply).withHops(2)).request(reply));
    EXPECT_EQ(rows.path(), to);
    EXPECT_EQ(rows.roles(), roles);
    EXPECT_EQ(rows.first(), 3);
    EXPECT_EQ(rows.last(), 8);
    EXPECT_EQ(rows.hops(), 2);
    EXPECT_FALSE(rows.isPoll());
    EXPECT_EQ(rows.replyData(), data.get());

    const CMGetDataRequest getData(
        sent(CMGetDataRequest(to, roles, reply).withHops(1).asPoll()).request(reply));
    EXPECT_EQ(getData.path(), to);
    EXPECT_EQ(getData.roles(), roles);
    EXPECT_EQ(getData.hops(), 1);
    EXPECT_TRUE(getData.isPoll());
    EXPECT_EQ(getData.replyData(), data.get());

    const CMSetDataRequest setData(
        sent(CMSetDataRequest(to, role, 5, reply).withHops(8)).request(reply));
    EXPECT_EQ(setData.path(), to);
    EXPECT_EQ(setData.role(), role);
    EXPECT_EQ(setData.value(), QVariant(5));
    EXPECT_EQ(setData.hops(), 8);
    EXPECT_EQ(setData.replyData(), data.get());

    const CMMatchRowRequest match(sent(CMMatchRowRequest(to, role, 5, reply)).request(reply));
    EXPECT_EQ(match.path(), to);
    EXPECT_EQ(match.role(), role);
    EXPECT_EQ(match.value(), QVariant(5));
    EXPECT_EQ(match.hops(), 0);
    EXPECT_EQ(match.replyData(), data.get());
}

TEST(Message, ANullRequestCannotBeDecoded)
{
    const RequestMessage none = RequestMessage::of(1, CMRequest());
    EXPECT_EQ(none.kind, CMRequest::None);
    EXPECT_EQ(none.request({}).kind(), CMRequest::None);
    EXPECT_FALSE(decode<RequestMessage>(encode(none)));
}

TEST(Message, RequestsOfUnknownKindsAreRefused)
{
    QByteArray payload = encode(request(CMRequest::GetData));
    constexpr int KindAt = 2; // after the message's kind and a one-byte id
    ASSERT_EQ(payload.at(KindAt), char(CMRequest::GetData));
    for (int kind = CMRequest::MatchRow + 1; kind < 256; ++kind) {
        payload[KindAt] = static_cast<char>(kind);
        EXPECT_FALSE(decode<RequestMessage>(payload)) << kind;
    }
}

TEST(Message, HopsAreNeverNegative)
{
    RequestMessage asked = request(CMRequest::GetData);
    asked.hops = -1;
    EXPECT_FALSE(decode<RequestMessage>(encode(asked)));
    ChangeMessage changed = change();
    changed.change.hops = std::numeric_limits<int>::min();
    EXPECT_FALSE(decode<ChangeMessage>(encode(changed)));
}

TEST(Message, ResponsesSurvive)
{
    const ResponseMessage written = answer();
    const auto read = decode<ResponseMessage>(encode(written));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->id, written.id);
    EXPECT_EQ(read->value, written.value);
    EXPECT_TRUE(read->error.isEmpty());

    ResponseMessage failed;
    failed.id = 1;
    failed.error = CMError(QStringLiteral("name"),
        TrString(QStringLiteral("C"), QStringLiteral("%1 failed"), QString(), -1,
            {TrArg(QStringLiteral("It"))}),
        TrString("C", "Title"));
    const auto readFailed = decode<ResponseMessage>(encode(failed));
    ASSERT_TRUE(readFailed);
    EXPECT_EQ(readFailed->error.name(), QStringLiteral("name"));
    EXPECT_EQ(readFailed->error.message(), failed.error.message());
    EXPECT_EQ(readFailed->error.message().toString(), QStringLiteral("It failed"));
    EXPECT_EQ(readFailed->error.title(), failed.error.title());
    EXPECT_FALSE(readFailed->value.isValid());
}

TEST(Message, SubscribeChangeRouteValueAndPlayerSurvive)
{
    for (const bool flag : {false, true}) {
        const auto watch
            = decode<SubscribeMessage>(encode(SubscribeMessage {path("A:x?y=z"), flag}));
        ASSERT_TRUE(watch);
        EXPECT_EQ(watch->path, path("A:x?y=z"));
        EXPECT_EQ(watch->on, flag);
        const auto route = decode<RouteMessage>(encode(RouteMessage {path("A:"), flag}));
        ASSERT_TRUE(route);
        EXPECT_EQ(route->path, path("A:"));
        EXPECT_EQ(route->added, flag);
    }

    const auto changed = decode<ChangeMessage>(encode(change()));
    ASSERT_TRUE(changed);
    EXPECT_EQ(changed->change.path, path("A:x"));
    EXPECT_EQ(changed->change.kind, CMSubscribe::RowsChangeInserted());
    EXPECT_EQ(changed->change.first, 2);
    EXPECT_EQ(changed->change.last, 4);
    EXPECT_EQ(changed->change.hops, 1);
    EXPECT_TRUE(changed->startingWith);

    const auto told = decode<ValueMessage>(encode(value()));
    ASSERT_TRUE(told);
    expectEqual(*told, value());

    const QVariantHash data {{QStringLiteral("k"), QVariantList {1, 2}}};
    const auto player = decode<PlayerMessage>(encode(PlayerMessage {data}));
    ASSERT_TRUE(player);
    EXPECT_EQ(player->data, data);
}

TEST(Message, TrailingBytesAreRefused)
{
    for (const QByteArray &payload : examples()) {
        EXPECT_TRUE(isReadable(payload)) << int(kindOf(payload));
        EXPECT_FALSE(isReadable(payload + '\0')) << int(kindOf(payload));
        EXPECT_FALSE(isReadable(payload + payload)) << int(kindOf(payload));
    }
}

TEST(Message, TruncatedMessagesAreRefused)
{
    for (const QByteArray &payload : examples()) {
        for (int size = 1; size < payload.size(); ++size) {
            const QByteArray cut(payload.constData(), size);
            EXPECT_FALSE(isReadable(cut)) << int(kindOf(payload)) << ' ' << size;
        }
    }
}

TEST(Message, AnEmptyPayloadIsRefused)
{
    EXPECT_EQ(kindOf(QByteArray()), MessageKind(0));
    EXPECT_FALSE(decode<HelloMessage>(QByteArray()));
    EXPECT_FALSE(decode<StopMessage>(QByteArray()));
    EXPECT_FALSE(decode<RequestMessage>(QByteArray()));
}

TEST(Message, EveryDamagedByteIsSafe)
{
    for (const QByteArray &payload : examples()) {
        int refused = 0;
        for (int at = 1; at < payload.size(); ++at) {
            for (int flipped = 1; flipped < 256; ++flipped) {
                QByteArray damaged(payload.constData(), payload.size());
                damaged[at] = static_cast<char>(damaged.at(at) ^ flipped);
                refused += isReadable(damaged) ? 0 : 1;
            }
        }
        EXPECT_EQ(refused > 0, payload.size() > 1) << int(kindOf(payload));
    }
}

TEST(Message, StartWithTooManyValuesIsRefused)
{
    StartMessage many;
    many.values.resize(10'001);
    EXPECT_FALSE(decode<StartMessage>(encode(many)));
    many.values.resize(10'000);
    EXPECT_TRUE(decode<StartMessage>(encode(many)));
}

} // namespace
