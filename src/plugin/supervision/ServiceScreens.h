// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskValue.h"

#include <QString>
#include <QStringList>
#include <QVariant>

/// Where a service has what other services may have as well. All paths are in their text form,
/// below the plug-in's root; empty: the service has none.
struct ServiceScreens {
    /// Its query rows are the searches.
    QString search;

    QString favorites;
    /// The entries of menus that add an item to the favorites or remove it, without parameters.
    QStringList favoriteToggles;
    /// The parameters of a menu's path that tell which item it is for.
    QStringList favoriteIds;

    QString account; ///< a value
    VeskValueType::Enum accountType = VeskValueType::none;

    QString importValue;
    QString exportValue;

    /// Reads the descriptor's member. Keeps the first \a error.
    static ServiceScreens read(const QVariant &member, QString &error);
};
