// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMContainerNode.h"
#include "api/nodes/CMListRowsNode.h"
#include "modules/radiobrowser/RadioBrowserClient.h"
#include "modules/radiobrowser/RadioBrowserRows.h"

class CMNodesWorker;

/// \file
/// The screens of the directory. All live on the worker's thread, which none of them blocks: a
/// request is answered when the directory has answered. The client must go before the nodes do.

/// The service's first screen, which leads to all others and, by its role "search", to the list of
/// searches.
class RadioBrowserRootNode : public CMListRowsNode {
    Q_OBJECT

public:
    RadioBrowserRootNode(const CMPath &path, CMListRowsNode *searches);

    QVariant getRoleData(const QString &role, const Params &params) override;

private:
    CMListRowsNode *const m_searches;
};

/// What stations are grouped by.
struct RadioBrowserCategoryKind {
    const char *base; ///< of the node's path
    const char *title;
    const char *list; ///< of the API
    const char *order;
    bool reverse;
    int most;
    const char *parameter; ///< of the stations' path, and of the API
};

/// All countries, languages, tags or codecs that there are, each with how many stations it has.
class RadioBrowserCategoriesNode : public CMContainerNode {
    Q_OBJECT

public:
    static const std::vector<RadioBrowserCategoryKind> &kinds();

    /// \a stations is where their stations are listed.
    RadioBrowserCategoriesNode(
        RadioBrowserClient *client, const CMPath &path, int kind, const CMPath &stations);

    bool getRowsRequest(const CMGetRowsRequest &request) override;

private:
    VeskRoles row(const QVariant &entry) const;

    RadioBrowserClient *const m_client;
    const RadioBrowserCategoryKind &m_kind;
    const CMPath m_stations;
};

/// The stations that the path's parameters tell: "name" (a part of it), "countrycode", "language",
/// "tag", "codec", each when it is there; in the "order" of one of the API's fields, most first.
/// "title" is the screen's.
///
/// How many there are the directory does not tell. So the count that goes with the rows is one more
/// than those up to the range's end, as long as more follow: a client that reads on finds them. At
/// most MaxRange rows are fetched at once. A request for more ends with CMError::TooLongName(), and
/// hosts ask again for less.
class RadioBrowserStationsNode : public CMContainerNode {
    Q_OBJECT

public:
    static constexpr int MaxRows = 10000;
    static constexpr int MaxRange = 500;

    RadioBrowserStationsNode(
        RadioBrowserClient *client, const CMPath &path, const RadioBrowserStationRows &rows);

    bool getRowsRequest(const CMGetRowsRequest &request) override;
    QVariant getRoleData(const QString &role, const Params &params) override;

private:
    void take(const CMGetRowsRequest &request, int wanted, const QVariantList &entries);

    RadioBrowserClient *const m_client;
    const RadioBrowserStationRows m_rows;
};
