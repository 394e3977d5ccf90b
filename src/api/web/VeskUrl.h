// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/core/qtversions.h"

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QPair>
#include <QString>

#include <iosfwd>

/// A URL: scheme, authority, path, query items in order, fragment (RFC 3986). Components that are
/// not modified are kept byte for byte, so that the URLs of foreign streams survive; only what
/// would break a request line (spaces, control and non-ASCII characters) is percent-encoded on
/// parsing. Parsing is lenient and never fails: a relative reference has no scheme and no
/// authority, a malformed escape is taken literally and invalid UTF-8 decodes to U+FFFD. A value
/// type: copy freely, any thread.
///
/// Added items are percent-encoded, a space as %20 and a plus as %2B; when a query is decoded, "+"
/// is a space.
class VESK_API VeskUrl {
public:
    using QueryItems = QList<QPair<QString, QString>>;

    VeskUrl() = default;
    explicit VeskUrl(const QString &url);
    static VeskUrl fromEncoded(const QByteArray &url);

    bool isEmpty() const { return m_url.isEmpty(); }
    QString scheme() const { return m_url.left(m_schemeSize); }
    /// An empty scheme makes a relative reference; an invalid scheme changes nothing.
    void setScheme(const QString &scheme);
    /// "host:port", preceded by the user information and "@" if there is any.
    QString authority() const;
    /// The host's name or address without port, user or brackets.
    QString host() const;

    /// Decoded.
    QString path() const;
    /// Encodes \a path. After an authority, adds a missing "/" at its start.
    void setPath(const QString &path);

    /// Decoded, in the order of the URL. An item without "=" has an empty value; an empty item
    /// ("&&") is skipped.
    QueryItems queryItems() const;
    /// Replaces the whole query.
    void setQueryItems(const QueryItems &items);
    void addQueryItem(const QString &key, const QString &value);
    bool hasQueryItem(const QString &key) const;
    /// The value of the first item with that key; empty when there is none.
    QString queryItemValue(const QString &key) const;
    /// Removes the first item with that key.
    void removeQueryItem(const QString &key);

    /// The whole URL, percent-encoded: ASCII without spaces and control characters.
    QString toString() const { return m_url; }
    QByteArray toEncoded() const { return m_url.toLatin1(); }
    /// toString() with passwords, session ids, access keys and user information as "***".
    QString toDisplayString() const;
    /// The same for a URL in a string, which is returned unchanged when it contains no secrets.
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
    static QString withoutSecrets(const VeskStringRef &items, int nesting);
    static QString withoutNestedSecrets(const VeskStringRef &value, int nesting);
    void findParts();
    int authorityEnd() const { return m_path; }
    int pathEnd() const;
    int queryEnd() const;
    void replacePath(const QString &encodedPath);
    bool nextItem(int &position, Item &item) const;
    bool findItem(const QString &key, Item &item) const;
    QString valueOf(const Item &item) const;

    /// The whole URL, encoded, and the offsets of its components, after their delimiters; -1 for an
    /// absent component.
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
