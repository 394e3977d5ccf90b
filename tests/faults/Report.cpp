// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Report.h"

#include <algorithm>
#include <functional>
#include <sstream>

namespace {

std::string seconds(double value)
{
    if (value < 0)
        return "-";
    std::ostringstream out;
    out.precision(1);
    out << std::fixed << value << " s";
    return out.str();
}

std::string joined(const std::vector<std::string> &parts, const char *between)
{
    std::string all;
    for (const std::string &part : parts)
        all += (all.empty() ? "" : between) + part;
    std::replace(all.begin(), all.end(), '|', '/');
    return all;
}

const char *nameOf(Ending ending)
{
    switch (ending) {
    case Ending::Sound:
        return "heard";
    case Ending::Told:
        return "told";
    case Ending::SoundOrTold:
        return "heard or told";
    case Ending::Ended:
        return "ends";
    case Ending::Trying:
        return "tries on, told";
    }
    return "";
}

/// The last message is the one that describes the final state.
std::string toldShort(const Result &result)
{
    return result.figures.told.empty() ? "" : result.figures.told.back();
}

bool isBreak(const Result &result)
{
    return result.fault->expected.ending == Ending::Sound && result.fault->expected.silence <= 1;
}

Goal worst(const char *name, const std::vector<Result> &results, double limit,
    const std::function<double(const Result &)> &figure)
{
    double most = -1;
    std::string where;
    for (const Result &result : results) {
        if (figure(result) > most) {
            most = figure(result);
            where = result.fault->name;
        }
    }
    return {name, seconds(most) + (where.empty() ? "" : " (" + where + ")"), most <= limit};
}

} // namespace

std::string lineOf(const Result &result)
{
    const Figures &figures = result.figures;
    std::ostringstream out;
    out << "| " << result.fault->name << " | " << nameOf(result.fault->expected.ending) << " | "
        << seconds(figures.toSound) << " | " << seconds(figures.silence) << " | "
        << seconds(figures.falsePlaying) << " | " << seconds(figures.noticed) << " | "
        << seconds(figures.stopped) << " | " << figures.connects << " | "
        << static_cast<int>(figures.megabytes) << " MB | " << toldShort(result) << " | "
        << (result.passed() ? "as it should" : "**" + joined(result.failures, "; ") + "**") << " |";
    return out.str();
}

std::string tableOf(const std::vector<Result> &results)
{
    std::string table
        = "| what goes wrong | expected | to sound | longest silence | \"playing\" without samples "
          "| noticed after | over after | connections | memory | what was told | verdict |\n"
          "|---|---|---|---|---|---|---|---|---|---|---|\n";
    for (const Result &result : results)
        table += lineOf(result) + '\n';
    return table;
}

std::vector<Goal> goalsOf(const std::vector<Result> &results)
{
    std::vector<Goal> goals {
        worst("longest silence after a break, at most 1 s", results, 1,
            [](const Result &result) { return isBreak(result) ? result.figures.silence : -1; }),
        worst("a dead stream is noticed in 10 s", results, Expected::Noticed,
            [](const Result &result) {
                return result.fault->expected.noticed <= Expected::Noticed ? result.figures.noticed
                                                                           : -1;
            }),
        worst("longest \"playing\" without samples, at most 3 s", results, Expected::FalsePlaying,
            [](const Result &result) { return result.figures.falsePlaying; })};

    const auto isRecoverable
        = [](const Result &result) { return result.fault->expected.ending == Ending::Sound; };
    const auto all = std::count_if(results.begin(), results.end(), isRecoverable);
    const auto back = std::count_if(results.begin(), results.end(), [&](const Result &result) {
        return isRecoverable(result) && result.figures.soundsAtEnd && result.figures.stopped < 0;
    });
    goals.push_back({"what can be heard again is heard again without a user",
        std::to_string(back) + " of " + std::to_string(all), back == all});

    const auto passed = std::count_if(
        results.begin(), results.end(), [](const Result &result) { return result.passed(); });
    goals.push_back({"everything is as it should be",
        std::to_string(passed) + " of " + std::to_string(results.size()),
        passed == static_cast<std::ptrdiff_t>(results.size())});
    return goals;
}
