// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A Directory with the shipped data file and a fixed clock, and helpers to query it.
#pragma once

#include "directory/Directory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace directory::test {

/// Monday 2026-03-16 07:30:00 UTC.
constexpr std::int64_t MondayMorning = 1773646200;

const Catalog &shippedCatalog();

/// "/Browse.ashx?c=music" as a request for the host "directory.test:8080".
ApiRequest requestFor(const std::string &target, const std::string &method = "GET");

class DirectoryTest : public testing::Test {
protected:
    Answer answer(const std::string &target, const std::string &method = "GET");
    Answer ask(const ApiRequest &request) { return m_directory.handle(request); }
    /// The parsed response; fails the test when it is not JSON.
    Json json(const std::string &target, const std::string &method = "GET");
    Json body(const std::string &target) { return json(target)["body"]; }

    const Catalog &catalog() const { return m_directory.catalog(); }
    const Station &stationNamed(const std::string &name) const;
    const Show &showNamed(const std::string &title) const;

    std::int64_t m_now = MondayMorning;

private:
    Directory m_directory {shippedCatalog(), [this] { return m_now; }};
};

std::string statusOf(const Json &answer);
std::string faultCodeOf(const Json &answer);
/// The section with that key; null when there is none.
Json sectionOf(const Json &body, const std::string &key);
std::vector<std::string> valuesOf(const Json &rows, const std::string &key);
/// The row with that key and value; null when there is none.
Json rowWith(const Json &rows, const std::string &key, const std::string &value);
/// The path and query of a row's link, for the next request.
std::string targetOf(const Json &row);

} // namespace directory::test
