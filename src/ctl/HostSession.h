// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/CtlOptions.h"
#include "ctl/RpcClient.h"
#include "ctl/ShownLists.h"
#include "ctl/TerminalText.h"

#include <QStringList>
#include <QVariant>

#include <functional>
#include <ostream>

/// How veskctl ends.
enum class CtlStatus : int {
    Success = 0,
    Failed = 1, ///< The host or a plug-in answered with an error.
    BadUsage = 2,
    NoHost = 3, ///< Nobody answered, or not a host.
};

/// Where veskctl prints and what it reads from.
struct CtlTerminal {
    std::ostream &out;
    std::ostream &errors;
    bool colours = false;
    /// In columns; 0 when what is printed is not for a terminal.
    int width = 0;
    /// The descriptor of a password's terminal or pipe.
    int input = -1;
    /// The descriptor behind `out`, to learn that its reader is gone; -1 when that does not matter.
    int output = -1;
    /// Where it is remembered which lists were shown; empty for nowhere.
    QString memory = {};
    /// What tells this terminal from others; empty when there is none.
    QString name = {};
    /// Folders with translation catalogues.
    QStringList catalogues = {};
};

/// A text of veskctl's own, in the host's language once a session has begun.
QString ctlText(const char *source);

/// One host and one user: asks the former, prints to the latter. Main thread.
class HostSession {
public:
    using Take = std::function<CtlStatus(const QVariantHash &)>;

    /// Both must outlive it.
    HostSession(const CtlOptions &options, const CtlTerminal &terminal);

    const CtlOptions &options() const { return m_options; }
    const CtlTerminal &terminal() const { return m_terminal; }
    const TerminalStyle &style() const { return m_style; }
    RpcClient &client() { return m_client; }
    ShownLists &shown() { return m_shown; }
    bool isForTerminal() const { return m_terminal.width > 0 && !m_options.json; }

    /// Hands the result of a call to \a take, or reports why there is none.
    CtlStatus call(const QString &method, const QVariantHash &params, const Take &take);
    /// What came of a call, unreported.
    RpcAnswer answer(const QString &method, const QVariantHash &params);

    /// Tell what went wrong: on standard error, or as JSON where that is wanted.
    CtlStatus report(const RpcAnswer &answer);
    CtlStatus fail(CtlStatus status, const QString &message);
    /// What is to be said while it goes on, on standard error.
    void note(const QString &message);

    void printJson(const QVariant &value);
    /// A line, without anything that would do more than show.
    void printText(const QString &text);
    /// The one or the other.
    CtlStatus tell(const QString &text, const QVariantHash &json);

private:
    void speakTheHostsLanguage();

    const CtlOptions &m_options;
    const CtlTerminal &m_terminal;
    const TerminalStyle m_style;
    RpcClient m_client;
    ShownLists m_shown;
    bool m_begun = false;
};

/// Whether a service says that this device is linked to no account.
bool isNotLinked(const RpcAnswer &answer);
/// An error as `--json` prints it.
QVariantHash errorJson(const QString &message, int code = 0, const QString &name = {},
    const QString &title = {}, const QString &problem = {});
/// The parameters of a call about \a path.
QVariantHash pathParams(const CMPath &path);
