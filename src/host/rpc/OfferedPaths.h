// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QHash>

#include <list>

class CMPath;

/// The paths that were last offered to clients, by their digests. Main thread.
class OfferedPaths {
public:
    static constexpr int DefaultCapacity = 2000;

    explicit OfferedPaths(int capacity = DefaultCapacity);

    void add(const CMPath &path);
    /// This very path, however it is written.
    bool contains(const CMPath &path) const;
    int size() const { return m_byDigest.size(); }

private:
    using Digests = std::list<QByteArray>;

    int m_capacity;
    Digests m_digests; ///< the latest first
    QHash<QByteArray, Digests::iterator> m_byDigest;
};
