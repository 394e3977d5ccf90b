// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>

class CMNodes;
class CMSubscribe;
class Database;
class Library;

/// The screens of what the listener has heard and keeps, for any client: `host:recents`, with all
/// services or the one in its parameter "service"; `host:favorites`; and `host:library`, which
/// leads to both and says what is wrong with the file. Their rows are those that were kept, and
/// play and open menus like the service's own. Subscribers are notified of changes before whoever
/// made them has the answer. Main thread; what it is made with outlives it.
class LibraryScreens : public QObject {
    Q_OBJECT

public:
    /// \a nodes, of the host's own worker, owns the nodes of the screens.
    LibraryScreens(Library *library, Database *database, CMNodes *nodes, QObject *parent = nullptr);
    ~LibraryScreens() override;
};
