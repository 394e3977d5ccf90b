/// The web API as one function from requests to answers: the data, the members and the pages
/// together, without a server around them. Not safe for several threads, because members change.
#pragma once

#include "directory/Catalog.h"
#include "directory/Members.h"
#include "directory/Search.h"
#include "directory/Streams.h"

namespace directory {

class Directory {
public:
    Directory(Catalog catalog, Clock clock);
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;

    const Catalog &catalog() const { return m_catalog; }
    /// Always gives an answer; 404 for a path that means nothing.
    Answer handle(const ApiRequest &request);

private:
    const Catalog m_catalog;
    const Search m_search;
    const Clock m_clock;
    Streams m_streams;
    Members m_members;
};

} // namespace directory
