// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInRequest.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/web/CMErrorHelper.h"
#include "api/web/VeskJson.h"
#include "modules/tunein/TuneInApi.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "modules/tunein/cb_tunein.h"

VESK_LOGGER("CB_TuneIn")

namespace {

const char ParseFaultSignature[] = "static VeskTuneInFaultCode::Enum "
                                   "TuneInRequest::parseTuneInFaultCode(const QString&)";
const char MapFaultSignature[]
    = "static CMError TuneInRequest::tuneInErrorToCMError(const QString&, const QString&, "
      "VeskTuneInAccountOperation::Enum)";

/// The message for a fault code that has one of its own, null for all others.
const char *faultMessage(VeskTuneInFaultCode::Enum code)
{
    switch (code) {
    case VeskTuneInFaultCode::validation_email:
        return QT_TRANSLATE_NOOP(
            "TuneIn", "The given email address is of invalid form (empty or incorrect).");
    case VeskTuneInFaultCode::validation_password:
        return QT_TRANSLATE_NOOP(
            "TuneIn", "The given password is of invalid form (empty or incorrect).");
    case VeskTuneInFaultCode::validation_location:
        return QT_TRANSLATE_NOOP(
            "TuneIn", "The given postalCode or city/country combination is invalid.");
    case VeskTuneInFaultCode::validation_userNameExists:
        return QT_TRANSLATE_NOOP("TuneIn", "The requested account name is already taken.");
    case VeskTuneInFaultCode::validation_emailExists:
        return QT_TRANSLATE_NOOP("TuneIn", "The requested email is already registered.");
    case VeskTuneInFaultCode::validation_error:
        return QT_TRANSLATE_NOOP("TuneIn", "A validation error occurred.");
    case VeskTuneInFaultCode::validation_deviceNotAssociated:
        return QT_TRANSLATE_NOOP("TuneIn", "No associated account");
    case VeskTuneInFaultCode::validation_deviceExists:
        return QT_TRANSLATE_NOOP("TuneIn", "Account already associated.");
    case VeskTuneInFaultCode::none:
        break;
    }
    return nullptr;
}

/// The message for a fault code without one of its own. The API refuses a login, a partner id or an
/// exceeded quota by a bare 403; any other status says nothing to a user.
const char *statusMessage(
    const QString &faultCode, const QString &status, VeskTuneInAccountOperation::Enum operation)
{
    if (faultCode.isEmpty() && status == QLatin1String("403")) {
        if (operation == VeskTuneInAccountOperation::join)
            return QT_TRANSLATE_NOOP(
                "TuneIn", "Login failed. Please enter a valid username and password.");
        return QT_TRANSLATE_NOOP("TuneIn", "Access forbidden.");
    }
    VESK_ERROR(
        "tuneInErrorToCMError: fault code: '" << faultCode << "', http status: '" << status << "'");
    return QT_TRANSLATE_NOOP("TuneIn", "TuneIn request failed.");
}

} // namespace

TuneInRequest::TuneInRequest(CMTuneInWorker *tiWorker)
    : m_tiWorker(tiWorker)
{
    VESK_ASSERT_TEXT(tiWorker, "tiWorker != NULL");
}

TuneInRequest::~TuneInRequest() = default;

CMError TuneInRequest::request(
    const VeskUrl &url, TuneInRequest::RequestType type, VeskTuneInResponse &response)
{
    VESK_TRACE("Enter TuneInRequest::request:");
    if (!m_tiWorker->networkStateConnected()) {
        VESK_ERROR("Network is down!");
        return CMErrorHelper::create(CURLE_COULDNT_CONNECT, url, QStringLiteral("TuneIn"));
    }
    readAccountOperation(url);

    const CMError error;
    QByteArray data;
    // The client's error is ignored: after a failed exchange the body is empty, and the user is
    // told that.
    switch (type) {
    case Get:
        m_tiWorker->httpClient()->get(url, &data);
        break;
    case Post:
        m_tiWorker->httpClient()->post(url, &data);
        break;
    default:
        VESK_ASSERT(0);
    }
    if (error.value(CMError::Name()).toString().isEmpty())
        return parseData(data, response);
    return error;
}

void TuneInRequest::readAccountOperation(const VeskUrl &url)
{
    m_accountOperation = VeskTuneInAccountOperation::none;
    if (!url.path().endsWith(QLatin1String("Account.ashx")))
        return;
    const QString operation = url.queryItemValue(QStringLiteral("c"));
    if (operation.isEmpty()) {
        VESK_WARN("Unknown account operation.");
        return;
    }
    m_accountOperation = VeskTuneInAccountOperation::fromString(operation);
    VESK_TRACE("Account operation: " << VeskTuneInAccountOperation::toString(m_accountOperation));
}

CMError TuneInRequest::parseData(const QByteArray &data, VeskTuneInResponse &response)
{
    VESK_DEBUG("parsing data: size: " << data.size());
    if (data.isEmpty()) {
        VESK_ERROR("TuneInRequest::parseData: Received empty data!");
        return TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Invalid data received."));
    }
    VeskError parseError;
    const VeskTuneInResponse parsed(VeskJson::parse(data, parseError).toHash());
    if (!parseError.isEmpty()) {
        VESK_ERROR("Failed to parse data, error: " << parseError);
        return TuneInApi::error(QT_TRANSLATE_NOOP("TuneIn", "Invalid data returned."));
    }
    VESK_DEBUG("Data successfully parsed.");

    // The API answers its own faults with HTTP status 200; the real one is in the head.
    const VeskTuneInHead head = parsed.head();
    if (head.status() == QLatin1String("200")) {
        response = parsed;
        return CMError();
    }
    VESK_ERROR("TuneIn request failed: code: " << head.faultCode() << ", message: '" << head.fault()
                                               << "'");
    const CMError error = tuneInErrorToCMError(head.faultCode(), head.status(), m_accountOperation);
    VESK_DEBUG("TuneInRequest::parseData: error: " << error);
    return error;
}

CMError TuneInRequest::tuneInErrorToCMError(const QString &faultCode, const QString &status)
{
    return tuneInErrorToCMError(faultCode, status, VeskTuneInAccountOperation::none);
}

CMError TuneInRequest::tuneInErrorToCMError(
    const QString &faultCode, const QString &status, VeskTuneInAccountOperation::Enum operation)
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(MapFaultSignature, "CB_TuneIn") << ": faultCode: '"
                        << faultCode << "', faultCode: '" << status << "', accoutOperation: "
                        << VeskTuneInAccountOperation::toString(operation));
    const VeskTuneInFaultCode::Enum code = parseTuneInFaultCode(faultCode);
    VESK_TRACE("Enter " << dbglog_scopedFunction(MapFaultSignature, "CB_TuneIn")
                        << ": VeskTuneInFaultCode: '" << static_cast<int>(code) << "'");
    const QString name = CMError::DefaultName() + QLatin1Char(':') + QString::number(code);
    const char *message = faultMessage(code);
    if (!message)
        message = statusMessage(faultCode, status, operation);
    CMError error = TuneInApi::error(message);
    error.insert(CMError::Name(), name);
    return error;
}

VeskTuneInFaultCode::Enum TuneInRequest::parseTuneInFaultCode(const QString &faultCode)
{
    VESK_TRACE("Enter " << dbglog_scopedFunction(ParseFaultSignature, "CB_TuneIn")
                        << ": faultCode: '" << faultCode << "'");
    if (faultCode.isEmpty())
        return VeskTuneInFaultCode::none;
    QString name = faultCode;
    name.replace(QLatin1Char('.'), QLatin1Char('_'));
    return VeskTuneInFaultCode::fromString(name);
}
