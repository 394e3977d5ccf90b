// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "tests/support/TestAuthority.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>

/// A host with scripted responses, on a WebSocket served by the main loop that veskctl runs while
/// it waits. A call is named "method path", or "method path first" when it requests rows after the
/// first one; the response is the JSON result (or error) set for that name, or a screen of rows by
/// its path. Other calls fail. Main thread.
class FakeHost {
public:
    using Results = QHash<QString, QByteArray>;

    explicit FakeHost(const Results &results = {});
    /// The same over TLS, as "localhost".
    FakeHost(const TestAuthority::Certificate &certificate, const Results &results);
    virtual ~FakeHost();

    FakeHost(const FakeHost &) = delete;
    FakeHost &operator=(const FakeHost &) = delete;

    QString url() const;
    /// Replaces the certificate, for connections from now on.
    void setCertificate(const TestAuthority::Certificate &certificate);
    /// Refuses WebSockets without this bearer token; none are refused when it is empty.
    void setToken(const QByteArray &token);
    /// Closes the WebSocket of this call and refuses all from then on, after responding or instead.
    void setRevoking(const QString &call, bool responds);
    /// Answers all requests with this HTTP code, and leads to \a location unless that is empty.
    void setStatus(unsigned status, const QByteArray &location = {});
    /// What POST /pair answers; GET /pair is a page, unless that is missing.
    void setPairing(unsigned status, const QByteArray &body);
    void setPageMissing();
    void setResult(const QString &call, const QByteArray &result);
    /// Sets a screen's rows; a request gets the roles that it names.
    void setScreen(const QString &path, const QList<VeskRoles> &rows);
    /// Delays the response to \a call.
    void setDelay(const QString &call, unsigned milliseconds);
    /// Sends these notifications right after the response to \a call.
    void setNotifications(const QString &call, const QList<QByteArray> &messages);
    /// Sends a notification to all connections now.
    void notify(const QByteArray &message);
    /// Closes the connection instead of responding, for the next \a times calls of that name.
    void setClosing(const QString &call, int times);

    /// The names of the calls so far, without those that read the language.
    QStringList asked() const { return m_asked; }
    int timesAsked(const QString &call) const { return m_asked.count(call); }
    QVariantHash lastParams() const { return m_lastParams; }
    QVariantHash paramsOf(const QString &method) const { return m_paramsOf.value(method); }
    int connections() const;
    /// The bodies that were posted to /pair, and the values of the header Authorization of all
    /// requests; without that header an empty one.
    QList<QByteArray> posted() const { return m_posted; }
    QList<QByteArray> authorizations() const { return m_authorizations; }

protected:
    /// Called before each response.
    virtual void prepare(const QString &method, const QVariantHash &params);

    QHash<QString, QList<VeskRoles>> m_screens;
    Results m_results;

private:
    struct Server;

    /// The response to one message; sets \a call to the call's name.
    QByteArray answer(const QByteArray &message, QString &call);
    QByteArray resultFor(const QString &call, const QString &method, const QVariantHash &params);

    QStringList m_asked;
    QVariantHash m_lastParams;
    QHash<QString, QVariantHash> m_paramsOf;
    QHash<QString, unsigned> m_delays;
    QHash<QString, QList<QByteArray>> m_notifications;
    QHash<QString, int> m_closing;
    QByteArray m_token;
    QString m_revoking;
    bool m_revokingResponds = false;
    unsigned m_status = 0;
    QByteArray m_location;
    unsigned m_pageStatus = 200;
    unsigned m_pairingStatus = 409;
    QByteArray m_pairingBody = R"({"error":"closed"})";
    QList<QByteArray> m_posted;
    QList<QByteArray> m_authorizations;
    const std::unique_ptr<Server> m_server;
};

/// The exit status and output of one run of veskctl.
struct Outcome {
    int status;
    std::string out;
    std::string errors;
};

/// The environment of a run.
struct Surroundings {
    /// Standard input.
    QByteArray input = {};
    /// The terminal's width in columns; 0 without a terminal.
    int width = 0;
    /// The folder in which shown lists are stored, and the terminal's name.
    QString memory = {};
    QString terminal = {};
    QStringList catalogues = {};
    /// The file of known hosts.
    QString knownHosts = {};
    /// A terminal as standard input instead of `input`; -1 for none.
    int keyboard = -1;
    /// Whether the terminal shows characters beyond ASCII, and colours.
    bool unicode = false;
    bool colours = false;
};

/// Runs veskctl's commands in this process.
Outcome run(const QString &url, const QStringList &arguments, const Surroundings &around = {});
QStringList words(const char *text);

/// A row of \a type.
VeskRoles row(int type, const char *title, const char *path);
/// The row of a service whose root is "TITLE:", without what it can do.
VeskRoles serviceRow(const char *id, const char *title);
/// Adds to \a service that what it does is at \a path.
VeskRoles withRole(VeskRoles service, const char *role, const char *path);
