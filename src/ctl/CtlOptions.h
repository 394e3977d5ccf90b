#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskTuneInAccount.h"
#include "ctl/CtlPlace.h"

#include <QStringList>

/// What one call of veskctl is to do.
struct CtlOptions {
    enum Command {
        Ls,
        Search,
        Get,
        Set,
        Play,
        Pause,
        Resume,
        Stop,
        Status,
        Streams,
        Menu,
        Favorites,
        FavoriteAdd,
        FavoriteRemove,
        Account,
    };

    /// Ends with "/".
    QString host = QStringLiteral("http://127.0.0.1:8765/");
    bool json = false;
    Command command = Ls;
    /// The service that is meant; empty for the only one that there is.
    CMPath service;
    /// The screen, value, or screen of the row that is meant.
    CtlPlace place;
    /// The row in it, or of Streams; -1 for none.
    int row = -1;
    /// Menu: the entry to choose; -1 for none.
    int choice = -1;
    /// Status: go on with every change.
    bool watch = false;
    /// Set: the value.
    QString text;
    /// Get.
    QStringList roles;
    /// Screens: the range of rows, inclusive; -1: to the end.
    int first = 0;
    int last = -1;
    /// Account: the operation and all that goes with it but the password.
    VeskTuneInAccount account;
};
