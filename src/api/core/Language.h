// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <QString>
#include <QStringList>

/// The UI language of the process and its translation catalogues (Qt's .qm files, named
/// "vesk_LANGUAGE.qm"). Switch on the main thread; read from any.
class VESK_API Language {
public:
    /// Marks a text as it stands, without translation: names that come from outside.
    static TrString ntr(const QString &text);

    /// Makes \a language (a BCP 47 tag, "de" or "de-DE") current, from the catalogue in the first
    /// of \a folders that has one for the tag, or for what is left of it when its last parts are
    /// dropped one by one. English needs no catalogue. Returns false, with the source texts
    /// current, when there is none.
    static bool setCurrent(const QString &language, const QStringList &folders);

    /// The tag that setCurrent was last given; "en" at start.
    static QString current();
};
