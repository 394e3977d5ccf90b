// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/Files.h"
#include "ctl/Places.h"

#include "api/web/VeskJson.h"

namespace {

CMPath hostScreen(const char *name)
{
    return CMPath(QStringLiteral("host"), QLatin1String(name));
}

CtlResult<> showList(HostSession &session, const CMPath &screen)
{
    const auto form = Screens(session).form();
    if (!form)
        return failure(form.error());
    return Screens(session).show(screen, CtlPlace::of(screen), *form);
}

/// The id of the service that --in names; empty without --in.
CtlResult<QString> serviceId(HostSession &session)
{
    if (session.options().service.isEmpty())
        return QString();
    const auto services = Services(session).chosen();
    if (!services)
        return failure(services.error());
    return services->first().id;
}

CtlResult<> recents(HostSession &session)
{
    const auto id = serviceId(session);
    if (!id)
        return failure(id.error());
    CMPath screen = hostScreen("recents");
    if (!id->isEmpty())
        screen.addParam(QStringLiteral("service"), *id);
    if (!session.options().clear)
        return showList(session, screen);
    QVariantHash params;
    if (!id->isEmpty())
        params.insert(QStringLiteral("service"), *id);
    if (const auto cleared = session.call(QStringLiteral("recents.clear"), params); !cleared)
        return failure(cleared.error());
    session.tell(ctlText("forgotten: what was played"), params);
    return {};
}

CtlResult<> stars(HostSession &session)
{
    return showList(session, hostScreen("favorites"));
}

/// Makes a row, or what plays, a favorite of the device, or removes it.
CtlResult<> star(HostSession &session, bool add)
{
    const auto item = Places(session).itemToKeep(session.options().words);
    if (!item)
        return failure(item.error());
    const QVariantHash path = pathParams(item->path);
    const auto state = session.call(QStringLiteral("favorites.state"), path);
    if (!state)
        return failure(state.error());
    // What plays may be known to the host under another path as well.
    const QVariantHash removed = item->params.isEmpty() ? QVariantHash() : path;
    const bool changes = state->value(QStringLiteral("favorite")).toBool() != add;
    if (changes) {
        const auto changed = add ? session.call(QStringLiteral("favorites.add"), item->params)
                                 : session.call(QStringLiteral("favorites.remove"), removed);
        if (!changed)
            return failure(changed.error());
    }
    const QString now = changes ? ctlText("%1: starred now") : ctlText("%1: starred already");
    const QString never
        = changes ? ctlText("%1: not starred any more") : ctlText("%1: not starred");
    session.tell((add ? now : never).arg(item->title),
        {{QStringLiteral("title"), item->title}, {QStringLiteral("favorite"), add},
            {QStringLiteral("changed"), changes}});
    return {};
}

CtlResult<> exportLibrary(HostSession &session)
{
    const auto result = session.call(QStringLiteral("library.export"));
    if (!result)
        return failure(result.error());
    const QByteArray json
        = printableJson(VeskJson::write(result->value(QStringLiteral("library")))) + '\n';
    if (!session.options().file.isEmpty())
        return saveFile(session, session.options().file, json);
    session.terminal().out << json.toStdString();
    return {};
}

/// Of a library, parts that fit into one message each: the favorites, and with the first of them
/// everything else.
QList<QVariantHash> partsOf(QVariantHash library)
{
    constexpr int MaxBytes = 45000;
    const QString name = QStringLiteral("favorites");
    const QVariantList favorites = library.value(name).toList();
    int bytes = VeskJson::write(library).size();
    if (bytes <= MaxBytes)
        return {library};
    QList<QVariantHash> parts;
    QVariantList some;
    library.insert(name, QVariantList());
    bytes = VeskJson::write(library).size();
    const auto end = [&] {
        library.insert(name, some);
        parts.append(library);
        library.insert(QStringLiteral("presets"), QVariantList());
        some.clear();
        bytes = 0;
    };
    for (const QVariant &favorite : favorites) {
        const int size = VeskJson::write(favorite).size() + 1;
        if (bytes + size > MaxBytes && !some.isEmpty())
            end();
        some.append(favorite);
        bytes += size;
    }
    end();
    return parts;
}

CtlResult<> importLibrary(HostSession &session)
{
    const QString &name = session.options().file;
    const auto bytes = readFile(name);
    if (!bytes)
        return session.fail(CtlStatus::Failed, bytes.error());
    VeskError error;
    const QVariant library = VeskJson::parse(*bytes, error);
    if (library.userType() != QMetaType::QVariantHash)
        return session.fail(CtlStatus::Failed, ctlText("%1 holds no library").arg(name));
    int favorites = 0;
    int presets = 0;
    const QList<QVariantHash> parts = partsOf(library.toHash());
    for (const QVariantHash &part : parts) {
        const auto result
            = session.call(QStringLiteral("library.import"), {{QStringLiteral("library"), part}});
        if (!result)
            return failure(result.error());
        favorites += result->value(QStringLiteral("favorites")).toInt();
        presets += result->value(QStringLiteral("presets")).toInt();
    }
    session.tell(ctlText("%1: favorites added: %2, presets: %3")
                     .arg(name, QString::number(favorites), QString::number(presets)),
        {{QStringLiteral("favorites"), favorites}, {QStringLiteral("presets"), presets}});
    return {};
}

} // namespace

void addLibraryCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    Command played = addCommand(app, "recents", "Show what was played lately", line, &recents);
    addListOptions(played, options);
    played.addFlag("--clear", options.clear, "Forget what was played");

    addListOptions(
        addCommand(app, "stars", "Show the favorites of the host itself", line, &stars), options);
    Command star = app.add("star", "Change the favorites of the host itself");
    star.requireCommand();
    const auto addChange = [&](const char *name, const char *description, bool add) {
        addCommand(star, name, description, line, [add](HostSession &session) {
            return ::star(session, add);
        }).addOption("PLACE", options.words, "The row; without it, what plays");
    };
    addChange("add", "Make a row one of the host's own favorites", true);
    addChange("remove", "Make a row none of them any more", false);

    Command library = app.add("library", "Save stars and presets in a file, or read them back");
    library.requireCommand();
    addCommand(library, "export", "Write stars and presets as JSON", line, &exportLibrary)
        .addOption("FILE", options.file, "The file; without it, standard output");
    addCommand(library, "import", "Add the stars and presets of a file to those that there are",
        line, &importLibrary)
        .addOption("FILE", options.file, "What export wrote")
        .required();
}
