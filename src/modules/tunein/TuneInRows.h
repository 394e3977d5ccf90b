// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRequest.h"
#include "api/tunein/VeskTuneInResponse.h"
#include "api/values/CMPathForm.h"
#include "api/values/VeskMediaData.h"
#include "api/values/VeskRoles.h"
#include "api/web/VeskUrl.h"

#include <QVariantList>
#include <QVector>

class CMTuneInWorker;
class TuneInBrowseNode;

/// One element of an outline, with what tells the kind of its row.
struct TuneInOutline {
    TuneInOutline(VeskTuneInBodyElement itsElement, int itsIndex);

    VeskTuneInBodyElement element;
    int index; ///< among its siblings
    QString type;
    QString kind; ///< "station", "show", "topic" or none
    bool showOrTopic;
};

/// The same with what several of the row's values need.
struct TuneInItem : TuneInOutline {
    explicit TuneInItem(const TuneInOutline &outline);

    QString text;
    QString guideId;
    VeskUrl url;
    QString sid; ///< of a show or topic
};

/// Builds the rows of one screen: a value for each role that \a request asks for, null for roles
/// that the kind of element does not have. The constructor builds what all rows of the screen
/// share. Worker's thread only; node, worker and request must outlive it.
class TuneInRows {
public:
    TuneInRows(
        TuneInBrowseNode &node, const CMTuneInWorker &worker, const CMGetRowsRequest &request);

    bool isRoot() const { return m_isRoot; }
    /// Whether this is the list of a station's streams, from which the user chooses one.
    bool isStreamChoice() const { return m_streamChoice; }
    /// Whether this is the test search, whose rows hold URLs of streams.
    bool isDirectStream() const { return m_directStream; }

    /// For an element of unknown kind.
    QVariantList unknown() const { return m_nulls; }
    QVariantList text(const TuneInItem &item) const;
    QVariantList link(const TuneInItem &item) const;
    /// The heading above the rows of the element's children.
    QVariantList header(const TuneInItem &item) const;
    /// The folder that opens the element's children, at \a navigation inside the screen \a url.
    QVariantList folder(
        const TuneInItem &item, const VeskUrl &url, const QString &navigation) const;
    QVariantList audio(const TuneInItem &item) const;
    /// What a row of audio has to do that nobody asked for: the names of the genres are fetched,
    /// and it is told that there are none, as for the rows that are built.
    void omitAudio(const TuneInOutline &outline) const;

private:
    enum class Role;
    struct Playing;
    /// The item whose streams a stream choice lists: all its rows play as that item.
    struct Chosen {
        QString matchPath;
        QString title;
        QString description;
        QString icon;
        QString prePlayPath;
    };

    template <class Function>
    QVariantList row(Function value) const;
    Chosen chosen() const;
    QString matchPath(const TuneInItem &item) const;
    QString streamPath(const TuneInItem &item) const;
    VeskHash browserMenu(const TuneInItem &item, const QString &matchPath) const;
    VeskMediaData mediaData(const TuneInItem &item, const Playing &playing) const;
    VeskMetaData metaData(const TuneInItem &item, const Playing &playing) const;
    VeskResource resource(const TuneInItem &item) const;

    TuneInBrowseNode &m_node;
    const CMPath &m_opened;
    const bool m_isRoot;
    const bool m_streamChoice;
    const bool m_directStream;
    QVector<Role> m_roles;
    QVariantList m_nulls;

    /// Media data of rows that cannot be played.
    const VeskMediaData m_serviceMediaData;
    /// The part of the meta data that is the same for all audio rows.
    VeskMetaData m_commonMetaData;
    /// The browser's context menu; only its path depends on the row.
    const VeskRoles m_browserMenu;

    const CMPathForm m_matchPath;
    const CMPathForm m_browserMenuPath;
    const CMPathForm m_playerMenuPath;
    const CMPathForm m_episodeMenuPath;
    const CMPathForm m_prePlayPath;
    const Chosen m_chosen;
};
