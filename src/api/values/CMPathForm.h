// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>
#include <QStringView>
#include <QVector>

#include <initializer_list>

class CMPath;

/// A path in which the values of some parameters are left blank. The rows of a screen have paths
/// that differ in such values only: a form encodes what they have in common once, and fills in the
/// rest without making a path. A value: copy freely, safe to read from any thread.
class VESK_API CMPathForm {
public:
    /// A parameter to be filled in.
    struct Blank {
        QString key;
        /// Whether paths in which it is empty do without it.
        bool optional = false;
    };

    /// \a path with \a blanks, whose keys ascend and are none of the path's own.
    CMPathForm(const CMPath &path, std::initializer_list<Blank> blanks);

    /// What CMPath::toEncoded() gives for the path with \a values, one for each blank in their
    /// order, as parameters. Empty for the empty path.
    QString toEncoded(std::initializer_list<QStringView> values) const;

private:
    /// Encoded, each parameter with a "&" before it.
    struct Part {
        QString before; ///< what stands there whether the blank is left out or not
        QString key; ///< "&key=", with what comes before it when the blank is never left out
        bool optional;
    };

    QString m_start; ///< "prefix:base"
    QVector<Part> m_parts;
    QString m_end; ///< the path's own parameters that come behind all blanks
};
