// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/values/CMPath.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <array>

/// \file
/// Values as bytes, for the connection between processes of one machine: tagged, in the machine's
/// own byte order, every length in front of what it counts. The bytes of a value come from the
/// other process, which may be out of its mind, so reading trusts nothing in them.

/// Writes values one after another.
///
/// A QVariant may hold null, a bool, a number, a text, bytes, a path, a translatable text, lists
/// and hashes of these, and whatever converts to a hash, which is then read back as one. Anything
/// else is written as null.
class WireWriter {
public:
    WireWriter();

    void writeCount(quint64 count);
    void writeInt(qint64 number);
    void writeBool(bool flag) { writeByte(flag ? 1 : 0); }
    void writeByte(quint8 byte) { m_bytes.append(static_cast<char>(byte)); }
    void writeText(const QString &text);
    void writeBytes(const QByteArray &bytes);
    void writeTexts(const QStringList &texts);
    void writePath(const CMPath &path);
    void writeTrString(const TrString &text);
    void writeHash(const QVariantHash &hash);
    void writeVariant(const QVariant &value);

    const QByteArray &bytes() const { return m_bytes; }
    QByteArray &bytes() { return m_bytes; }

private:
    void writeTag(quint8 tag) { writeByte(tag); }
    void writeKey(const QString &key);
    void writeSharedText(const QString &text);
    template <class Map>
    void writeEntries(const Map &map);
    char *grow(int size);

    QByteArray m_bytes;
    /// Keys come again and again: each is written once, then by its number. The same goes for texts
    /// that are one in memory, as the rows of a screen have them.
    QHash<QString, int> m_keys;
    QHash<const QChar *, int> m_texts;
    struct RecentKey {
        quintptr address = 0;
        int number = 0;
    };
    std::array<RecentKey, 64> m_recentKeys;
    int m_temporaries = 0; ///< what is written now is gone afterwards: its address means nothing
};

/// Reads what a WireWriter wrote, in the same order. After the first thing that cannot be read
/// isOk() is false, and everything else reads empty. Keeps a reference to the bytes.
class WireReader {
public:
    /// Lists and hashes lie at most this deep inside each other.
    static constexpr int MaxDepth = 64;
    /// And hold at most this many values, with texts of so many characters, in all. What is written
    /// once and then by its number counts each time: whoever goes through the values meets it so
    /// often.
    static constexpr int MaxValues = 2'000'000;
    static constexpr qint64 MaxCharacters = 64 * 1024 * 1024;

    explicit WireReader(const QByteArray &bytes, int from = 0);

    bool isOk() const { return m_ok; }
    /// Whether everything was read, to the last byte.
    bool isAtEnd() const { return m_ok && m_next == m_end; }

    quint64 readCount();
    qint64 readInt();
    bool readBool() { return readByte() != 0; }
    quint8 readByte();
    QString readText();
    QByteArray readBytes();
    QStringList readTexts();
    /// Empty for a text that is no path.
    CMPath readPath();
    TrString readTrString();
    QVariantHash readHash();
    QVariant readVariant();

private:
    int left() const { return static_cast<int>(m_end - m_next); }
    void fail();
    /// A count of things of which each takes at least \a least bytes.
    int readSize(int least);
    bool enter();
    void spend(qint64 values, qint64 characters);
    QString readKey();
    QString readSharedText();
    QVariant readTagged(quint8 tag);
    QVariantList readList();
    template <class Map>
    Map readEntries();

    const char *m_next;
    const char *m_end;
    bool m_ok = true;
    int m_depth = 0;
    qint64 m_values = 0;
    qint64 m_characters = 0;
    QVector<QString> m_keys;
    QVector<QString> m_texts;
};
