// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRequest.h"

#include "api/core/vesk.h"
#include "api/nodes/CMContextCall.h"

namespace {

CMError redirectedTooOftenError()
{
    return CMError(TrString("CMRequest", "The request was redirected too often."));
}

} // namespace

CMError CMNoNodeError()
{
    CMError error(TrString("CMRequest", "There is nothing at this address."));
    error.insert(CMError::Name(), CMError::NoNodeName());
    return error;
}

CMRequest::CMRequest(Kind kind, const CMPath &path, const CMReply<QVariant> &reply)
    : d(new Data)
{
    d->kind = kind;
    d->path = path;
    d->reply = reply;
}

CMRequest::CMRequest(Kind kind, const CMRequest &request)
    : d(request.d)
{
    VESK_ASSERT(request.kind() == kind);
}

const CMPath &CMRequest::path() const
{
    static const CMPath empty;
    return d ? d->path : empty;
}

bool CMRequest::isCancelled() const
{
    return onlyReads() && reply().error() == CMCancelledError();
}

void CMRequest::whenCancelled(QObject *context, std::function<void()> function) const
{
    const std::shared_ptr<CMReplyAbstractData> data = reply().sharedData();
    if (!data || !onlyReads())
        return;
    const auto call = CMContextCall::create(context, CMContextCall::Once, std::move(function));
    // The reply owns this function, so the function must not own the reply.
    data->whenFinished([call, weak = std::weak_ptr<CMReplyAbstractData>(data)] {
        const auto finished = weak.lock();
        if (finished && finished->error() == CMCancelledError())
            call->trigger();
        else
            call->close();
    });
}

bool CMRequest::mayRedirect() const
{
    return d && d->hops < MaxHops;
}

CMRequest CMRequest::withHops(int hops) const
{
    VESK_ASSERT(d && hops >= 0);
    CMRequest request;
    request.d = new Data(*d);
    request.d->hops = hops;
    return request;
}

CMRequest CMRequest::asPoll() const
{
    VESK_ASSERT(d);
    CMRequest request;
    request.d = new Data(*d);
    request.d->poll = true;
    return request;
}

CMRequest CMRequest::redirectedTo(const CMPath &path) const
{
    if (!mayRedirect()) {
        reply().setError(redirectedTooOftenError());
        return CMRequest();
    }
    CMRequest redirected;
    redirected.d = new Data(*d);
    redirected.d->path = path;
    ++redirected.d->hops;
    return redirected;
}

CMGetRowsRequest::CMGetRowsRequest(const CMPath &path, const QStringList &roles, int first,
    int last, const CMReply<QVariant> &reply)
    : CMRequest(GetRows, path, reply)
{
    d->roles = roles;
    d->first = first;
    d->last = last;
}

CMGetRowsRequest::CMGetRowsRequest(const CMRequest &request)
    : CMRequest(GetRows, request)
{
}

CMGetDataRequest::CMGetDataRequest(
    const CMPath &path, const QStringList &roles, const CMReply<QVariant> &reply)
    : CMRequest(GetData, path, reply)
{
    d->roles = roles;
}

CMGetDataRequest::CMGetDataRequest(const CMRequest &request)
    : CMRequest(GetData, request)
{
}

CMRequest CMGetDataRequest::redirectedTo(
    const CMPath &path, const QStringList &roles, const CMReply<QVariant> &reply) const
{
    if (!mayRedirect()) {
        reply.setError(redirectedTooOftenError());
        return CMRequest();
    }
    CMGetDataRequest redirected(path, roles, reply);
    redirected.d->hops = d->hops + 1;
    redirected.d->poll = d->poll;
    return redirected;
}

CMSetDataRequest::CMSetDataRequest(
    const CMPath &path, const QString &role, const QVariant &value, const CMReply<QVariant> &reply)
    : CMRequest(SetData, path, reply)
{
    d->role = role;
    d->value = value;
}

CMSetDataRequest::CMSetDataRequest(const CMRequest &request)
    : CMRequest(SetData, request)
{
}

CMMatchRowRequest::CMMatchRowRequest(
    const CMPath &path, const QString &role, const QVariant &value, const CMReply<QVariant> &reply)
    : CMRequest(MatchRow, path, reply)
{
    d->role = role;
    d->value = value;
}

CMMatchRowRequest::CMMatchRowRequest(const CMRequest &request)
    : CMRequest(MatchRow, request)
{
}
