// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

/// What a command line says.
struct CtlOptions {
    /// For every command. Ends with "/".
    QString host = QStringLiteral("http://127.0.0.1:8765/");
    bool json = false;
    /// The id of a service, or a path below it; empty for all.
    QString service;

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
    /// What to import, and where to export to; empty for standard output.
    QStringList files;
    QString file;
    /// Empty for what the file's name says.
    QString format;
    bool wait = false;
    bool watch = false;

    QString userName;
    QString email;
    QString postalCode;
    QString city;
    QString countryId;
};
