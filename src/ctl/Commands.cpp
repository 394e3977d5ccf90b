#include "ctl/Commands.h"

#include "ctl/AccountCommands.h"
#include "ctl/FavoriteCommands.h"
#include "ctl/MenuCommands.h"
#include "ctl/PlayerCommands.h"
#include "ctl/ScreenCommands.h"

CtlStatus runCommand(const CtlOptions &options, const CtlTerminal &terminal)
{
    HostSession session(options, terminal);
    switch (options.command) {
    case CtlOptions::Ls:
    case CtlOptions::Search:
    case CtlOptions::Favorites:
        return ScreenCommands(session).show();
    case CtlOptions::Get:
        return ScreenCommands(session).get();
    case CtlOptions::Set:
        return ScreenCommands(session).set();
    case CtlOptions::Play:
        return PlayerCommands(session).play();
    case CtlOptions::Pause:
        return PlayerCommands(session).act(QStringLiteral("player.pause"));
    case CtlOptions::Resume:
        return PlayerCommands(session).act(QStringLiteral("player.resume"));
    case CtlOptions::Stop:
        return PlayerCommands(session).act(QStringLiteral("player.stop"));
    case CtlOptions::Status:
        return PlayerCommands(session).status();
    case CtlOptions::Streams:
        return MenuCommands(session).streams();
    case CtlOptions::Menu:
        return MenuCommands(session).menu();
    case CtlOptions::FavoriteAdd:
        return FavoriteCommands(session).add();
    case CtlOptions::FavoriteRemove:
        return FavoriteCommands(session).remove();
    case CtlOptions::Account:
        return AccountCommands(session).run();
    }
    return CtlStatus::BadUsage;
}
