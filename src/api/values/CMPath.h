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

/// The address of one screen, row or value of a worker: a prefix that names the worker, a base
/// below it and string parameters. A value type: copy freely, safe to read from any thread.
///
/// Text form: "prefix:base?key=value&key=value", parameters in ascending order of their keys.
/// Everything but RFC 3986's unreserved characters (and "/" in the base) is percent-encoded UTF-8.
/// Parsing it gives an equal path, provided that the path's texts are valid Unicode (a lone
/// surrogate is written as U+FFFD) and the text form is within the limit of fromEncoded().
class VESK_API CMPath {
public:
    enum CompareMode { Whole = 0, IgnoreParams = 1 };
    using Params = QMap<QString, QString>;
    /// Keys and values, in ascending order of the keys.
    using ParamList = QVector<QPair<QString, QString>>;

    /// The empty path, which addresses nothing.
    CMPath() = default;
    /// The empty path if \a prefix is empty. A parameter may have any key, the empty one included.
    CMPath(const QString &prefix, const QString &base, const Params &params = {});

    /// Parses the text form. Malformed percent-encoding, a missing prefix, a parameter without "=",
    /// a duplicate key or a text over 64 Ki characters gives the empty path. Unencoded characters
    /// that are not delimiters where they occur are taken literally; "+" is a plus, not a space.
    static CMPath fromEncoded(const QString &encoded);
    /// The path that \a value holds, as a CMPath or in its text form; otherwise the empty path.
    static CMPath fromVariant(const QVariant &value);
    /// The text form; empty for the empty path.
    QString toEncoded() const;

    bool isEmpty() const { return m_prefix.isEmpty(); }
    const QString &prefix() const { return m_prefix; }
    /// The part below the worker, without the prefix: "browse/uri/Browse.ashx".
    const QString &base() const { return m_base; }
    /// A copy; to iterate over the parameters, use paramList().
    Params params() const;
    const ParamList &paramList() const { return m_params; }
    bool hasParams() const { return !m_params.isEmpty(); }
    bool hasParam(const QString &key) const;
    /// The parameter's value; empty when there is no such parameter.
    QString param(const QString &key) const;
    /// Sets a parameter, replacing one of the same key. The empty path stays as it is.
    void addParam(const QString &key, const QString &value);
    void removeParam(const QString &key);

    bool equals(const CMPath &other, int mode = Whole) const;
    /// Whether this path is at or below \a start: the same prefix, a base that equals that of \a
    /// start or continues it at a "/" (every base continues an empty one), and all of its
    /// parameters.
    bool startsWith(const CMPath &start) const;

    bool operator==(const CMPath &other) const { return equals(other); }
    bool operator!=(const CMPath &other) const { return !equals(other); }
    bool operator<(const CMPath &other) const;

private:
    friend VESK_API CMPath operator+(const CMPath &path, const QString &text);

    QString m_prefix;
    QString m_base;
    /// A sorted list, not a map: paths have few parameters, and every row of a screen creates
    /// several paths.
    ParamList m_params;
};

Q_DECLARE_METATYPE(CMPath)

VESK_API uint qHash(const CMPath &path, uint seed = 0);
/// Prints the text form with the values of secret parameters as "***".
VESK_API std::ostream &operator<<(std::ostream &out, const CMPath &path);
