// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>
#include <QStringView>
#include <QVector>

#include <initializer_list>

class CMPath;

/// A template for paths that differ only in the values of some parameters, as the paths of a
/// screen's rows do. The common parts are encoded once; toEncoded() fills in the values without
/// creating a CMPath. A value type: copy freely, safe to read from any thread.
class VESK_API CMPathForm {
public:
    /// A parameter whose value is filled in.
    struct Blank {
        QString key;
        /// Whether the parameter is omitted when its value is empty.
        bool optional = false;
    };

    /// The keys of \a blanks must be in ascending order, and none of them may be a parameter of \a
    /// path.
    CMPathForm(const CMPath &path, std::initializer_list<Blank> blanks);

    /// The text form of the path with \a values, one per blank and in the same order: what
    /// CMPath::toEncoded() would return. Empty for the empty path.
    QString toEncoded(std::initializer_list<QStringView> values) const;

private:
    /// A blank and what precedes it, encoded. Every parameter begins with "&"; toEncoded() replaces
    /// the first one by "?".
    struct Part {
        QString before; ///< the path's own parameters before an optional blank
        QString key; ///< "&key=", after the parameters before it if the blank is not optional
        bool optional;
    };

    QString m_start; ///< "prefix:base"
    QVector<Part> m_parts;
    QString m_end; ///< the path's own parameters after the last blank
};
