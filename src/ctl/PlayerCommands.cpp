// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/Groups.h"
#include "ctl/Player.h"
#include "ctl/RowText.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

const QStringList &hitRoles()
{
    static const QStringList roles {VeskRoles::Type(), VeskRoles::Title(), VeskRoles::Path()};
    return roles;
}

/// Without case and marks, for comparisons.
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

/// How well a title matches, from 0. After " (" directories only say where a station is.
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

/// A title to look for, and the least likeness() that counts.
struct Wanted {
    QString name;
    int likeness = 0;
};

/// The first row of that type whose title is most like \a wanted; -1 for none.
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

/// Of a list, or of the best list in it, the best row to play.
struct Hit {
    Spot spot;
    QString title;
};

CtlResult<Hit> findBest(HostSession &session, CMPath list, const Wanted &wanted)
{
    for (int depth = 0; depth < 2 && !list.isEmpty(); ++depth) {
        const auto rows = Screens(session).rows(list, hitRoles());
        if (!rows)
            return failure(rows.error());
        const int audio = bestRow(*rows, VeskRolesType::audio, wanted);
        const int best = audio >= 0 ? audio : bestRow(*rows, VeskRolesType::container, wanted);
        if (best < 0)
            break;
        const VeskRoles &row = rows->at(best);
        if (audio >= 0) {
            return Hit {{CtlPlace::of(list).row(best), list, best, row.path(), row.type()},
                plainText(row[VeskRoles::Title()])};
        }
        list = row.path();
    }
    return session.fail(CtlStatus::Failed, ctlText("there is nothing to play"));
}

/// Plays a row; of a list, the first that plays.
CtlResult<> playSpot(HostSession &session, Spot spot)
{
    bool isList = !spot.isRow();
    if (!isList) {
        const auto row = Places(session).row(spot, {VeskRoles::Type()});
        if (!row)
            return failure(row.error());
        spot.path = row->path();
        isList = row->type() == VeskRolesType::container && !spot.path.isEmpty();
    }
    if (!isList)
        return Player(session).play(spot);
    const auto hit = findBest(session, spot.path, {});
    if (!hit)
        return failure(hit.error());
    return Player(session).play(hit->spot);
}

CtlResult<> playHit(HostSession &session, const QString &name, const Hit &hit)
{
    if (!session.options().json) {
        session.printText(ctlText("the best hit for \"%1\": %2").arg(name, hit.title));
        session.terminal().out.flush();
    }
    return Player(session).play(hit.spot);
}

/// What one service found.
struct Found {
    CMPath screen;
    QList<VeskRoles> rows;
    std::optional<RpcAnswer> error;
    int best = -1;
    /// Of the best row.
    int likeness = -1;
};

void takeRows(Found &found, const RpcAnswer &answer, const Wanted &wanted)
{
    if (answer.kind != RpcAnswer::Result) {
        found.error = answer;
        return;
    }
    const QVariantList rows = VeskRowsRoles(answer.result.toHash()).rows();
    for (const QVariant &values : rows)
        found.rows.append(namedRoles(hitRoles(), values.toList()));
    found.best = bestRow(found.rows, VeskRolesType::audio, wanted);
    if (found.best >= 0)
        found.likeness
            = likeness(plainText(found.rows.at(found.best)[VeskRoles::Title()]), wanted.name);
}

/// Asks all services, until one has a row of exactly that name; of slow services, no more is
/// expected once another one has found something.
std::vector<Found> findEverywhere(
    HostSession &session, const QList<Service> &services, const QString &name, const Wanted &wanted)
{
    constexpr int Exact = 3;
    std::vector<Found> all(static_cast<size_t>(services.size()));
    bool isSlow = false;
    for (int i = 0; i < services.size(); ++i) {
        Found &found = all[static_cast<size_t>(i)];
        findResults(session, services.at(i), name,
            [&session, &found, wanted](const Result<CMPath, RpcAnswer> &screen) {
                if (!screen) {
                    found.error = screen.error();
                    return;
                }
                found.screen = *screen;
                QVariantHash params = pathParams(*screen);
                params.insert(QStringLiteral("roles"), hitRoles());
                session.send(QStringLiteral("getRows"), params,
                    [&found, wanted](const RpcAnswer &answer) { takeRows(found, answer, wanted); });
            });
    }
    session.client().setSlow([&isSlow] { isSlow = true; });
    session.client().waitForAnswers([&] {
        return std::any_of(all.begin(), all.end(),
            [&](const Found &found) { return found.likeness >= (isSlow ? 0 : Exact); });
    });
    session.setSlowNote(&slowText);
    return all;
}

/// Of the services with a row like that the first, else the first with a list that leads to one.
CtlResult<Hit> bestOf(HostSession &session, const std::vector<Found> &all, const Wanted &wanted)
{
    const auto best = std::max_element(all.begin(), all.end(),
        [](const Found &a, const Found &b) { return a.likeness < b.likeness; });
    if (best->best >= 0) {
        const VeskRoles &row = best->rows.at(best->best);
        return Hit {{CtlPlace::of(best->screen).row(best->best), best->screen, best->best,
                        row.path(), row.type()},
            plainText(row[VeskRoles::Title()])};
    }
    for (const Found &found : all) {
        if (bestRow(found.rows, VeskRolesType::container, wanted) >= 0)
            return findBest(session, found.screen, wanted);
    }
    const bool hasFailed = std::all_of(
        all.begin(), all.end(), [](const Found &found) { return found.error.has_value(); });
    if (hasFailed)
        return session.report(*all.front().error);
    return session.fail(CtlStatus::Failed, ctlText("there is nothing to play"));
}

/// A name that could be an id must be in the title: the best hit for it would be a random one.
CtlResult<> playByName(HostSession &session, const QString &name, bool isId)
{
    const auto services = Services(session).with(&Service::searches, noSearch());
    if (!services)
        return failure(services.error());
    const Wanted wanted {plain(name), isId ? 1 : 0};
    const auto hit = bestOf(session, findEverywhere(session, *services, name, wanted), wanted);
    if (!hit)
        return failure(hit.error());
    return playHit(session, name, *hit);
}

/// Words that are no place are a name, and so is an id that was not shown.
CtlResult<> play(HostSession &session)
{
    const QStringList &words = session.options().words;
    const auto place = CtlPlace::parse(words);
    const bool isId = place && place->start == CtlPlace::Id;
    if (!place || (isId && session.shown().findId(place->text).row < 0))
        return playByName(session, words.join(QLatin1Char(' ')), isId);
    const auto spot = Places(session).resolve(*place);
    if (!spot)
        return failure(spot.error());
    return playSpot(session, *spot);
}

} // namespace

void addPlayerCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    Command command
        = addCommand(app, "play", "Play a row, or the best hit of a search", line, &play);
    command.addOption("PLACE", options.words, "The row or list; or a name, which is searched for")
        .required();
    command.addFlag("--wait", options.wait, "End when it is heard, or cannot be");

    const auto addAction = [&](const char *name, const char *description) {
        addCommand(app, name, description, line, [name](HostSession &session) {
            return Player(session).act(QStringLiteral("player.") + QLatin1String(name));
        });
    };
    addAction("pause", "Pause what plays");
    addAction("resume", "Go on after a pause");
    addAction("stop", "Stop what plays");

    addCommand(app, "status", "Tell what plays", line, [](HostSession &session) {
        Player player(session);
        return session.options().watch ? player.watch() : player.status();
    }).addFlag("--watch", options.watch, "Go on with every change");
}
