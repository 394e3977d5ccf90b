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
    /// Has the file hold what was answered, if a write that failed could have changed it.
    ~Directory();
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;

    const Catalog &catalog() const { return m_catalog; }
    /// Always gives an answer; 404 for a path that means nothing.
    Answer handle(const ApiRequest &request);

private:
    /// The answer of a page that may change members. What it changed is in their file before the
    /// answer goes; what cannot be kept there is taken back, and the answer is an error.
    Answer kept(const Context &context, Answer (*page)(const Context &));

    const Catalog m_catalog;
    const Search m_search;
    const Clock m_clock;
    Streams m_streams;
    const std::unique_ptr<AccountsFile> m_accounts; ///< may be null
    Members m_members;
    bool m_unsure = false; ///< whether the file holds the members: a write has failed since
};

} // namespace directory
