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
    /// Without accounts the members are forgotten at the end. Throws std::runtime_error when they
    /// cannot be read.
    Directory(Catalog catalog, Clock clock, std::unique_ptr<AccountsFile> accounts = nullptr);
    /// Tries once more to keep what could not be kept.
    ~Directory();
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;

    const Catalog &catalog() const { return m_catalog; }
    /// Always gives an answer; 404 for a path that means nothing.
    Answer handle(const ApiRequest &request);

private:
    /// What the members changed is in their file before the answer goes.
    Answer kept(Answer answer);
    void keep();

    const Catalog m_catalog;
    const Search m_search;
    const Clock m_clock;
    Streams m_streams;
    const std::unique_ptr<AccountsFile> m_accounts; ///< may be null
    Members m_members;
    bool m_unkept = false;
};

} // namespace directory
