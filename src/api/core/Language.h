// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <QString>
#include <QStringList>

/// The UI language of the process and its translation catalogues (Qt's .qm files): the host's,
/// named "vesk_LANGUAGE.qm", and those of plug-ins. Switch on the main thread; read from any
/// thread.
class VESK_API Language {
public:
    /// Wraps a text that is not translated, such as a name from an external source.
    static TrString ntr(const QString &text);

    /// Makes \a language (a BCP 47 tag, "de" or "de-DE") current, with the catalogue from the first
    /// of \a folders that has one for the tag or for the tag without its last subtags. English
    /// needs no catalogue. Returns false, and makes the source texts current, when there is no
    /// catalogue. Main thread only.
    static bool setCurrent(const QString &language, const QStringList &folders);

    /// Adds catalogues for the texts of a plug-in: "NAME_LANGUAGE.qm" in \a folder, looked up like
    /// the host's. A text that the host's catalogue translates stays as it is there. Before
    /// setCurrent(), on the main thread; a second time the same does nothing.
    static void addCatalogues(const QString &folder, const QString &name);

    /// The tag last passed to setCurrent(); "en" initially.
    static QString current();
};
