// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Commands.h"
#include "ctl/Player.h"
#include "ctl/RowText.h"

#include <memory>
#include <string>
#include <vector>

namespace {

struct PlayArguments {
    std::vector<std::string> words;
    bool wait = false;
};

const QStringList &hitRoles()
{
    static const QStringList roles {VeskRoles::Type(), VeskRoles::Title(), VeskRoles::Path()};
    return roles;
}

/// For comparing: letters without case and marks.
QString plain(const QString &text)
{
    QString letters;
    const QString parts = text.normalized(QString::NormalizationForm_KD).toCaseFolded();
    for (const QChar character : parts) {
        if (!character.isMark())
            letters += character;
    }
    return letters.simplified();
}

/// How well a title is what was asked for, from 0. Behind " (" there is only where it is from.
int likeness(const QString &title, const QString &wanted)
{
    const QString whole = plain(title);
    const QString name = whole.section(QLatin1String(" ("), 0, 0);
    if (whole == wanted || name == wanted)
        return 3;
    if (name.startsWith(wanted))
        return 2;
    const QStringList words = wanted.split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (!whole.contains(word))
            return 0;
    }
    return 1;
}

/// What is looked for in lists, and how like it a title must be.
struct Wanted {
    QString name;
    int likeness = 0;
};

/// The row of that type whose title is most like \a wanted, of equals the first; -1 for none.
int bestRow(const QList<VeskRoles> &rows, int type, const Wanted &wanted)
{
    int best = -1;
    int most = wanted.likeness - 1;
    for (int i = 0; i < rows.size(); ++i) {
        const int found = rows.at(i).type() == type
            ? likeness(plainText(rows.at(i)[VeskRoles::Title()]), wanted.name)
            : -1;
        if (found > most) {
            most = found;
            best = i;
        }
    }
    return best;
}

/// The best row to play of a list, or of the best list in it.
CtlStatus findBest(HostSession &session, Spot &spot, const Wanted &wanted, QString &title)
{
    for (int depth = 0; depth < 2; ++depth) {
        QList<VeskRoles> rows;
        const CtlStatus status = Screens(session).rows(spot.path, hitRoles(), rows);
        if (status != CtlStatus::Success)
            return status;
        const int audio = bestRow(rows, VeskRolesType::audio, wanted);
        const int row = audio >= 0 ? audio : bestRow(rows, VeskRolesType::container, wanted);
        if (row < 0)
            break;
        spot = {CtlPlace::of(spot.path).row(row), spot.path, row, rows.at(row).path(),
            rows.at(row).type()};
        title = plainText(rows.at(row)[VeskRoles::Title()]);
        if (audio >= 0)
            return status;
        if (spot.path.isEmpty())
            break;
    }
    return session.fail(CtlStatus::Failed, ctlText("there is nothing to play"));
}

/// Plays a row; of a list, the first that plays.
CtlStatus playSpot(HostSession &session, Spot spot, bool wait)
{
    bool isList = !spot.isRow();
    if (!isList) {
        VeskRoles row;
        const CtlStatus status = Places(session).row(spot, {VeskRoles::Type()}, row);
        if (status != CtlStatus::Success)
            return status;
        spot.path = row.path();
        isList = row.type() == VeskRolesType::container && !spot.path.isEmpty();
    }
    if (isList) {
        QString title;
        const CtlStatus status = findBest(session, spot, {}, title);
        if (status != CtlStatus::Success)
            return status;
    }
    return Player(session).play(spot, wait);
}

/// What may be an id is not taken for whatever a search finds by chance.
CtlStatus playByName(HostSession &session, const QString &name, bool isId, bool wait)
{
    Spot spot;
    CtlStatus status = Places(session).resolve(CtlPlace::found(name), spot);
    QString title;
    if (status == CtlStatus::Success)
        status = findBest(session, spot, {plain(name), isId ? 1 : 0}, title);
    if (status != CtlStatus::Success)
        return status;
    if (!session.options().json) {
        session.printText(ctlText("the best hit for \"%1\": %2").arg(name, title));
        session.terminal().out.flush();
    }
    return Player(session).play(spot, wait);
}

/// What is no place is a name, and so is an id that was not shown.
CtlStatus play(HostSession &session, const PlayArguments &arguments)
{
    const QStringList words = toTexts(arguments.words);
    CtlPlace place;
    const bool isRead = CtlPlace::parse(words, place);
    if (!isRead)
        place = CtlPlace();
    const bool isPlace
        = isRead && (place.start != CtlPlace::Id || session.shown().findId(place.text).row >= 0);
    if (!isPlace) {
        return playByName(
            session, words.join(QLatin1Char(' ')), place.start == CtlPlace::Id, arguments.wait);
    }
    Spot spot;
    const CtlStatus status = Places(session).resolve(place, spot);
    return status == CtlStatus::Success ? playSpot(session, spot, arguments.wait) : status;
}

} // namespace

void addPlayerCommands(Command app, Commands &commands)
{
    const auto played = std::make_shared<PlayArguments>();
    Command playIt = commands.add(app, "play", "Play a row, or the best hit of a search",
        [played](HostSession &session) { return play(session, *played); });
    playIt.addOption("PLACE", played->words, "The row or list; or a name, which is searched for")
        .required();
    playIt.addFlag("--wait", played->wait, "End when it is heard, or cannot be");

    const auto addAction = [&](const char *name, const char *description) {
        commands.add(app, name, description, [name](HostSession &session) {
            return Player(session).act(QStringLiteral("player.") + QLatin1String(name));
        });
    };
    addAction("pause", "Pause what plays");
    addAction("resume", "Go on after a pause");
    addAction("stop", "Stop what plays");

    const auto watch = std::make_shared<bool>(false);
    commands
        .add(app, "status", "Tell what plays",
            [watch](HostSession &session) {
                Player player(session);
                return *watch ? player.watch() : player.status();
            })
        .addFlag("--watch", *watch, "Go on with every change");
}
