// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/LibraryScreens.h"

#include "api/core/Language.h"
#include "api/nodes/CMContainerNode.h"
#include "api/nodes/CMNodes.h"
#include "host/library/Database.h"
#include "host/library/Library.h"

#include <QPointer>

namespace {

/// A screen whose rows are read from elsewhere, each time.
class RowsNode : public CMContainerNode {
public:
    using Read = std::function<void(const CMPath &opened, const Library::Answer<Library::Rows> &)>;

    RowsNode(const CMPath &path, Read read)
        : CMContainerNode(path)
        , m_read(std::move(read))
    {
        setServesBelow(false);
    }

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        const QPointer<RowsNode> node(this);
        m_read(request.path(), [node, request](const Result<Library::Rows, QString> &rows) {
            if (!node)
                return;
            if (rows)
                node->answerRows(request, *rows);
            else
                request.reply().setError(CMError(Language::ntr(rows.error())));
        });
        return true;
    }

    /// Whoever has opened it is to read it again.
    void reset()
    {
        if (CMSubscribe *subscribers = subscribe())
            subscribers->changedStartingWith(path(), CMSubscribe::RowsChangeReset(), -1, -1);
    }

private:
    const Read m_read;
};

CMPath screen(const char *base)
{
    return CMPath(QStringLiteral("host"), QLatin1String(base));
}

TrString hostText(const char *text)
{
    return TrString("Host", text);
}

VeskRoles folder(const CMPath &path, const TrString &title)
{
    VeskRoles row;
    row.setType(VeskRolesType::Container());
    row.setTitle(title);
    row.setPath(path);
    return row;
}

VeskRoles notice(const TrString &problem)
{
    VeskRoles row;
    row.setType(VeskRolesType::Header());
    row.setTitle(hostText(QT_TRANSLATE_NOOP("Host", "Something is wrong")));
    row.setDescription(problem);
    row.insert(VeskRoles::Disabled(), true);
    return row;
}

} // namespace

LibraryScreens::LibraryScreens(
    Library *library, Database *database, CMNodes *nodes, QObject *parent)
    : QObject(parent)
{
    const TrString recentsTitle = hostText(QT_TRANSLATE_NOOP("Host", "Recently played"));
    const TrString favoritesTitle = hostText(QT_TRANSLATE_NOOP("Host", "Favorites"));
    const CMPath recentsPath = screen("recents");
    const CMPath favoritesPath = screen("favorites");

    auto *recents = new RowsNode(
        recentsPath, [library](const CMPath &opened, const Library::Answer<Library::Rows> &answer) {
            library->recents(opened.param(QStringLiteral("service")), answer);
        });
    recents->setTitle(recentsTitle);
    recents->setNodes(nodes);
    connect(library, &Library::recentsChanged, recents, [recents] { recents->reset(); });

    auto *favorites = new RowsNode(
        favoritesPath, [library](const CMPath &, const Library::Answer<Library::Rows> &answer) {
            library->favorites(answer);
        });
    favorites->setTitle(favoritesTitle);
    favorites->setNodes(nodes);
    connect(library, &Library::favoritesChanged, favorites, [favorites] { favorites->reset(); });

    auto *all = new RowsNode(
        screen("library"), [=](const CMPath &, const Library::Answer<Library::Rows> &answer) {
            Library::Rows rows;
            if (const TrString problem = database->problem(); !problem.isEmpty())
                rows.append(notice(problem));
            rows.append(folder(favoritesPath, favoritesTitle));
            rows.append(folder(recentsPath, recentsTitle));
            answer(rows);
        });
    all->setTitle(hostText(QT_TRANSLATE_NOOP("Host", "Library")));
    all->setNodes(nodes);
    connect(database, &Database::problemChanged, all, [all] { all->reset(); });
}

LibraryScreens::~LibraryScreens() = default;
