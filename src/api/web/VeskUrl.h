// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QPair>
#include <QString>

#include <iosfwd>

/// A URL as the directory uses them: scheme, authority, path, query items in their order, fragment
/// (RFC 3986). Parts that are not changed are written byte for byte as they were read, so a foreign
/// stream address survives; what would break a request line (blanks, control and non-ASCII
/// characters) is percent-encoded on reading. Reading is lenient and never fails: a relative
/// reference has no scheme and no authority, a damaged escape stands for itself and bytes that are
/// no UTF-8 read as U+FFFD. A value: copy freely, any thread.
///
/// Items that are added are percent-encoded, a blank as %20 and a plus as %2B; reading takes "+" in
/// a query for a blank.
class VESK_API VeskUrl {
public:
    using QueryItems = QList<QPair<QString, QString>>;

    VeskUrl() = default;
    explicit VeskUrl(const QString &url);
    static VeskUrl fromEncoded(const QByteArray &url);

    bool isEmpty() const { return m_url.isEmpty(); }
    QString scheme() const { return m_url.left(m_schemeSize); }
    /// An empty scheme makes a relative reference; a text that is no scheme changes nothing.
    void setScheme(const QString &scheme);
    /// "host:port" with whatever stands before an "@".
    QString authority() const;
    /// The host's name or address without port, user or brackets.
    QString host() const;

    /// Decoded.
    QString path() const;
    /// Behind an authority a missing "/" at the start is added.
    void setPath(const QString &path);

    /// Decoded, in the URL's order; an item without "=" has an empty value, nothing between two "&"
    /// is no item.
    QueryItems queryItems() const;
    /// Replaces the whole query.
    void setQueryItems(const QueryItems &items);
    void addQueryItem(const QString &key, const QString &value);
    bool hasQueryItem(const QString &key) const;
    /// The first item of that key; empty when there is none.
    QString queryItemValue(const QString &key) const;
    /// Removes the first item of that key.
    void removeQueryItem(const QString &key);

    /// The whole URL, percent-encoded: plain ASCII without blanks and control characters.
    QString toString() const { return m_url; }
    QByteArray toEncoded() const { return m_url.toLatin1(); }
    /// toString() with passwords, session ids and user information as "***".
    QString toDisplayString() const;
    /// The same for an address that is just a text; one without secrets stays as it is.
    static QString displayText(const QString &address);

    bool operator==(const VeskUrl &other) const { return m_url == other.m_url; }
    bool operator!=(const VeskUrl &other) const { return !(*this == other); }

private:
    /// One query item in m_url: [begin, end), its "=" at equals, which is end when there is none.
    struct Item {
        int begin;
        int equals;
        int end;
    };

    QString displayed(int nesting) const;
    static QString withoutSecrets(const QStringRef &items, int nesting);
    static QString withoutNestedSecrets(const QStringRef &value, int nesting);
    void findParts();
    int authorityEnd() const { return m_path; }
    int pathEnd() const;
    int queryEnd() const;
    void replacePath(const QString &encodedPath);
    bool nextItem(int &position, Item &item) const;
    bool findItem(const QString &key, Item &item) const;
    QString valueOf(const Item &item) const;

    /// The whole, encoded, and where its parts begin: the delimiters before them are not part of
    /// them. An absent part begins at -1.
    QString m_url;
    int m_schemeSize = 0;
    int m_authority = -1;
    int m_path = 0;
    int m_query = -1;
    int m_fragment = -1;
};

Q_DECLARE_TYPEINFO(VeskUrl, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(VeskUrl)

/// Prints toDisplayString().
VESK_API std::ostream &operator<<(std::ostream &out, const VeskUrl &url);
