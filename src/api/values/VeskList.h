// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QVariantList>

/// A QVariantList of hashes as a list of T, a VeskHash. Elements are converted on access; one that
/// is not a hash reads as an empty T. Converts to and from QVariantList.
template <class T>
class VeskList {
public:
    VeskList() = default;
    VeskList(const QVariantList &list)
        : m_list(list)
    {
    }

    bool isEmpty() const { return m_list.isEmpty(); }
    int size() const { return m_list.size(); }
    T at(int index) const { return T(m_list.at(index).toHash()); }
    T first() const { return at(0); }
    /// Whether \a matches holds for one of the elements.
    template <class Predicate>
    bool contains(Predicate matches) const
    {
        for (const QVariant &entry : m_list) {
            if (matches(T(entry.toHash())))
                return true;
        }
        return false;
    }
    void append(const T &value) { m_list.append(QVariant(value.toHash())); }
    void insert(int index, const T &value) { m_list.insert(index, QVariant(value.toHash())); }

    const QVariantList &toList() const { return m_list; }
    operator QVariant() const { return m_list; }

private:
    QVariantList m_list;
};
