// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/system/Product.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

/// A row that has a menu.
struct Item {
    QString title;
    QString guideId;
    QString browserMenu;
    QString playerMenu;
};

/// An entry of a menu.
struct Entry {
    QString title;
    QString path;
};

/// A JSON-RPC error.
struct Complaint {
    QString message;
    QString name;
    QString title;

    static Complaint of(const QVariantHash &answer);
};

/// A product of its own for each test, and a client's operations on menus and favorites.
class FavoritesFixture : public testing::Test {
protected:
    static constexpr char AddTitle[] = "Add to TuneIn Favorites";
    static constexpr char RemoveTitle[] = "Remove from TuneIn Favorites";
    static constexpr char NoFavorites[] = "No stations or shows available";
    static constexpr char FavoritesScreen[] = "TuneIn:browse/uri/Browse.ashx?c=presets";
    static constexpr char AllFormats[] = "mp3%2Caac%2Cogg%2Copus%2Cflac%2Chls";

    /// In the host's arguments "%1" is the test's own folder.
    explicit FavoritesFixture(QStringList hostArguments = {});
    void SetUp() override;

    QList<Item> items(const QString &screen) const;
    QList<Item> found(const char *query) const;
    Item station() const; ///< s29001
    Item show() const; ///< p3016, with the station that has it
    Item topic() const; ///< t300301, an episode of p3003

    QList<Entry> menu(const QString &path) const;
    /// The title of a menu's first entry, the favorites entry.
    std::string titleIn(const QString &menuPath) const;
    QVariantHash run(const QString &entryPath) const;
    /// Reads the first entry, title included, and activates it.
    QVariantHash runFirstOf(const QString &menuPath) const;
    /// The titles of the favorites screen.
    std::vector<std::string> favorites() const;

    /// The directory's requests since the last call.
    std::vector<std::string> requests();
    std::string describeRequest(const char *id) const;
    std::string presetRequest(const char *command, const char *id) const;

    /// Adds the item of this menu and removes it again; the directory must be sent \a id.
    void addAndRemove(const QString &menuPath, const char *id, const char *listedAs);
    /// Makes the directory answer the next request for \a page with this body.
    void answerOnce(const char *page, const QByteArray &body);

    QTemporaryDir folder;
    Product product;
    QString serial;
    QString device; ///< the query items that identify the device
};
