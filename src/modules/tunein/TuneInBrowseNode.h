// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMContainerNode.h"
#include "api/tunein/VeskTuneInResponse.h"
#include "api/values/VeskList.h"
#include "api/web/VeskUrl.h"

#include <QMap>
#include <QMutex>

class CMTuneInWorker;
class TuneInSettings;
struct TuneInItem;
struct TuneInOutline;

/// TuneIn's whole directory: every screen is a path below this node. TuneInScreenUrl turns a path
/// into a URL of the web API, TuneInRows the answer's elements into rows, whose URLs become paths
/// again.
///
/// Worker's thread only, which every request blocks for its exchange.
class TuneInBrowseNode : public CMContainerNode {
public:
    static TuneInBrowseNode *create(CMTuneInWorker *tiWorker, const CMPath &path);
    ~TuneInBrowseNode() override;

    /// Always takes the request.
    bool getRowsRequest(const CMGetRowsRequest &request) override;
    /// Handles the pre-play role; the base class handles all others.
    bool setDataRequest(const CMSetDataRequest &request) override;
    QVariant getRoleData(const QString &role, const Params &params) override;

    /// The path of the screen at \a url, shown at \a navigation inside its answer and titled
    /// \a displayName, each left out when empty.
    CMPath tuneInUrlToCBPath(
        const VeskUrl &url, const QString &navigation, const QString &displayName) const;
    static VeskUrl getElementUrl(const VeskTuneInBodyElement &element);

    /// The rows of a fetched screen: all of them, those outside the range of \a request as null, so
    /// that a screen costs what is shown of it. An answer that cannot be read sets an error on the
    /// reply; a fault of TuneIn, or a navigation that leads nowhere, is an empty screen.
    QVariantList parseData(
        const CMGetRowsRequest &request, const QByteArray &data, VeskUrl url, QString navigation);

    /// The rows of a list of elements, fetched from \a url and shown at \a navigation; those
    /// outside the range of \a request are null. If the settings want a single list, children are
    /// listed below their heading for \a maxLevel + 1 levels; else, and below that, a folder opens
    /// them.
    QVariantList fillRows(const CMGetRowsRequest &request, VeskList<VeskTuneInBodyElement> elements,
        VeskUrl url, QString navigation, int maxLevel);

    /// The icon of the root menu's entry \a key; empty for another.
    QString categoryIcon(const QString &key) const { return m_categoryIcons.value(key); }
    /// Empty when unknown. The first genre fetches TuneIn's list of genres; while that fails every
    /// name is empty.
    QString getGenreName(const QString &genreId);
    bool hasGenreNames() const { return !m_genreNames.isEmpty(); }

private:
    TuneInBrowseNode(CMTuneInWorker *worker, const CMPath &path);

    struct Screen;

    // From an answer to rows.
    bool navigate(VeskList<VeskTuneInBodyElement> &elements, const QString &navigation) const;
    void appendRows(const CMGetRowsRequest &request, VeskList<VeskTuneInBodyElement> elements,
        const VeskUrl &url, const QString &navigation, int maxLevel, QVariantList &rows);
    void appendElement(const Screen &screen, const TuneInOutline &outline, QVariantList &rows);
    void appendSeparator(const Screen &screen, const TuneInOutline &outline, QVariantList &rows);
    void appendAudio(const Screen &screen, const TuneInOutline &outline, QVariantList &rows);

    // Pre-play.
    bool fetchAvailableStreams(const CMSetDataRequest &request, VeskRoles &roles);

    const TuneInSettings *m_settings;
    CMTuneInWorker *m_tiWorker;
    QMutex m_mutex;
    QMap<QString, QString> m_categoryIcons;
    QVariantList m_reserved; ///< always empty
    QMap<QString, QString> m_genreNames;
};
