// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskTuneInAccount.h"
#include "modules/tunein/TuneInAccount.h"
#include "tests/modules/tunein/TuneInFixture.h"
#include "tests/support/TestAuthority.h"

/// The plug-in with a second server, over TLS, for its account calls, which answerAccount() sets
/// the answers of. The plain server must not receive any.
class TuneInAccountFixture : public TuneInFixture {
protected:
    TuneInAccountFixture();
    ~TuneInAccountFixture() override;

    ScriptedServer &accountServer() { return *m_accountServer; }
    /// Account calls go to a server with a certificate for \a host that is valid in the time of \a
    /// validity, issued by the authority that the plug-in's host trusts, or by another one.
    void openAccountServer(const char *host = "opml.radiotime.com",
        TestAuthority::Validity validity = TestAuthority::Now, bool trusted = true);
    void closeAccountServer();
    void answerAccount(const QByteArray &body);
    void answerAccount(const ScriptedServer::Response &response);
    /// Expects exactly these requests since the last call, none of them over plain HTTP, and all
    /// without a body.
    void expectAccountRequests(const QList<QByteArray> &lines);

    /// Sent through the host's root, as a host does.
    static Answer read(const QStringList &roles = {VeskRoles::Value()});
    static Answer write(const VeskTuneInAccount &account);

    TuneInAccountNode *node() const;
    /// What processResponse() makes of \a answer, called on the worker's thread.
    Answer process(VeskTuneInAccountOperation::Enum operation, const QByteArray &answer);

private:
    TestAuthority m_authority {"Trusted Authority"};
    TestAuthority m_otherAuthority {"Other Authority"};
    std::unique_ptr<ScriptedServer> m_accountServer;
    ScriptedServer::Response m_response;
};

/// The eight operations, in the order of their codes.
extern const QList<VeskTuneInAccountOperation::Enum> AllOperations;

/// An account that asks for \a operation, with every input filled in.
VeskTuneInAccount filledAccount(VeskTuneInAccountOperation::Enum operation);
/// The account in an answer's value.
VeskTuneInAccount accountOf(const Answer &answer);
/// The account in the first of an answer's values.
VeskTuneInAccount firstAccountOf(const Answer &answer);
/// A whole answer of the web API with a fault.
QByteArray fault(const char *status, const char *faultCode = "", const char *text = "");

/// TuneIn's answer to a successful change.
extern const QByteArray Done;
