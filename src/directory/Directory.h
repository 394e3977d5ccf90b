// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The web API as one function from requests to answers: the data, the members and the pages
/// together, without a server around them. Not safe for several threads, because members change.
#pragma once

#include "directory/AccountsFile.h"
#include "directory/Catalog.h"
#include "directory/Members.h"
#include "directory/Search.h"
#include "directory/Streams.h"

#include <memory>

namespace directory {

class Directory {
public:
    /// `members` are what `accounts` held. Without accounts they are forgotten at the end.
    Directory(Catalog catalog, Clock clock, std::unique_ptr<AccountsFile> accounts = nullptr,
        MembersContent members = {});
    /// Writes the accounts once more if the last write failed: the file may hold the change that
    /// was taken back.
    ~Directory();
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;

    const Catalog &catalog() const { return m_catalog; }
    /// Unknown paths give 404.
    Answer handle(const ApiRequest &request);

private:
    /// The answer of a page that may change members. A change is on the disk before this returns;
    /// if it cannot be written it is rolled back, and the answer is an error.
    Answer kept(const Context &context, Answer (*page)(const Context &));

    const Catalog m_catalog;
    const Search m_search;
    const Clock m_clock;
    Streams m_streams;
    const std::unique_ptr<AccountsFile> m_accounts; ///< may be null
    Members m_members;
    bool m_unsure = false; ///< the last write failed, so the file may differ from m_members
};

} // namespace directory
