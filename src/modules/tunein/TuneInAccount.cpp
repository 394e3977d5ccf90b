// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInAccount.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskValue.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInRequest.h"
#include "modules/tunein/cb_tunein.h"

#include <QMutexLocker>

VESK_LOGGER("CB_TuneIn")

namespace {

const char ConstructorSignature[]
    = "TuneInAccountNode::TuneInAccountNode(CMTuneInWorker*, const CMPath&)";

bool isError(const CMError &error)
{
    return !error.value(CMError::Name()).toString().isEmpty();
}

bool isSuccess(const VeskTuneInHead &head)
{
    return head.status() == QLatin1String("200");
}

void addOptional(VeskUrl &url, const QString &key, const QString &value)
{
    if (!value.isEmpty())
        url.addQueryItem(key, value);
}

void addCredentials(VeskUrl &url, const VeskTuneInAccount &account)
{
    url.addQueryItem(QStringLiteral("username"), account.userName());
    url.addQueryItem(QStringLiteral("password"), account.password());
}

void addSerial(VeskUrl &url, const TuneInSettings &settings)
{
    url.addQueryItem(QStringLiteral("serial"), settings.serial());
}

void addPlace(VeskUrl &url, const VeskTuneInAccount &account)
{
    if (!account.postalCode().isEmpty()) {
        url.addQueryItem(QStringLiteral("postalCode"), account.postalCode());
        return;
    }
    url.addQueryItem(QStringLiteral("city"), account.city());
    url.addQueryItem(QStringLiteral("countryId"), account.countryId());
}

/// Adds what the account's operation sends after "c"; false when there is no such operation.
bool addOperationItems(
    VeskUrl &url, const VeskTuneInAccount &account, const TuneInSettings &settings)
{
    switch (account.operation()) {
    case VeskTuneInAccountOperation::auth:
        addCredentials(url, account);
        return true;
    case VeskTuneInAccountOperation::create:
        addCredentials(url, account);
        url.addQueryItem(QStringLiteral("email"), account.email());
        addPlace(url, account);
        return true;
    case VeskTuneInAccountOperation::join:
    case VeskTuneInAccountOperation::drop:
        addCredentials(url, account);
        addSerial(url, settings);
        return true;
    case VeskTuneInAccountOperation::query:
    case VeskTuneInAccountOperation::claim:
        addSerial(url, settings);
        return true;
    case VeskTuneInAccountOperation::remind:
        url.addQueryItem(QStringLiteral("email"), account.email());
        return true;
    case VeskTuneInAccountOperation::reset:
        addOptional(url, QStringLiteral("username"), account.userName());
        addOptional(url, QStringLiteral("email"), account.email());
        return true;
    case VeskTuneInAccountOperation::none:
        break;
    }
    return false;
}

VeskTuneInAccount resultOf(VeskTuneInAccountOperation::Enum operation)
{
    VeskTuneInAccount account;
    account.setOperation(operation);
    return account;
}

void setAccount(const CMReply<QVariant> &reply, const VeskTuneInAccount &account)
{
    VeskValue value;
    value.setTuneInAccount(account);
    reply.setValue(value);
}

void logFailure(VeskTuneInAccountOperation::Enum operation, const VeskTuneInHead &head)
{
    VESK_DEBUG("Setting TuneIn Account: method: '"
        << VeskTuneInAccountOperation::toString(operation) << "' failed, fault: '" << head.fault()
        << "', code: '" << head.faultCode() << "'");
}

/// Maps the fault without the operation: only for join is a 403 a failed login.
void setFault(const CMReply<QVariant> &reply, VeskTuneInAccountOperation::Enum operation,
    const VeskTuneInHead &head)
{
    reply.setError(TuneInRequest::tuneInErrorToCMError(head.faultCode(), head.status()));
    logFailure(operation, head);
}

/// The result of an operation whose answer carries only success or failure.
void setOutcome(const CMReply<QVariant> &reply, VeskTuneInAccountOperation::Enum operation,
    const VeskTuneInHead &head)
{
    if (isSuccess(head)) {
        setAccount(reply, resultOf(operation));
        return;
    }
    reply.setError(TuneInRequest::tuneInErrorToCMError(head.faultCode(), head.status(), operation));
    logFailure(operation, head);
}

/// Waits for the reply, only to log it.
void traceReply(const CMReplyData<QVariant> *reply)
{
    if (!reply || !veskLogger().isEnabledFor(log4cplus::TRACE_LOG_LEVEL))
        return;
    reply->waitForFinished(ULONG_MAX);
    VESK_TRACE("TuneInAccountNode::setDataRequest: reply: value: '"
        << reply->value() << "', error: '" << reply->error() << "'");
}

/// Sets \a outline to the answer's element; false unless it has exactly one, and an outline.
bool takeOutline(const VeskTuneInResponse &response, VeskTuneInBodyElement &outline)
{
    const VeskList<VeskTuneInBodyElement> body = response.body();
    if (body.size() != 1 || body.first().element() != QLatin1String("outline"))
        return false;
    outline = body.first();
    VESK_ASSERT(outline.element() == QLatin1String("outline"));
    return true;
}

} // namespace

TuneInAccountNode *TuneInAccountNode::create(CMTuneInWorker *tiWorker, const CMPath &path)
{
    VESK_ASSERT(tiWorker);
    auto *node = new TuneInAccountNode(tiWorker, path);
    node->setNodes(tiWorker->nodes());
    return node;
}

TuneInAccountNode::TuneInAccountNode(CMTuneInWorker *tiWorker, const CMPath &path)
    : CMNode(path)
    , m_tiWorker(tiWorker)
    , m_settings(&tiWorker->settings())
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(ConstructorSignature, "CB_TuneIn") << path);
}

TuneInAccountNode::~TuneInAccountNode() = default;

CMError TuneInAccountNode::prepareUrl(const VeskTuneInAccount &account, VeskUrl &url)
{
    if (account.userName().isEmpty() != account.password().isEmpty())
        return TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Invalid password or user name."));

    const QString operation = VeskTuneInAccountOperation::toString(account.operation());
    VeskUrl call = TuneInApi::secureUrl(QStringLiteral("/Account.ashx"));
    call.addQueryItem(QStringLiteral("render"), QStringLiteral("json"));
    addOptional(call, QStringLiteral("partnerId"), m_settings->partnerId());
    call.addQueryItem(QStringLiteral("c"), operation);
    if (!addOperationItems(call, account, *m_settings)) {
        VESK_ERROR("prepareUrl: unknown method '" << operation << "'");
        return TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Unknown method"));
    }
    url = call;
    return CMError();
}

bool TuneInAccountNode::getDataRequest(const CMGetDataRequest &request)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_TRACE("Enter TuneInAccountNode::getDataRequest:");
    QMutexLocker lock(mutex());
    if (!request.path().equals(path(), CMPath::IgnoreParams))
        return false;
    QVariantList values;
    for (const QString &role : request.roles()) {
        if (role == VeskRoles::Type())
            values.append(VeskRolesType::Value());
        else if (role == VeskRoles::Value())
            values.append(queryAccount(request));
        else
            values.append(QVariant());
    }
    // A failed query has already completed the reply with its error; then this has no effect.
    request.reply().setValue(values);
    return true;
}

/// The value for one role; null once the request's reply holds the error.
QVariant TuneInAccountNode::queryAccount(const CMGetDataRequest &request)
{
    const VeskTuneInAccountOperation::Enum operation = VeskTuneInAccountOperation::query;
    const CMVoidReply requestReply(request.replyData());
    VeskUrl url;
    CMError error = prepareUrl(resultOf(operation), url);
    if (isError(error)) {
        VESK_ERROR("TuneInAccountNode::getDataRequest: Failed to create query!");
        requestReply.setError(error);
        return QVariant();
    }
    VeskTuneInResponse response;
    error = TuneInRequest(m_tiWorker).request(url, TuneInRequest::Post, response);
    if (isError(error)) {
        requestReply.setError(error);
        return QVariant();
    }

    const auto data = std::make_shared<CMReplyData<QVariant>>();
    const CMReply<QVariant> reply(data);
    processResponse(response, operation, reply);
    if (isError(reply.error())) {
        requestReply.setError(reply.error());
        return QVariant();
    }
    data->waitForFinished(ULONG_MAX);
    const VeskValue value(data->value().toHash());
    VESK_DEBUG(value);
    VESK_ASSERT(value.type() == VeskValueType::tuneInAccount);
    VeskValue result;
    result.setTuneInAccount(value.tuneInAccount());
    return result;
}

bool TuneInAccountNode::setDataRequest(const CMSetDataRequest &request)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_TRACE("Enter TuneInAccountNode::setDataRequest:");
    if (request.role() != VeskRoles::Value()) {
        VESK_ERROR("TuneInAccountNode::setDataRequest: role is not for TuneInAccount");
        return CMNode::setDataRequest(request);
    }
    const CMVoidReply reply(request.replyData());
    const VeskValue value(request.value().toHash());
    if (value.type() != VeskValueType::tuneInAccount) {
        reply.setError(TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Invalid value type.")));
        return true;
    }
    const VeskTuneInAccount account = value.tuneInAccount();
    VESK_TRACE("TuneInAccountNode::setDataRequest: value: '" << account << "'");

    VeskUrl url;
    CMError error = prepareUrl(account, url);
    if (isError(error)) {
        VESK_ERROR("TuneInAccountNode::setDataRequest: Failed to create query!");
        reply.setError(error);
        return true;
    }
    VeskTuneInResponse response;
    error = TuneInRequest(m_tiWorker).request(url, TuneInRequest::Post, response);
    if (isError(error)) {
        reply.setError(error);
        return true;
    }
    processResponse(response, account.operation(), request.reply());
    traceReply(request.replyData());
    return true;
}

void TuneInAccountNode::processResponse(const VeskTuneInResponse &response,
    const VeskTuneInAccountOperation::Enum &operation, CMReply<QVariant> reply)
{
    VESK_TRACE("Enter TuneInAccountNode::processResponse: accountOperation: "
        << VeskTuneInAccountOperation::toString(operation));
    switch (operation) {
    case VeskTuneInAccountOperation::auth:
        processResponseAuthenticate(response, reply);
        break;
    case VeskTuneInAccountOperation::query:
        processResponseQuery(response, reply);
        break;
    case VeskTuneInAccountOperation::claim:
        processResponseClaim(response, reply);
        break;
    case VeskTuneInAccountOperation::create:
    case VeskTuneInAccountOperation::join:
    case VeskTuneInAccountOperation::drop:
    case VeskTuneInAccountOperation::remind:
    case VeskTuneInAccountOperation::reset:
        setOutcome(reply, operation, response.head());
        break;
    default:
        VESK_ASSERT(0);
    }
}

void TuneInAccountNode::processResponseAuthenticate(
    const VeskTuneInResponse &response, CMReply<QVariant> reply)
{
    VESK_TRACE("Enter TuneInAccountNode::processResponseAuthenticate: response: " << response);
    const VeskTuneInHead head = response.head();
    if (!isSuccess(head)) {
        setFault(reply, VeskTuneInAccountOperation::auth, head);
        return;
    }
    const VeskList<VeskTuneInBodyElement> body = response.body();
    if (body.size() != 1) {
        reply.setError(TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Invalid response!")));
        return;
    }
    const VeskTuneInBodyElement element = body.first();
    VeskTuneInAccount account = resultOf(VeskTuneInAccountOperation::auth);
    account.setAccountId(element.accountId());
    account.setUserName(element.userName());
    account.setSessionId(element.sessionId());
    account.setFirstName(element.firstName());
    account.setLastName(element.lastName());
    account.setEmail(element.email());
    VESK_DEBUG("Query 'auth': account: id: '"
        << account.accountId() << "', user name: '" << account.userName() << "', first name: '"
        << account.firstName() << "', last name: '" << account.lastName() << "', email: '"
        << account.email() << "'");
    setAccount(reply, account);
}

void TuneInAccountNode::processResponseQuery(
    const VeskTuneInResponse &response, CMReply<QVariant> reply)
{
    VESK_TRACE("Enter TuneInAccountNode::processResponseQuery: response: " << response);
    const VeskTuneInHead head = response.head();
    VeskTuneInAccount account = resultOf(VeskTuneInAccountOperation::query);
    if (isSuccess(head)) {
        VeskTuneInBodyElement outline;
        if (!takeOutline(response, outline)) {
            reply.setError(TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Invalid response!")));
            return;
        }
        account.setUserName(outline.text());
        VESK_DEBUG("Query 'account': associated account '" << account.userName() << "'.");
        setAccount(reply, account);
    } else if (head.faultCode() == QLatin1String("validation.deviceNotAssociated")) {
        VESK_DEBUG("Query 'account': no user associated.");
        account.setUserName(QString());
        setAccount(reply, account);
    } else {
        setFault(reply, VeskTuneInAccountOperation::query, head);
    }
}

void TuneInAccountNode::processResponseClaim(
    const VeskTuneInResponse &response, CMReply<QVariant> reply)
{
    VESK_TRACE("Enter TuneInAccountNode::processResponseClaim: response: " << response);
    const VeskTuneInHead head = response.head();
    if (!isSuccess(head)) {
        setFault(reply, VeskTuneInAccountOperation::claim, head);
        return;
    }
    VeskTuneInBodyElement outline;
    if (!takeOutline(response, outline)) {
        reply.setError(TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Invalid response.")));
        return;
    }
    VeskTuneInAccount account = resultOf(VeskTuneInAccountOperation::claim);
    account.setClaimMessage(outline.text());
    account.setClaimKey(outline.key());
    VESK_DEBUG("Query 'claim': message '" << account.claimMessage() << "', key: '"
                                          << account.claimKey() << "'");
    setAccount(reply, account);
}
