// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/nodes/CMReply.h"
#include "api/values/CMPath.h"

#include <QMetaType>
#include <QSharedData>
#include <QStringList>
#include <QVariant>

#include <functional>

/// The error of a request to a path that no node serves.
VESK_API CMError CMNoNodeError();

/// A request to the node at a path, with the reply for its answer. A value: copies share the reply,
/// nothing in it points into a worker. The typed requests below add what each kind asks.
class VESK_API CMRequest {
public:
    enum Kind { None, GetRows, GetData, SetData, MatchRow };
    /// More redirects than this end a request with an error.
    static constexpr int MaxHops = 8;

    CMRequest() = default;

    Kind kind() const { return d ? d->kind : None; }
    const CMPath &path() const;
    /// Null when no answer is wanted.
    CMReply<QVariant> reply() const { return d ? d->reply : CMReply<QVariant>(); }
    CMReplyData<QVariant> *replyData() const { return reply().data(); }

    /// Whether it changes nothing where it is answered.
    bool onlyReads() const { return kind() == GetRows || kind() == GetData || kind() == MatchRow; }
    /// Whether its caller has cancelled it, so that the answer is of no use any more and the work
    /// on it can be left. Always false for a request that does not only read, which is carried out
    /// all the same. Any thread.
    bool isCancelled() const;
    /// Calls \a function when its caller cancels it, through the event loop of \a context's
    /// thread, unless \a context is destroyed or the request answered before. For a request that
    /// was cancelled already it is called, too; for one that does not only read it never is. A
    /// handler that blocks its event loop has to ask isCancelled(). \a context must be alive during
    /// this call and stay on its thread.
    void whenCancelled(QObject *context, std::function<void()> function) const;

    /// How often it was redirected so far.
    int hops() const { return d ? d->hops : 0; }
    /// The same request with \a hops redirects so far, for one that crossed a process boundary.
    CMRequest withHops(int hops) const;
    /// Whether it is repeated until the answer changes. That it fails is then expected: errors that
    /// a plug-in logs while it answers are logged at DEBUG.
    bool isPoll() const { return d && d->poll; }
    /// The same request as a poll.
    CMRequest asPoll() const;
    /// The same request to another path, with the same reply. After too many redirects an empty
    /// request, and the reply ends with an error.
    CMRequest redirectedTo(const CMPath &path) const;

protected:
    struct Data : QSharedData {
        Kind kind = None;
        CMPath path;
        CMReply<QVariant> reply;
        QStringList roles; ///< GetRows, GetData
        int first = 0; ///< GetRows
        int last = 0; ///< GetRows
        QString role; ///< SetData, MatchRow
        QVariant value; ///< SetData, MatchRow
        int hops = 0;
        bool poll = false;
    };

    CMRequest(Kind kind, const CMPath &path, const CMReply<QVariant> &reply);
    /// Whether one more redirect is allowed.
    bool mayRedirect() const;
    /// \a request, which must be of \a kind.
    CMRequest(Kind kind, const CMRequest &request);

    QExplicitlySharedDataPointer<Data> d;
};

/// Asks for rows \a first to \a last (both counted from 0, inclusive) of a screen, each with the
/// values of \a roles. The answer's value is a VeskRowsRoles.
class VESK_API CMGetRowsRequest : public CMRequest {
public:
    CMGetRowsRequest(const CMPath &path, const QStringList &roles, int first, int last,
        const CMReply<QVariant> &reply);
    explicit CMGetRowsRequest(const CMRequest &request);

    const QStringList &roles() const { return d->roles; }
    int first() const { return d->first; }
    int last() const { return d->last; }
};

/// Asks for the values of \a roles of one node. The answer's value is a QVariantList in their
/// order.
class VESK_API CMGetDataRequest : public CMRequest {
public:
    CMGetDataRequest(const CMPath &path, const QStringList &roles, const CMReply<QVariant> &reply);
    explicit CMGetDataRequest(const CMRequest &request);

    const QStringList &roles() const { return d->roles; }
    /// A request for other \a roles of another \a path, made in order to answer this one; counts as
    /// a redirect of it. After too many an empty request, and \a reply ends with an error.
    CMRequest redirectedTo(
        const CMPath &path, const QStringList &roles, const CMReply<QVariant> &reply) const;
    using CMRequest::redirectedTo;
};

/// Writes one role of a node: a value, an activation, a step before playing. The answer's value
/// depends on the node and is often null.
class VESK_API CMSetDataRequest : public CMRequest {
public:
    /// For the meta-type system only.
    CMSetDataRequest() = default;
    CMSetDataRequest(const CMPath &path, const QString &role, const QVariant &value,
        const CMReply<QVariant> &reply);
    explicit CMSetDataRequest(const CMRequest &request);

    const QString &role() const { return d->role; }
    const QVariant &value() const { return d->value; }
};

/// Asks which row of a screen has a given value for a role. The answer's value is the row's index,
/// -1 when there is none.
class VESK_API CMMatchRowRequest : public CMRequest {
public:
    CMMatchRowRequest(const CMPath &path, const QString &role, const QVariant &value,
        const CMReply<QVariant> &reply);
    explicit CMMatchRowRequest(const CMRequest &request);

    const QString &role() const { return d->role; }
    const QVariant &value() const { return d->value; }
};

/// Calls the function of \a handler, a node or a worker, that is for requests of \a request's kind.
/// False for an empty request.
template <class Handler>
bool CMCallHandler(Handler &handler, const CMRequest &request)
{
    switch (request.kind()) {
    case CMRequest::GetData:
        return handler.getDataRequest(CMGetDataRequest(request));
    case CMRequest::GetRows:
        return handler.getRowsRequest(CMGetRowsRequest(request));
    case CMRequest::MatchRow:
        return handler.matchRowRequest(CMMatchRowRequest(request));
    case CMRequest::SetData:
        return handler.setDataRequest(CMSetDataRequest(request));
    case CMRequest::None:
        break;
    }
    return false;
}

Q_DECLARE_METATYPE(CMSetDataRequest)
