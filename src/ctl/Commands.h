#pragma once

#include "ctl/CtlCommandLine.h"
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

/// Carries out the commands: asks the host, prints what it answers to \a out and what went wrong to
/// \a errors. One call, one thread.
class Commands {
public:
    Commands(const CtlOptions &options, bool colours, std::ostream &out, std::ostream &errors);

    CtlStatus run();

private:
    using Take = std::function<CtlStatus(const QVariantHash &)>;

    CtlStatus ls();
    CtlStatus search();
    CtlStatus get();
    CtlStatus set();

    /// Hands the result of a call to \a take, or reports why there is none.
    CtlStatus call(const QString &method, const QVariantHash &params, const Take &take);
    CtlStatus report(const RpcAnswer &answer);
    CtlStatus fail(CtlStatus status, const QString &message);

    /// Calls \a take with the answers for all rows that the options ask for, range by range.
    CtlStatus fetchRows(const QVariantHash &params,
        const std::function<void(int first, const QVariantHash &answer)> &take);
    CtlStatus showScreen(const CMPath &path);
    CtlStatus printScreen(const CMPath &path);
    CtlStatus printScreenAsJson(const CMPath &path);
    void printJson(const QVariant &value);
    /// Finds the only service that there is; empty when there are more, or none.
    CtlStatus findService(int &services, CMPath &only);
    CtlStatus findQuery(const CMPath &searches, CMPath &query);

    const CtlOptions m_options;
    const TerminalStyle m_style;
    std::ostream &m_out;
    std::ostream &m_errors;
    RpcClient m_client;
};
