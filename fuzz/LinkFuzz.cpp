// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "plugin/link/Message.h"

#include <QByteArray>

// The messages between the host and a plug-in process: any payload is either decoded or rejected,
// and a decoded message can be encoded and decoded again.

namespace {

constexpr int LongestShown = 1'000'000;

template <class Message>
void require(const Message &)
{
}

void require(const RequestMessage &message)
{
    const CMRequest request = message.request({});
    FUZZ_REQUIRE(request.kind() == message.kind && request.kind() != CMRequest::None);
}

void require(const ResponseMessage &message)
{
    FUZZ_REQUIRE(message.error.message().toString().size() <= LongestShown);
}

void require(const ValueMessage &message)
{
    FUZZ_REQUIRE(message.title.toString().size() <= LongestShown);
}

template <class Message>
void read(const QByteArray &payload)
{
    const auto message = decode<Message>(payload);
    if (!message)
        return;
    require(*message);
    FUZZ_REQUIRE(decode<Message>(encode(*message)).has_value());
}

void readAny(const QByteArray &payload)
{
    switch (kindOf(payload)) {
    case MessageKind::Hello:
        return read<HelloMessage>(payload);
    case MessageKind::Start:
        return read<StartMessage>(payload);
    case MessageKind::Loaded:
        return read<LoadedMessage>(payload);
    case MessageKind::Stop:
        return read<StopMessage>(payload);
    case MessageKind::Request:
        return read<RequestMessage>(payload);
    case MessageKind::Response:
        return read<ResponseMessage>(payload);
    case MessageKind::Subscribe:
        return read<SubscribeMessage>(payload);
    case MessageKind::Change:
        return read<ChangeMessage>(payload);
    case MessageKind::Route:
        return read<RouteMessage>(payload);
    case MessageKind::Value:
        return read<ValueMessage>(payload);
    case MessageKind::Player:
        return read<PlayerMessage>(payload);
    case MessageKind::Cancel:
        return read<CancelMessage>(payload);
    case MessageKind::Alive:
        return read<AliveMessage>(payload);
    case MessageKind::Kept:
        return read<KeptMessage>(payload);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    readAny(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return 0;
}
