#pragma once

#include "ctl/CtlOptions.h"
#include "ctl/RpcClient.h"
#include "ctl/TerminalText.h"

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
    /// The descriptor of a password's terminal or pipe.
    int input = -1;
    /// The descriptor behind `out`, to learn that its reader is gone; -1 when that does not matter.
    int output = -1;
};

/// One host and one user: asks the former, prints to the latter. One thread.
class HostSession {
public:
    using Take = std::function<CtlStatus(const QVariantHash &)>;

    /// Both must outlive it.
    HostSession(const CtlOptions &options, const CtlTerminal &terminal);

    const CtlOptions &options() const { return m_options; }
    const CtlTerminal &terminal() const { return m_terminal; }
    const TerminalStyle &style() const { return m_style; }

    /// Hands the result of a call to \a take, or reports why there is none.
    CtlStatus call(const QString &method, const QVariantHash &params, const Take &take);
    /// Calls getData. That a device has no account is an answer here, which it prints, no failure.
    CtlStatus ask(const QVariantHash &params, const Take &take);
    /// Calls the method for what it does; prints the result as JSON, or else \a done, if any.
    CtlStatus act(
        const QString &method, const QVariantHash &params, const QString &done = QString());

    CtlStatus fail(CtlStatus status, const QString &message);
    CtlStatus noHost(const QString &why);
    void printJson(const QVariant &value);
    /// A line, without anything that would do more than show.
    void printText(const QString &text);

private:
    CtlStatus report(const RpcAnswer &answer);

    const CtlOptions &m_options;
    const CtlTerminal &m_terminal;
    const TerminalStyle m_style;
    RpcClient m_client;
};

/// The parameters of a call about \a path.
QVariantHash pathParams(const CMPath &path);
