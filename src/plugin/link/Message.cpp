// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/Message.h"

#include "plugin/link/Wire.h"

namespace {

/// More values than any host has.
constexpr quint64 MaxValues = 10'000;

/// Writes the fields that it visits.
class FieldWriter {
public:
    explicit FieldWriter(WireWriter &writer)
        : m_writer(writer)
    {
    }

    template <class... Fields>
    void operator()(const Fields &...fields)
    {
        (write(fields), ...);
    }
    void check(bool) { }

private:
    void write(quint32 count) { m_writer.writeCount(count); }
    void write(quint64 count) { m_writer.writeCount(count); }
    void write(int number) { m_writer.writeInt(number); }
    void write(bool flag) { m_writer.writeBool(flag); }
    void write(CMRequest::Kind kind) { m_writer.writeByte(static_cast<quint8>(kind)); }
    void write(VeskServiceFault::Kind kind) { m_writer.writeByte(static_cast<quint8>(kind)); }
    void write(const QString &text) { m_writer.writeText(text); }
    void write(const QStringList &texts) { m_writer.writeTexts(texts); }
    void write(const CMPath &path) { m_writer.writePath(path); }
    void write(const TrString &text) { m_writer.writeTrString(text); }
    void write(const CMError &error) { m_writer.writeHash(error.toHash()); }
    void write(const QVariantHash &hash) { m_writer.writeHash(hash); }
    void write(const QVariant &value) { m_writer.writeVariant(value); }
    void write(const QVector<ValueMessage> &values)
    {
        m_writer.writeCount(static_cast<quint64>(values.size()));
        for (const ValueMessage &value : values)
            ValueMessage::fields(value, *this);
    }

    WireWriter &m_writer;
};

/// Reads the fields that it visits. Once one is wrong, whether it cannot be read or holds what it
/// must not, the message is.
class FieldReader {
public:
    explicit FieldReader(WireReader &reader)
        : m_reader(reader)
    {
    }

    template <class... Fields>
    void operator()(Fields &...fields)
    {
        (read(fields), ...);
    }
    void check(bool isRight) { m_isRight &= isRight; }
    bool isRight() const { return m_isRight; }

private:
    void read(quint32 &count) { count = static_cast<quint32>(m_reader.readCount()); }
    void read(quint64 &count) { count = m_reader.readCount(); }
    void read(int &number) { number = static_cast<int>(m_reader.readInt()); }
    void read(bool &flag) { flag = m_reader.readBool(); }
    void read(CMRequest::Kind &kind)
    {
        const quint8 byte = m_reader.readByte();
        check(byte == CMRequest::GetRows || byte == CMRequest::GetData || byte == CMRequest::SetData
            || byte == CMRequest::MatchRow);
        kind = m_isRight ? static_cast<CMRequest::Kind>(byte) : CMRequest::None;
    }
    void read(VeskServiceFault::Kind &kind)
    {
        const quint8 byte = m_reader.readByte();
        check(byte <= VeskServiceFault::Reported);
        kind = static_cast<VeskServiceFault::Kind>(byte);
    }
    void read(QString &text) { text = m_reader.readText(); }
    void read(QStringList &texts) { texts = m_reader.readTexts(); }
    void read(CMPath &path) { path = m_reader.readPath(); }
    void read(TrString &text) { text = m_reader.readTrString(); }
    void read(CMError &error) { error = CMError(m_reader.readHash()); }
    void read(QVariantHash &hash) { hash = m_reader.readHash(); }
    void read(QVariant &value) { value = m_reader.readVariant(); }
    void read(QVector<ValueMessage> &values)
    {
        const quint64 count = m_reader.readCount();
        check(count <= MaxValues);
        for (quint64 i = 0; i < count && m_isRight && m_reader.isOk(); ++i) {
            values.append(ValueMessage());
            ValueMessage::fields(values.last(), *this);
        }
    }

    WireReader &m_reader;
    bool m_isRight = true;
};

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
QByteArray encode(const Message &message)
{
    WireWriter writer;
    writer.writeByte(static_cast<quint8>(Message::Kind));
    FieldWriter visitor(writer);
    Message::fields(message, visitor);
    return std::move(writer.bytes());
}

template <class Message>
std::optional<Message> decode(const QByteArray &payload)
{
    if (payload.isEmpty())
        return std::nullopt;
    WireReader reader(payload, 1);
    FieldReader visitor(reader);
    Message message;
    Message::fields(message, visitor);
    if (!visitor.isRight() || !reader.isAtEnd())
        return std::nullopt;
    return message;
}

#define VESK_MESSAGE(Name)                                                                         \
    template QByteArray encode(const Name##Message &);                                             \
    template std::optional<Name##Message> decode(const QByteArray &);

VESK_MESSAGE(Hello)
VESK_MESSAGE(Start)
VESK_MESSAGE(Loaded)
VESK_MESSAGE(Stop)
VESK_MESSAGE(Request)
VESK_MESSAGE(Response)
VESK_MESSAGE(Subscribe)
VESK_MESSAGE(Change)
VESK_MESSAGE(Route)
VESK_MESSAGE(Value)
VESK_MESSAGE(Player)
VESK_MESSAGE(Cancel)
VESK_MESSAGE(Alive)
VESK_MESSAGE(Kept)
