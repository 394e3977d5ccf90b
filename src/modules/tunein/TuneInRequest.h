// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/tunein/VeskTuneInFaultCode.h"
#include "api/tunein/VeskTuneInResponse.h"
#include "api/values/CMError.h"
#include "api/values/VeskTuneInAccount.h"
#include "api/web/VeskUrl.h"

class CMTuneInWorker;

/// One exchange with TuneIn's web API: checks the network, sends a GET or POST, parses the answer
/// and checks its status. Created on the stack for each exchange and used on the caller's thread,
/// which it blocks. Sends the URL as it is.
class TuneInRequest {
public:
    enum RequestType { Get = 0, Post = 1 };

    explicit TuneInRequest(CMTuneInWorker *tiWorker);
    virtual ~TuneInRequest();

    /// Success returns an empty error and replaces \a response. Failure leaves \a response as it
    /// was. While the network is down nothing is sent; an exchange that fails is reported as an
    /// empty body.
    virtual CMError request(
        const VeskUrl &url, TuneInRequest::RequestType type, VeskTuneInResponse &response);
    /// Parses a body and checks its status: only "200" in the head is success.
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
