// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

/// Of ASCII.
inline bool isLetterOrDigit(QChar c)
{
    const ushort code = c.unicode();
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z')
        || (code >= '0' && code <= '9');
}

/// Whether \a text has only letters and digits.
bool isWord(const QString &text);
/// Whether \a text is a path of names with letters, digits, ".", "-" and "_", with single "/"
/// between them, none beginning or ending with ".": no escapes, dot segments, empty segments, or
/// letters that a server may fold into ASCII.
bool isPlain(const QString &text);

/// Reads the members of one JSON object of a plug-in's descriptor. The first error is kept.
class MemberReader {
public:
    /// \a what stands in front of errors; empty for the whole descriptor.
    MemberReader(const QVariant &object, const QString &what, QString &error);

    void knowsOnly(const QStringList &names);

    bool has(const QString &name) const { return m_members.contains(name); }
    QVariant value(const QString &name) const { return m_members.value(name); }

    /// One line; empty when there is no such member.
    QString text(const QString &name);
    /// A text that has to be there.
    QString needed(const QString &name);
    /// One of \a names, as its index; 0 when there is no such member.
    int oneOf(const QString &name, const QStringList &names);
    bool flag(const QString &name);
    /// A list of texts that are not empty; with \a words of letters and digits only.
    QStringList texts(const QString &name, bool words = false);
    QVariantList list(const QString &name);
    /// The path of a screen, value or entry below the plug-in's root, in its text form; empty when
    /// there is no such member.
    QString pathBelowRoot(const QString &name);

    void fail(const QString &error);
    /// The same, for the member \a name: "\"name\" " and \a problem.
    void fail(const QString &name, const QString &problem);
    QString &error() { return m_error; }

private:
    const QVariantHash m_members;
    const QString m_what;
    QString &m_error;
};
