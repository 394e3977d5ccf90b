// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QMap>
#include <QMetaType>
#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

#include <iosfwd>

class CMPath;

/// The path with \a text appended to its base; the empty path stays as it is.
VESK_API CMPath operator+(const CMPath &path, const QString &text);

/// A worker's address of one screen, row or value: a prefix that names the worker, a base below it
/// and string parameters. A value: copy freely, safe to read from any thread.
///
/// Text form: "prefix:base?key=value&key=value", parameters in ascending order of their keys.
/// Everything but RFC 3986's unreserved characters (and "/" in the base) is percent-encoded UTF-8.
/// Reading it back gives an equal path, as long as the path's texts are Unicode (a lone surrogate
/// is written as U+FFFD) and the text form keeps to the limit of fromEncoded().
class VESK_API CMPath {
public:
    enum CompareMode { Whole = 0, IgnoreParams = 1 };
    using Params = QMap<QString, QString>;
    /// Keys and values, in ascending order of the keys.
    using ParamList = QVector<QPair<QString, QString>>;

    /// The empty path, which addresses nothing.
    CMPath() = default;
    /// Without a prefix, the empty path. A parameter may have any key, the empty one included.
    CMPath(const QString &prefix, const QString &base, const Params &params = {});

    /// Reads the text form. Damaged percent-encoding, a missing prefix, an entry without "=", a key
    /// that comes twice or a text over 64 Ki characters give the empty path. Characters that should
    /// have been encoded but divide nothing where they stand are read as they are; "+" is a plus.
    static CMPath fromEncoded(const QString &encoded);
    /// The path held by \a value, as itself or in its text form.
    static CMPath fromVariant(const QVariant &value);
    /// The text form; empty for the empty path.
    QString toEncoded() const;

    bool isEmpty() const { return m_prefix.isEmpty(); }
    const QString &prefix() const { return m_prefix; }
    /// The address below the worker, without its prefix: "browse/uri/Browse.ashx".
    const QString &base() const { return m_base; }
    /// A copy; to go through the parameters, take paramList().
    Params params() const;
    const ParamList &paramList() const { return m_params; }
    bool hasParams() const { return !m_params.isEmpty(); }
    bool hasParam(const QString &key) const;
    /// The parameter's value, empty when there is none.
    QString param(const QString &key) const;
    /// Sets a parameter, replacing one of the same key. The empty path stays as it is.
    void addParam(const QString &key, const QString &value);
    void removeParam(const QString &key);

    bool equals(const CMPath &other, int mode = Whole) const;
    /// Whether this path lies at or below \a start: the same prefix, a base that equals or
    /// continues its base at a "/" (an empty base is continued by every other), and all of its
    /// parameters.
    bool startsWith(const CMPath &start) const;

    bool operator==(const CMPath &other) const { return equals(other); }
    bool operator!=(const CMPath &other) const { return !equals(other); }
    bool operator<(const CMPath &other) const;

private:
    friend VESK_API CMPath operator+(const CMPath &path, const QString &text);

    QString m_prefix;
    QString m_base;
    /// A sorted list, not a map: paths have few parameters, and every row of a screen makes
    /// several.
    ParamList m_params;
};

Q_DECLARE_METATYPE(CMPath)

VESK_API uint qHash(const CMPath &path, uint seed = 0);
/// Prints the text form; parameters that are secrets print as "***".
VESK_API std::ostream &operator<<(std::ostream &out, const CMPath &path);
