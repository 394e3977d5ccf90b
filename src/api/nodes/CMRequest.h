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

/// What a request ends with when nothing is at its path.
VESK_API CMError CMNoNodeError();

/// One question to the node at a path, with the place for its answer. A value: copies share the
/// answer, nothing in it points into a worker. The typed requests below add what each kind asks.
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

    /// How often it was redirected before it came here.
    int hops() const { return d ? d->hops : 0; }
    /// The same question, redirected \a hops times so far: for one that was sent on in another
    /// form.
    CMRequest withHops(int hops) const;
    /// Whether it is asked again and again until the answer is another one. That it fails is then
    /// expected: errors that a plug-in logs while it answers are in the log at DEBUG.
    bool isPoll() const { return d && d->poll; }
    /// The same question, as one of such a series.
    CMRequest asPoll() const;
    /// The same question to another path, with the same place for the answer. An empty request, the
    /// question answered with an error, when it was redirected too often.
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
    /// A question about other \a roles to another \a path, asked in order to answer this one;
    /// counts as a redirect of it. An empty request, \a reply ended with an error, when there were
    /// too many.
    CMRequest redirectedTo(
        const CMPath &path, const QStringList &roles, const CMReply<QVariant> &reply) const;
    using CMRequest::redirectedTo;
};

/// Writes one role of a node: a value, an activation, a step before playing. The answer's value is
/// what the node makes of it, often null.
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

/// Asks which row of a screen has the given \a value for \a role. The answer's value is the row's
/// index, -1 when there is none.
class VESK_API CMMatchRowRequest : public CMRequest {
public:
    CMMatchRowRequest(const CMPath &path, const QString &role, const QVariant &value,
        const CMReply<QVariant> &reply);
    explicit CMMatchRowRequest(const CMRequest &request);

    const QString &role() const { return d->role; }
    const QVariant &value() const { return d->value; }
};

Q_DECLARE_METATYPE(CMSetDataRequest)
