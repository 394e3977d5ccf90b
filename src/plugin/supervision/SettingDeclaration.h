// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

/// One setting of a plug-in, which the host keeps and offers to users.
struct SettingDeclaration {
    enum Shown { Never, Browsing, Advanced };
    enum Form {
        Any,
        Address, ///< http or https, or empty
        Formats, ///< a list out of the choices, separated by commas, or empty
    };

    /// "settings:ID/NAME", with the id of the plug-in.
    CMPath path;
    /// The default, which has the setting's type.
    VeskValue initial;
    /// The default is rather the formats that the host can play.
    bool isInitiallyPlayerFormats = false;
    QString title; ///< source text, as is the next one
    QString help;
    Shown shown = Advanced;
    Form form = Any;
    QStringList choices; ///< of texts; empty: any text
    std::optional<double> least; ///< of numbers
    std::optional<double> most;
    /// The plug-in has to be restarted when it changes, whether or not it was seen reading it.
    bool restarts = false;

    /// Reads one entry of the descriptor's list; \a id is the plug-in's. Keeps the first \a error.
    static SettingDeclaration read(const QVariant &entry, const QString &id, QString &error);

    /// Whether it takes \a value, which has its type. A pure function.
    bool takes(const VeskValue &value) const;
};
