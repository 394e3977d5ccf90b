// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/tunein/VeskTuneInFaultCode.h"
#include "api/tunein/VeskTuneInResponse.h"
#include "api/values/CMError.h"
#include "api/values/VeskTuneInAccount.h"
#include "api/web/VeskUrl.h"

class CMTuneInWorker;

/// One exchange with TuneIn's web API: network check, GET or POST, parsing, judging the answer.
/// Made on the stack for each exchange and used on the caller's thread, which it blocks. Adds
/// nothing to the URL.
class TuneInRequest {
public:
    enum RequestType { Get = 0, Post = 1 };

    explicit TuneInRequest(CMTuneInWorker *tiWorker);
    virtual ~TuneInRequest();

    /// Success returns an empty error and replaces \a response. Failure leaves \a response as it
    /// was: a network that is down sends nothing; an exchange that fails reads as an empty body.
    virtual CMError request(
        const VeskUrl &url, TuneInRequest::RequestType type, VeskTuneInResponse &response);
    /// Reads and judges a body. Only a head with the status "200" is success.
    CMError parseData(const QByteArray &data, VeskTuneInResponse &response);

    /// The error for the user when a head's status is not "200". Its name is the default name, ":"
    /// and the fault code's number.
    static CMError tuneInErrorToCMError(const QString &faultCode, const QString &status,
        VeskTuneInAccountOperation::Enum operation);
    /// The same outside account operations.
    static CMError tuneInErrorToCMError(const QString &faultCode, const QString &status);
    /// The code of the web API's dotted \a faultCode; none when it is empty or unknown.
    static VeskTuneInFaultCode::Enum parseTuneInFaultCode(const QString &faultCode);

private:
    void readAccountOperation(const VeskUrl &url);

    CMTuneInWorker *m_tiWorker;
    VeskTuneInAccountOperation::Enum m_accountOperation = VeskTuneInAccountOperation::none;
};
