// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "ctl/CtlOptions.h"
#include "ctl/RpcClient.h"
#include "ctl/ShownLists.h"
#include "ctl/TerminalText.h"

#include <QStringList>
#include <QVariant>

#include <functional>
#include <ostream>

/// The exit status of a veskctl that failed.
enum class CtlStatus : int {
    Failed = 1, ///< The host or a plug-in answered with an error, or the host does not let one in.
    BadUsage = 2,
    NoHost = 3, ///< No answer, or not from a host.
};

/// What a part of a command returns. A failure has been reported to the user where it happened.
template <class T = void>
using CtlResult = Result<T, CtlStatus>;

/// Where veskctl prints and what it reads from.
struct CtlTerminal {
    std::ostream &out;
    std::ostream &errors;
    bool colours = false;
    /// Whether it can show characters beyond ASCII.
    bool unicode = false;
    /// In columns; 0 when what is printed is not for a terminal.
    int width = 0;
    /// The descriptor of a password's terminal or pipe.
    int input = -1;
    /// The descriptor behind `out`, watched for its reader to close it; -1 for none.
    int output = -1;
    /// The folder that remembers which lists were shown; empty for none.
    QString memory = {};
    /// The file of the hosts that this user has paired with; empty for none.
    QString knownHosts = {};
    /// Tells this terminal from others; empty when there is none.
    QString name = {};
    /// Folders with translation catalogues.
    QStringList catalogues = {};
};

/// A text of veskctl's own, in the host's language once a session has begun.
QString ctlText(const char *source);

/// One host and one user: calls the host, prints for the user. Main thread.
class HostSession {
public:
    /// Both must outlive it.
    HostSession(const CtlOptions &options, const CtlTerminal &terminal);

    const CtlOptions &options() const { return m_options; }
    const CtlTerminal &terminal() const { return m_terminal; }
    const TerminalStyle &style() const { return m_style; }
    RpcClient &client() { return m_client; }
    ShownLists &shown() { return m_shown; }
    bool isForTerminal() const { return m_terminal.width > 0 && !m_options.json; }

    /// The result of a call; reports why there is none.
    CtlResult<QVariantHash> call(const QString &method, const QVariantHash &params = {});
    /// How a call ended, not reported.
    RpcAnswer answer(const QString &method, const QVariantHash &params = {});
    /// Sends a call; \a answered is called by the client's waitForAnswers(), with an answer like
    /// those of answer().
    void send(const QString &method, const QVariantHash &params, RpcClient::Answered answered);
    /// Makes \a note what is told on standard error when an answer takes long, once.
    void setSlowNote(std::function<QString()> note);

    /// Report a failure: on standard error, or as JSON with --json.
    Failure<CtlStatus> report(const RpcAnswer &answer);
    /// What report() says, for users.
    QString textOf(const RpcAnswer &answer) const;
    /// The same for a refusal by a host whose certificate has that fingerprint.
    QString refusalText(HostRefusal refusal, const QString &fingerprint) const;
    Failure<CtlStatus> fail(CtlStatus status, const QString &message);
    /// A line on standard error that is no failure.
    void note(const QString &message);

    void printJson(const QVariant &value);
    /// Prints a line, without control characters.
    void printText(const QString &text);
    /// The same with several texts, separated by tabs.
    void printFields(const QStringList &fields);
    /// Prints \a json with --json, else \a text.
    void tell(const QString &text, const QVariantHash &json);

private:
    HostAccess knownAccess();
    void adoptHostLanguage();

    const CtlOptions &m_options;
    const CtlTerminal &m_terminal;
    const TerminalStyle m_style;
    const HostAccess m_access;
    RpcClient m_client;
    ShownLists m_shown;
    bool m_begun = false;
};

/// What is told when an answer takes long.
QString slowText();
/// A failed answer as --json prints it: an object with the member `error`.
QVariantHash errorJson(const RpcAnswer &answer);
/// Whether a service says that this device is linked to no account.
bool isNotLinked(const RpcAnswer &answer);
/// The parameters of a call about \a path.
QVariantHash pathParams(const CMPath &path);
