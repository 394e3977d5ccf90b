// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/TestDirectory.h"

#include "directory/CatalogLoader.h"

namespace directory::test {

const Catalog &shippedCatalog()
{
    static const Catalog catalog = *loadCatalog(DIRECTORY_DATA);
    return catalog;
}

ApiRequest requestFor(const std::string &target, const std::string &method)
{
    ApiRequest request;
    const std::size_t question = std::min(target.find('?'), target.size());
    request.method = method;
    request.path = percentDecoded(target.substr(0, question), false);
    request.query
        = Query::parse(std::string_view(target).substr(std::min(question + 1, target.size())));
    request.host = "directory.test:8080";
    return request;
}

Answer DirectoryTest::answer(const std::string &target, const std::string &method)
{
    return m_directory.handle(requestFor(target, method));
}

Json DirectoryTest::json(const std::string &target, const std::string &method)
{
    const Answer given = answer(target, method);
    EXPECT_EQ(given.contentType, "application/json; charset=utf-8") << target;
    Json parsed = Json::parse(given.body, nullptr, false);
    EXPECT_TRUE(parsed.is_object()) << target << " gave " << given.body;
    return parsed;
}

const Station &DirectoryTest::stationNamed(const std::string &name) const
{
    for (const Station &station : catalog().stations) {
        if (station.name == name)
            return station;
    }
    throw std::runtime_error("no station " + name);
}

const Show &DirectoryTest::showNamed(const std::string &title) const
{
    for (const Show &show : catalog().shows) {
        if (show.title == title)
            return show;
    }
    throw std::runtime_error("no show " + title);
}

std::string statusOf(const Json &answer)
{
    return answer["head"].value("status", "");
}

std::string faultCodeOf(const Json &answer)
{
    return answer["head"].value("fault_code", "");
}

Json sectionOf(const Json &body, const std::string &key)
{
    for (const Json &each : body) {
        if (each.contains("children") && each.value("key", "") == key)
            return each;
    }
    return {};
}

std::vector<std::string> valuesOf(const Json &rows, const std::string &key)
{
    std::vector<std::string> values;
    for (const Json &row : rows)
        values.push_back(row.value(key, ""));
    return values;
}

Json rowWith(const Json &rows, const std::string &key, const std::string &value)
{
    for (const Json &row : rows) {
        if (row.value(key, "") == value)
            return row;
    }
    return {};
}

std::string targetOf(const Json &row)
{
    const std::string base = "http://opml.radiotime.com";
    const std::string url = row.value("URL", "");
    EXPECT_EQ(url.compare(0, base.size() + 1, base + '/'), 0) << url;
    return url.substr(std::min(base.size(), url.size()));
}

} // namespace directory::test
