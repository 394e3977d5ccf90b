#include "ctl/PlayerCommands.h"

#include "ctl/PlayerText.h"
#include "ctl/PlayerWatch.h"

namespace {

bool hasFailed(const QVariantHash &state)
{
    return !state.value(QStringLiteral("error")).toString().isEmpty();
}

} // namespace

CtlStatus PlayerCommands::play()
{
    CMPath screen;
    const CtlStatus status = m_places.resolve(m_session.options().place, screen);
    return status == CtlStatus::Success ? play(screen, m_session.options().row) : status;
}

CtlStatus PlayerCommands::play(const CMPath &screen, int row)
{
    const QVariantHash params {
        {QStringLiteral("screen"), screen.toEncoded()}, {QStringLiteral("row"), row}};
    const CtlStatus status = m_session.act(QStringLiteral("player.play"), params);
    return status == CtlStatus::Success && !m_session.options().json ? printState(CtlStatus::Failed)
                                                                     : status;
}

CtlStatus PlayerCommands::act(const QString &method)
{
    return m_session.act(method, {});
}

CtlStatus PlayerCommands::status()
{
    if (m_session.options().watch)
        return watch();
    return printState(CtlStatus::Success);
}

CtlStatus PlayerCommands::printState(CtlStatus whenPlayFailed)
{
    return m_session.call(QStringLiteral("player.state"), {}, [&](const QVariantHash &state) {
        if (m_session.options().json)
            m_session.printJson(state);
        else
            m_session.terminal().out << playerLine(state, m_session.style()) << '\n';
        return hasFailed(state) ? whenPlayFailed : CtlStatus::Success;
    });
}

CtlStatus PlayerCommands::watch()
{
    const CtlTerminal &terminal = m_session.terminal();
    std::string last;
    const auto show = [&](const QVariantHash &state) {
        if (m_session.options().json) {
            m_session.printJson(state);
        } else {
            // Not every change shows.
            const std::string line = playerLine(state, m_session.style());
            if (line != last)
                terminal.out << line << '\n';
            last = line;
        }
        terminal.out.flush();
        return terminal.out.good();
    };
    const auto lost = [&] {
        m_session.fail(
            CtlStatus::NoHost, QStringLiteral("the host is gone; waiting until it is back"));
    };
    PlayerWatch watch(m_session.options().host, terminal.output, show, lost);
    QString problem;
    switch (watch.run(problem)) {
    case PlayerWatch::Ended:
        return CtlStatus::Success;
    case PlayerWatch::Refused:
        return m_session.fail(CtlStatus::Failed, problem);
    case PlayerWatch::NoHost:
        break;
    }
    return m_session.noHost(problem);
}
