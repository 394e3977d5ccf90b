// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QCache>

class CMPath;

/// The paths that were last offered to clients, by their digests. Main thread.
class OfferedPaths {
public:
    static constexpr int DefaultCapacity = 2000;

    explicit OfferedPaths(int capacity = DefaultCapacity);

    void add(const CMPath &path);
    /// This very path, however it is written.
    bool contains(const CMPath &path) const;
    int size() const { return m_digests.count(); }

private:
    struct Nothing { };

    QCache<QByteArray, Nothing> m_digests;
};
