// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <QPair>
#include <QRegularExpression>
#include <QUrl>
#include <QVector>

/// The addresses at which services keep spoken messages ("not available in your country"), which
/// they name where a station cannot be played, and what the messages say. A value: copy freely,
/// safe to read from any thread.
class SpokenExcuses {
public:
    /// \a file is how the paths of such addresses end, in any case; "*" stands for anything but a
    /// slash.
    void add(const QString &file, const TrString &words);
    /// Empty for an address that is no excuse.
    TrString wordsOf(const QUrl &url) const;

private:
    QVector<QPair<QRegularExpression, TrString>> m_excuses;
};
