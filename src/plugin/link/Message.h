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
/// The messages between the host and the process of a plug-in. A frame's payload is one byte, the
/// kind of message, and then its fields in the order in which fields() visits them.
///
/// The plug-in's process begins with Hello; the host sends Start; the process sends Loaded once,
/// with the plug-in's root or why there is none. From then on both send requests, responses,
/// subscriptions and changes alike, and cancel requests. With Kept the process says which settings
/// the plug-in has read, those from before Loaded before that. With Stop the host has the process
/// end.

enum class MessageKind : quint8 {
    Hello = 1,
    Start = 2,
    Loaded = 3,
    Stop = 4,
    Request = 5,
    Response = 6,
    Subscribe = 7,
    Change = 8,
    Route = 9,
    Value = 10,
    Player = 11,
    Cancel = 12,
    Alive = 13,
    Kept = 14
};

/// Process to host, first of all.
struct HelloMessage {
    static constexpr MessageKind Kind = MessageKind::Hello;
    static constexpr quint32 TheMagic = 0x564b574b;
    static constexpr quint32 TheVersion = 5;

    quint32 magic = TheMagic;
    quint32 version = TheVersion;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.magic, self.version);
    }
};

/// Host to process: a value of the host's value tree.
struct ValueMessage {
    static constexpr MessageKind Kind = MessageKind::Value;

    CMPath path;
    QVariantHash value;
    bool writable = false;
    TrString title;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.path, self.value, self.writable, self.title);
    }
};

/// Host to process: everything it needs in order to run its plug-in.
struct StartMessage {
    static constexpr MessageKind Kind = MessageKind::Start;

    QString file;
    QVariantHash config;
    bool network = false; ///< whether the plug-in may use the internet
    QString logLevel;
    QStringList connectTo;
    QString caFile;
    QStringList translations;
    /// The plug-in's own catalogues; an empty folder when it has none.
    QString catalogueFolder;
    QString catalogueName;
    QStringList valuePrefixes;
    QVector<ValueMessage> values;
    QVariantHash player;
    ServiceAnswerForm answerForm;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.file, self.config, self.network, self.logLevel, self.connectTo, self.caFile,
            self.translations, self.catalogueFolder, self.catalogueName, self.valuePrefixes,
            self.values, self.player, self.answerForm.status, self.answerForm.good);
    }
};

/// Process to host.
struct LoadedMessage {
    static constexpr MessageKind Kind = MessageKind::Loaded;

    CMPath root;
    QString error;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.root, self.error);
    }
};

/// A request to a path of the other process.
struct RequestMessage {
    static constexpr MessageKind Kind = MessageKind::Request;

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
    /// The request, with \a reply for its outcome.
    CMRequest request(const CMReply<QVariant> &reply) const;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.id, self.kind, self.path, self.hops, self.poll);
        if (self.kind == CMRequest::GetRows)
            visit(self.roles, self.first, self.last);
        else if (self.kind == CMRequest::GetData)
            visit(self.roles);
        else
            visit(self.role, self.value);
        visit.check(self.hops >= 0);
    }
};

/// The outcome of the request of that id, and what was wrong with the service that was asked for
/// it.
struct ResponseMessage {
    static constexpr MessageKind Kind = MessageKind::Response;

    quint64 id = 0;
    QVariant value;
    CMError error;
    VeskServiceFault fault;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.id, self.error, self.value, self.fault.kind, self.fault.code);
    }
};

/// Subscribes to changes at a path, or unsubscribes.
struct SubscribeMessage {
    static constexpr MessageKind Kind = MessageKind::Subscribe;

    CMPath path;
    bool on = false;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.path, self.on);
    }
};

/// A change: at a path that the receiver is subscribed to, or about one that it serves.
struct ChangeMessage {
    static constexpr MessageKind Kind = MessageKind::Change;

    CMChange change;
    bool startingWith = false;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.change.path, self.change.kind, self.change.first, self.change.last,
            self.change.hops, self.startingWith);
        visit.check(self.change.hops >= 0);
    }
};

/// Process to host: the plug-in serves a path, or serves it no more. A path without base stands for
/// its whole prefix.
struct RouteMessage {
    static constexpr MessageKind Kind = MessageKind::Route;

    CMPath path;
    bool added = false;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.path, self.added);
    }
};

/// Host to process: what plays now.
struct PlayerMessage {
    static constexpr MessageKind Kind = MessageKind::Player;

    QVariantHash data;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.data);
    }
};

/// Host to process: end.
struct StopMessage {
    static constexpr MessageKind Kind = MessageKind::Stop;

    template <class Self, class Visitor>
    static void fields(Self &, Visitor &)
    {
    }
};

/// The response to the request of that id is not needed any more; one is sent all the same.
struct CancelMessage {
    static constexpr MessageKind Kind = MessageKind::Cancel;

    quint64 id = 0;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.id);
    }
};

/// Process to host: the plug-in waits for its service, within the time that this may take, and does
/// not hang.
struct AliveMessage {
    static constexpr MessageKind Kind = MessageKind::Alive;

    template <class Self, class Visitor>
    static void fields(Self &, Visitor &)
    {
    }
};

/// Process to host: the plug-in has read a setting and keeps the value for as long as it lives; or
/// it is subscribed to the setting after all.
struct KeptMessage {
    static constexpr MessageKind Kind = MessageKind::Kept;

    CMPath setting;
    QVariantHash value;
    bool keeps = false;

    template <class Self, class Visitor>
    static void fields(Self &self, Visitor &visit)
    {
        visit(self.setting, self.value, self.keeps);
    }
};

/// The payload of a frame.
template <class Message>
QByteArray encode(const Message &message);
/// The kind of a payload; none of MessageKind's when there is no byte at all.
MessageKind kindOf(const QByteArray &payload);
/// The message of a payload of its kind; nothing when it cannot be decoded, or not to its end.
template <class Message>
std::optional<Message> decode(const QByteArray &payload);
