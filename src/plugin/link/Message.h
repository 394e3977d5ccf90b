// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/nodes/CMRequest.h"
#include "api/nodes/CMSubscribe.h"
#include "api/values/CMError.h"
#include "api/values/CMPath.h"
#include "api/values/VeskServiceFault.h"
#include "api/web/ServiceAnswers.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// \file
/// What a host and its worker processes say to each other. A frame's payload is one byte that tells
/// the kind of message, then the message.
///
/// The worker begins with Hello; the host answers with Start; the worker says Loaded once, with the
/// plug-in's root or why there is none. From then on both ask, answer, watch and tell of changes
/// alike, and take questions back with Cancel, and the worker says with Kept which settings the
/// plug-in has read, those from before Loaded before that. The host ends it with Stop, whereupon
/// the worker ends.

enum class MessageKind : quint8 {
    Hello = 1,
    Start = 2,
    Loaded = 3,
    Stop = 4,
    Request = 5,
    Answer = 6,
    Watch = 7,
    Change = 8,
    Route = 9,
    Value = 10,
    Player = 11,
    Cancel = 12,
    Alive = 13,
    Kept = 14
};

/// Worker to host, first of all.
struct HelloMessage {
    static constexpr quint32 TheMagic = 0x564b574b;
    static constexpr quint32 TheVersion = 4;

    quint32 magic = TheMagic;
    quint32 version = TheVersion;
};

/// A value of the host's value tree.
struct ValueMessage {
    CMPath path;
    QVariantHash value;
    bool writable = false;
    TrString title;
};

/// Host to worker: everything it needs in order to run its plug-in.
struct StartMessage {
    QString file;
    QVariantHash config;
    QString logLevel;
    QStringList connectTo;
    QString caFile;
    QStringList translations;
    QStringList valuePrefixes;
    QVector<ValueMessage> values;
    QVariantHash player;
    ServiceAnswerForm answerForm;
};

/// Worker to host.
struct LoadedMessage {
    CMPath root;
    QString error;
};

/// One question to a path of the other process.
struct RequestMessage {
    quint64 id = 0;
    CMRequest::Kind kind = CMRequest::None;
    CMPath path;
    int hops = 0;
    bool poll = false;
    QStringList roles;
    int first = 0;
    int last = 0;
    QString role;
    QVariant value;

    static RequestMessage of(quint64 id, const CMRequest &request);
    /// The question, to be answered at \a reply.
    CMRequest request(const CMReply<QVariant> &reply) const;
};

/// The answer to the question of that id: a value or an error, and what a service that was asked
/// for it has to do with that.
struct AnswerMessage {
    quint64 id = 0;
    QVariant value;
    CMError error;
    VeskServiceFault fault;
};

/// Asks to be told of changes at a path, or not any more.
struct WatchMessage {
    CMPath path;
    bool on = false;
};

/// Tells of a change: to one who watches its path, or about a path that the other one serves.
struct ChangeMessage {
    CMChange change;
    bool startingWith = false;
};

/// Worker to host: the worker serves a path, or serves it no more. A path without base stands for
/// its whole prefix.
struct RouteMessage {
    CMPath path;
    bool added = false;
};

/// Host to worker: what plays now.
struct PlayerMessage {
    QVariantHash data;
};

struct StopMessage { };

/// The question of that id needs no answer any more; what is sent is an answer all the same.
struct CancelMessage {
    quint64 id = 0;
};

/// Worker to host: it is waiting for its service within that one's limits, and does not hang.
struct AliveMessage { };

/// Worker to host: the plug-in has read a setting, and keeps the value for as long as it lives; or
/// it follows the setting by itself after all.
struct KeptMessage {
    CMPath setting;
    QVariantHash value;
    bool keeps = false;
};

/// The payload of a frame.
QByteArray encode(const HelloMessage &message);
QByteArray encode(const StartMessage &message);
QByteArray encode(const LoadedMessage &message);
QByteArray encode(const StopMessage &message);
QByteArray encode(const RequestMessage &message);
QByteArray encode(const AnswerMessage &message);
QByteArray encode(const WatchMessage &message);
QByteArray encode(const ChangeMessage &message);
QByteArray encode(const RouteMessage &message);
QByteArray encode(const ValueMessage &message);
QByteArray encode(const PlayerMessage &message);
QByteArray encode(const CancelMessage &message);
QByteArray encode(const AliveMessage &message);
QByteArray encode(const KeptMessage &message);

/// The kind of a payload; none of MessageKind's when there is no byte at all.
MessageKind kindOf(const QByteArray &payload);
/// The message of a payload of its kind; nothing when it cannot be read, or not to its end.
template <class Message>
std::optional<Message> decode(const QByteArray &payload);
