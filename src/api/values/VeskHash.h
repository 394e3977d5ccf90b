// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/core/log.h"
#include "api/core/qtversions.h"

#include <QMetaType>
#include <QString>
#include <QVariant>

#include <utility>

/// Defines a function \a name() that returns the hash key \a text, created once.
#define VESK_KEY(name, text)                                                                       \
    const QString &name()                                                                          \
    {                                                                                              \
        static const QString key = QStringLiteral(text);                                           \
        return key;                                                                                \
    }

/// A hash of named values; the base class of all structured values in requests and responses.
/// Implicitly shared: copying is cheap, and each thread may use its own copy. Derived classes add
/// typed accessors but no data, so each can be constructed from a plain hash and converted back; a
/// missing entry or one of another type reads as the accessor's empty value.
class VESK_API VeskHash {
public:
    VeskHash() = default;
    VeskHash(const QVariantHash &hash)
        : m_hash(hash)
    {
    }
    VeskHash(QVariantHash &&hash) noexcept
        : m_hash(std::move(hash))
    {
    }

    bool isEmpty() const { return m_hash.isEmpty(); }
    int size() const { return m_hash.size(); }
    bool contains(const QString &key) const { return m_hash.contains(key); }
    QVariant value(const QString &key) const { return m_hash.value(key); }
    QVariant operator[](const QString &key) const { return m_hash.value(key); }
    void insert(const QString &key, QVariant value) { m_hash[key] = std::move(value); }
    void remove(const QString &key) { m_hash.remove(key); }
    void reserve(int size) { m_hash.reserve(size); }

    const QVariantHash &toHash() const { return m_hash; }
    operator QVariant() const { return m_hash; }

    bool operator==(const VeskHash &other) const { return m_hash == other.m_hash; }
    bool operator!=(const VeskHash &other) const { return m_hash != other.m_hash; }

protected:
    /// The entry, null when there is none. Unlike value(), makes no copy.
    const QVariant *find(const QString &key) const
    {
        const auto it = m_hash.constFind(key);
        return it == m_hash.constEnd() ? nullptr : &it.value();
    }
    /// The entry as text: strings unchanged, numbers and booleans in text form, anything else
    /// empty.
    QString text(const QString &key) const;
    /// The entry as an int, parsed if it is a string; \a otherwise when it is missing, not a whole
    /// number or out of range.
    int number(const QString &key, int otherwise = 0) const;
    bool flag(const QString &key) const;
    QVariantHash hash(const QString &key) const;
    /// The entry as a list; a single hash reads as a list with that one element.
    QVariantList list(const QString &key) const;

private:
    QVariantHash m_hash;
};

Q_DECLARE_TYPEINFO(VeskHash, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(VeskHash)

/// Registers T, a VeskHash, as a meta-type: QVariants that hold one compare by content and convert
/// to and from a plain hash. Call once per type.
template <class T>
bool veskRegisterHashType(const char *name)
{
    qRegisterMetaType<T>(name);
    return veskRegisterEquals<T>()
        && QMetaType::registerConverter<T, QVariantHash>(
            [](const T &value) { return value.toHash(); })
        && QMetaType::registerConverter<QVariantHash, T>(
            [](const QVariantHash &hash) { return T(hash); });
}

/// Prints "{key: value, ...}" in key order, with passwords and session ids as "***".
VESK_API std::ostream &operator<<(std::ostream &out, const VeskHash &hash);
