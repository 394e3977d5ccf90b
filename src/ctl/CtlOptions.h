// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"

#include <QString>
#include <QStringList>

/// What a command line says.
struct CtlOptions {
    /// For every command. Ends with "/".
    QString host = QStringLiteral("http://127.0.0.1:8765/");
    bool json = false;
    /// Empty for the only service that there is.
    CMPath service;

    /// The words of a place, of a name or of a search.
    QStringList words;
    /// The place of `get` and `set`, which is one word.
    QString place;
    QStringList roles;
    QString value;

    /// Rows of a list; -1 for no limit.
    int first = 0;
    int last = -1;
    int limit = -1;
    /// With the rows' paths.
    bool paths = false;
    /// The row to choose; -1 for none.
    int choice = -1;
    bool wait = false;
    bool watch = false;

    QString userName;
    QString email;
    QString postalCode;
    QString city;
    QString countryId;
};
