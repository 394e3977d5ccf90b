// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <algorithm>
#include <initializer_list>
#include <vector>

/// Finds a role among a few by its name. Used for every role of every row of a screen, mostly
/// without a match: most names differ in length, so that few are compared. find() may be called
/// from any thread.
class CMRoleTable {
public:
    CMRoleTable(std::initializer_list<QString> names)
    {
        int index = 0;
        for (const QString &name : names) {
            const auto length = static_cast<std::size_t>(name.size());
            m_byLength.resize(std::max(m_byLength.size(), length + 1));
            m_byLength[length].push_back({name, index++});
        }
    }

    /// The role's place among the names given, -1 when it is none of them.
    int find(const QString &role) const
    {
        const auto length = static_cast<std::size_t>(role.size());
        if (length >= m_byLength.size())
            return -1;
        for (const Entry &entry : m_byLength[length]) {
            if (entry.name.constData() == role.constData() || entry.name == role)
                return entry.index;
        }
        return -1;
    }

private:
    struct Entry {
        QString name;
        int index;
    };

    std::vector<std::vector<Entry>> m_byLength;
};
