// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/RawWebSocket.h"

#include <QtEndian>

namespace {

constexpr char Mask[] = "\x12\x34\x56\x78";

QByteArray bigEndian16(int number)
{
    QByteArray bytes(2, '\0');
    qToBigEndian(static_cast<quint16>(number), bytes.data());
    return bytes;
}

QByteArray bigEndian64(int number)
{
    QByteArray bytes(8, '\0');
    qToBigEndian(static_cast<quint64>(number), bytes.data());
    return bytes;
}

} // namespace

int RawWebSocket::Frame::closeCode() const
{
    return payload.size() >= 2 ? qFromBigEndian<quint16>(payload.constData()) : 0;
}

RawWebSocket::RawWebSocket(quint16 port, const QByteArray &headers)
    : m_client(port)
{
    m_client.send(RawClient::request("GET", "/ws", port,
        "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
        "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n"
            + headers));
    m_handshake = m_client.readResponse();
}

bool RawWebSocket::send(int opcode, const QByteArray &payload, bool isFinal)
{
    QByteArray frame;
    frame.append(static_cast<char>(opcode | (isFinal ? 0x80 : 0)));
    if (payload.size() < 126)
        frame.append(static_cast<char>(payload.size() | 0x80));
    else if (payload.size() < 65536)
        frame.append(static_cast<char>(126 | 0x80)).append(bigEndian16(payload.size()));
    else
        frame.append(static_cast<char>(127 | 0x80)).append(bigEndian64(payload.size()));
    frame.append(Mask, 4);
    for (int i = 0; i < payload.size(); ++i)
        frame.append(static_cast<char>(payload.at(i) ^ Mask[i % 4]));
    return m_client.send(frame);
}

RawWebSocket::Frame RawWebSocket::receive()
{
    const QByteArray head = m_client.read(2);
    if (head.size() < 2)
        return {};
    int size = head.at(1) & 0x7f;
    if (size == 126)
        size = qFromBigEndian<quint16>(m_client.read(2).constData());
    else if (size == 127)
        size = static_cast<int>(qFromBigEndian<quint64>(m_client.read(8).constData()));
    return {head.at(0) & 0x0f, m_client.read(size)};
}

QByteArray RawWebSocket::ask(const QByteArray &message)
{
    send(Text, message);
    return receive().payload;
}
