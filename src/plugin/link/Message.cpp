// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/Message.h"

#include "plugin/link/Wire.h"

namespace {

/// How many values a host has, at the most.
constexpr quint64 MaxValues = 10'000;

CMRequest::Kind readKind(WireReader &reader)
{
    switch (const quint8 kind = reader.readByte()) {
    case CMRequest::GetRows:
    case CMRequest::GetData:
    case CMRequest::SetData:
    case CMRequest::MatchRow:
        return static_cast<CMRequest::Kind>(kind);
    default:
        return CMRequest::None;
    }
}

void write(WireWriter &writer, const HelloMessage &message)
{
    writer.writeCount(message.magic);
    writer.writeCount(message.version);
}

bool read(WireReader &reader, HelloMessage &message)
{
    message.magic = static_cast<quint32>(reader.readCount());
    message.version = static_cast<quint32>(reader.readCount());
    return true;
}

void write(WireWriter &writer, const ValueMessage &message)
{
    writer.writePath(message.path);
    writer.writeHash(message.value);
    writer.writeBool(message.writable);
    writer.writeTrString(message.title);
}

bool read(WireReader &reader, ValueMessage &message)
{
    message.path = reader.readPath();
    message.value = reader.readHash();
    message.writable = reader.readBool();
    message.title = reader.readTrString();
    return true;
}

void write(WireWriter &writer, const StartMessage &message)
{
    writer.writeText(message.file);
    writer.writeHash(message.config);
    writer.writeText(message.logLevel);
    writer.writeTexts(message.connectTo);
    writer.writeText(message.caFile);
    writer.writeTexts(message.translations);
    writer.writeTexts(message.valuePrefixes);
    writer.writeCount(static_cast<quint64>(message.values.size()));
    for (const ValueMessage &value : message.values)
        write(writer, value);
    writer.writeHash(message.player);
    writer.writeTexts(message.answerForm.status);
    writer.writeTexts(message.answerForm.good);
}

bool read(WireReader &reader, StartMessage &message)
{
    message.file = reader.readText();
    message.config = reader.readHash();
    message.logLevel = reader.readText();
    message.connectTo = reader.readTexts();
    message.caFile = reader.readText();
    message.translations = reader.readTexts();
    message.valuePrefixes = reader.readTexts();
    const quint64 count = reader.readCount();
    if (count > MaxValues)
        return false;
    for (quint64 i = 0; i < count && reader.isOk(); ++i) {
        message.values.append(ValueMessage());
        read(reader, message.values.last());
    }
    message.player = reader.readHash();
    message.answerForm.status = reader.readTexts();
    message.answerForm.good = reader.readTexts();
    return true;
}

void write(WireWriter &writer, const LoadedMessage &message)
{
    writer.writePath(message.root);
    writer.writeText(message.error);
}

bool read(WireReader &reader, LoadedMessage &message)
{
    message.root = reader.readPath();
    message.error = reader.readText();
    return true;
}

void write(WireWriter &, const StopMessage &) { }

bool read(WireReader &, StopMessage &)
{
    return true;
}

void write(WireWriter &, const AliveMessage &) { }

bool read(WireReader &, AliveMessage &)
{
    return true;
}

void write(WireWriter &writer, const KeptMessage &message)
{
    writer.writePath(message.setting);
    writer.writeHash(message.value);
    writer.writeBool(message.keeps);
}

bool read(WireReader &reader, KeptMessage &message)
{
    message.setting = reader.readPath();
    message.value = reader.readHash();
    message.keeps = reader.readBool();
    return true;
}

void write(WireWriter &writer, const CancelMessage &message)
{
    writer.writeCount(message.id);
}

bool read(WireReader &reader, CancelMessage &message)
{
    message.id = reader.readCount();
    return true;
}

void write(WireWriter &writer, const RequestMessage &message)
{
    writer.writeCount(message.id);
    writer.writeByte(static_cast<quint8>(message.kind));
    writer.writePath(message.path);
    writer.writeInt(message.hops);
    writer.writeBool(message.poll);
    switch (message.kind) {
    case CMRequest::GetRows:
        writer.writeTexts(message.roles);
        writer.writeInt(message.first);
        writer.writeInt(message.last);
        break;
    case CMRequest::GetData:
        writer.writeTexts(message.roles);
        break;
    case CMRequest::SetData:
    case CMRequest::MatchRow:
        writer.writeText(message.role);
        writer.writeVariant(message.value);
        break;
    case CMRequest::None:
        break;
    }
}

bool read(WireReader &reader, RequestMessage &message)
{
    message.id = reader.readCount();
    message.kind = readKind(reader);
    message.path = reader.readPath();
    message.hops = static_cast<int>(reader.readInt());
    message.poll = reader.readBool();
    switch (message.kind) {
    case CMRequest::GetRows:
        message.roles = reader.readTexts();
        message.first = static_cast<int>(reader.readInt());
        message.last = static_cast<int>(reader.readInt());
        break;
    case CMRequest::GetData:
        message.roles = reader.readTexts();
        break;
    case CMRequest::SetData:
    case CMRequest::MatchRow:
        message.role = reader.readText();
        message.value = reader.readVariant();
        break;
    case CMRequest::None:
        return false;
    }
    return message.hops >= 0;
}

void write(WireWriter &writer, const AnswerMessage &message)
{
    writer.writeCount(message.id);
    writer.writeHash(message.error.toHash());
    writer.writeVariant(message.value);
    writer.writeByte(static_cast<quint8>(message.fault.kind));
    writer.writeInt(message.fault.code);
}

bool read(WireReader &reader, AnswerMessage &message)
{
    message.id = reader.readCount();
    message.error = CMError(reader.readHash());
    message.value = reader.readVariant();
    const quint8 kind = reader.readByte();
    message.fault.kind = static_cast<VeskServiceFault::Kind>(kind);
    message.fault.code = static_cast<int>(reader.readInt());
    return kind <= VeskServiceFault::Reported;
}

void write(WireWriter &writer, const WatchMessage &message)
{
    writer.writePath(message.path);
    writer.writeBool(message.on);
}

bool read(WireReader &reader, WatchMessage &message)
{
    message.path = reader.readPath();
    message.on = reader.readBool();
    return true;
}

void write(WireWriter &writer, const ChangeMessage &message)
{
    writer.writePath(message.change.path);
    writer.writeText(message.change.kind);
    writer.writeInt(message.change.first);
    writer.writeInt(message.change.last);
    writer.writeInt(message.change.hops);
    writer.writeBool(message.startingWith);
}

bool read(WireReader &reader, ChangeMessage &message)
{
    message.change.path = reader.readPath();
    message.change.kind = reader.readText();
    message.change.first = static_cast<int>(reader.readInt());
    message.change.last = static_cast<int>(reader.readInt());
    message.change.hops = static_cast<int>(reader.readInt());
    message.startingWith = reader.readBool();
    return message.change.hops >= 0;
}

void write(WireWriter &writer, const RouteMessage &message)
{
    writer.writePath(message.path);
    writer.writeBool(message.added);
}

bool read(WireReader &reader, RouteMessage &message)
{
    message.path = reader.readPath();
    message.added = reader.readBool();
    return true;
}

void write(WireWriter &writer, const PlayerMessage &message)
{
    writer.writeHash(message.data);
}

bool read(WireReader &reader, PlayerMessage &message)
{
    message.data = reader.readHash();
    return true;
}

template <class Message>
QByteArray encoded(MessageKind kind, const Message &message)
{
    WireWriter writer;
    writer.writeByte(static_cast<quint8>(kind));
    write(writer, message);
    return std::move(writer.bytes());
}

} // namespace

RequestMessage RequestMessage::of(quint64 id, const CMRequest &request)
{
    RequestMessage message;
    message.id = id;
    message.kind = request.kind();
    message.path = request.path();
    message.hops = request.hops();
    message.poll = request.isPoll();
    switch (request.kind()) {
    case CMRequest::GetRows: {
        const CMGetRowsRequest getRows(request);
        message.roles = getRows.roles();
        message.first = getRows.first();
        message.last = getRows.last();
        break;
    }
    case CMRequest::GetData:
        message.roles = CMGetDataRequest(request).roles();
        break;
    case CMRequest::SetData: {
        const CMSetDataRequest setData(request);
        message.role = setData.role();
        message.value = setData.value();
        break;
    }
    case CMRequest::MatchRow: {
        const CMMatchRowRequest matchRow(request);
        message.role = matchRow.role();
        message.value = matchRow.value();
        break;
    }
    case CMRequest::None:
        break;
    }
    return message;
}

CMRequest RequestMessage::request(const CMReply<QVariant> &reply) const
{
    CMRequest request;
    switch (kind) {
    case CMRequest::GetRows:
        request = CMGetRowsRequest(path, roles, first, last, reply);
        break;
    case CMRequest::GetData:
        request = CMGetDataRequest(path, roles, reply);
        break;
    case CMRequest::SetData:
        request = CMSetDataRequest(path, role, value, reply);
        break;
    case CMRequest::MatchRow:
        request = CMMatchRowRequest(path, role, value, reply);
        break;
    case CMRequest::None:
        return request;
    }
    request = request.withHops(hops);
    return poll ? request.asPoll() : request;
}

MessageKind kindOf(const QByteArray &payload)
{
    return static_cast<MessageKind>(payload.isEmpty() ? 0 : payload.at(0));
}

template <class Message>
std::optional<Message> decode(const QByteArray &payload)
{
    if (payload.isEmpty())
        return std::nullopt;
    WireReader reader(payload, 1);
    Message message;
    if (!read(reader, message) || !reader.isAtEnd())
        return std::nullopt;
    return message;
}

#define VESK_MESSAGE(name)                                                                         \
    QByteArray encode(const name##Message &message)                                                \
    {                                                                                              \
        return encoded(MessageKind::name, message);                                                \
    }                                                                                              \
    template std::optional<name##Message> decode(const QByteArray &payload);

VESK_MESSAGE(Hello)
VESK_MESSAGE(Start)
VESK_MESSAGE(Loaded)
VESK_MESSAGE(Stop)
VESK_MESSAGE(Request)
VESK_MESSAGE(Answer)
VESK_MESSAGE(Watch)
VESK_MESSAGE(Change)
VESK_MESSAGE(Route)
VESK_MESSAGE(Value)
VESK_MESSAGE(Player)
VESK_MESSAGE(Cancel)
VESK_MESSAGE(Alive)
VESK_MESSAGE(Kept)
