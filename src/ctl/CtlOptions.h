// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

/// What a command line says.
struct CtlOptions {
    /// For every command. Ends with "/".
    QString host = QStringLiteral("http://127.0.0.1:8765/");
    /// Whether it was said which host.
    bool hostIsGiven = false;
    bool json = false;
    /// The id of a service, or a path below it; empty for all.
    QString service;

    /// The words of a place, of a name (also of a device) or of a search.
    QStringList words;
    /// The place of `get` and `set`, which is one word.
    QString place;
    QStringList roles;
    QString value;

    /// A key of the host's configuration, or the path of a value; empty for all.
    QString key;
    /// A volume, a place in time, an output, a time to sleep for, as they were typed.
    QString level;
    QString position;
    QString output;
    QString sleep;
    /// The number of a preset, and what names an alarm, as they were typed; empty for none.
    QString preset;
    QString alarm;
    QString time;
    QString days;
    /// A preset, percent, seconds and minutes; -1 where the host is to decide.
    int number = -1;
    int volume = -1;
    int fade = -1;
    int minutes = -1;
    bool clear = false;

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

    /// Pairing: the code, the certificate's fingerprint as it was typed, and whether what is sent
    /// may be readable for others.
    QString code;
    QString fingerprint;
    bool plainHttp = false;
    /// Whether the device may do what the owner of the host may.
    bool owner = false;
    /// The id or name of a paired device, and its role: "listener" or "owner".
    QString device;
    QString role;
};
