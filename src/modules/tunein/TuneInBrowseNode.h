#pragma once

#include "api/nodes/CMContainerNode.h"
#include "api/tunein/VeskTuneInResponse.h"
#include "api/values/VeskList.h"
#include "api/web/VeskUrl.h"

#include <QMap>
#include <QMutex>
#include <QVector>

class CMTuneInWorker;
class TuneInSettings;

/// TuneIn's whole directory: every screen is a path below this node. A path is turned into a URL of
/// the web API, the answer into rows, and the URLs in it into paths again.
///
/// Three forms of paths: "browse" is the root menu; "browse/uri" with a URL path and its query
/// items as parameters is any screen; "browse" with "veskTuneInMethod" ("tune", "search", "wizard")
/// names a method and its arguments. Parameters that start with "vesk" are never sent.
///
/// Worker's thread only, which every request blocks for its exchange.
class TuneInBrowseNode : public CMContainerNode {
public:
    static TuneInBrowseNode *create(CMTuneInWorker *tiWorker, const CMPath &path);
    ~TuneInBrowseNode() override;

    /// Always takes the request.
    bool getRowsRequest(const CMGetRowsRequest &request) override;
    /// Runs the step before playing; other roles are the base's.
    bool setDataRequest(const CMSetDataRequest &request) override;
    QVariant getRoleData(const QString &role, const Params &params) override;

    /// The path of the screen at \a url, shown at \a navigation inside its answer and titled
    /// \a displayName, each left out when empty.
    CMPath tuneInUrlToCBPath(
        const VeskUrl &url, const QString &navigation, const QString &displayName) const;
    static VeskUrl getElementUrl(const VeskTuneInBodyElement &element);

    /// The rows of a fetched screen. An answer that cannot be read sets an error on the reply; a
    /// fault of TuneIn, or a navigation that leads nowhere, is an empty screen.
    QVariantList parseData(
        const CMGetRowsRequest &request, const QByteArray &data, VeskUrl url, QString navigation);

    /// The rows of a list of elements, fetched from \a url and shown at \a navigation. Lists
    /// children below their heading as long as \a maxLevel, one less for each level, is not below
    /// 0.
    QVariantList fillRows(const CMGetRowsRequest &request, VeskList<VeskTuneInBodyElement> elements,
        VeskUrl url, QString navigation, int maxLevel);

private:
    TuneInBrowseNode(CMTuneInWorker *worker, const CMPath &path);

    enum class RowRole;
    struct Screen;
    struct Item;

    // A path becomes a URL. What returns a bool returns false when it has set an error.
    bool setDirectoryUrl(const CMGetRowsRequest &request, VeskUrl &url) const;
    void setUriForm(const CMPath &path, QString rest, VeskUrl &url) const;
    bool setMethodForm(const CMGetRowsRequest &request, VeskUrl &url) const;
    bool setTuneMethod(const CMGetRowsRequest &request, VeskUrl &url) const;
    bool setRootForm(const CMGetRowsRequest &request, VeskUrl &url) const;
    void addCommonItems(VeskUrl &url) const;

    // An answer becomes rows.
    bool navigate(VeskList<VeskTuneInBodyElement> &elements, const QString &navigation) const;
    void appendElement(const Screen &screen, const Item &item, QVariantList &rows);
    QVariantList textRow(const Screen &screen, const Item &item) const;
    QVariantList linkRow(const Screen &screen, const Item &item) const;
    void appendSeparator(const Screen &screen, const Item &item, QVariantList &rows);
    QVariantList audioRow(const Screen &screen, const Item &item);
    VeskMediaData audioMediaData(
        const Screen &screen, const Item &item, const QString &encodedMatchPath);
    VeskHash browserContextRoles(
        const Screen &screen, const Item &item, const QString &encodedMatchPath) const;

    // Before playing.
    bool fetchAvailableStreams(const CMSetDataRequest &request, VeskRoles &roles);
    QString getGenreName(const QString &genreId);

    const TuneInSettings *m_settings;
    CMTuneInWorker *m_tiWorker;
    QMutex m_mutex;
    QMap<QString, QString> m_categoryIcons;
    QMap<QString, QString> m_genreNames;
};
