// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Trial.h"

#include "tests/faults/Stage.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <sstream>

namespace {

constexpr std::chrono::milliseconds Tick {100};
/// Samples within this many seconds of a moment count as sound at that moment.
constexpr double SoundWithin = 1.5;
constexpr double HealthyToSound = 5;
constexpr double SlowestAnswer = 2;
constexpr double MostMegabytes = 300;
/// A host that uses this much memory is killed before the machine suffers.
constexpr double TooManyMegabytes = 1200;

double seconds(Clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

std::string number(double value)
{
    std::ostringstream out;
    out.precision(1);
    out << std::fixed << value;
    return out.str();
}

std::vector<Clock::time_point> loudTimes(const Watch &watch)
{
    std::vector<Clock::time_point> times;
    for (const Watch::Samples &samples : watch.samples()) {
        if (samples.loud)
            times.push_back(samples.at);
    }
    return times;
}

double longestGap(const std::vector<Clock::time_point> &times)
{
    double longest = 0;
    for (std::size_t i = 1; i < times.size(); ++i)
        longest = std::max(longest, seconds(times[i] - times[i - 1]));
    return longest;
}

/// The longest stretch of "playing" in which no samples were written.
double falsePlaying(const Watch &watch)
{
    std::vector<Clock::time_point> written;
    for (const Watch::Samples &samples : watch.samples())
        written.push_back(samples.at);
    double longest = 0;
    const std::vector<Watch::State> states = watch.states();
    for (std::size_t i = 0; i < states.size();) {
        std::size_t end = i;
        while (end < states.size() && states[end].state == 2)
            ++end;
        if (end > i) {
            std::vector<Clock::time_point> marks {states[i].at};
            const Clock::time_point last = states[std::min(end, states.size() - 1)].at;
            std::copy_if(written.begin(), written.end(), std::back_inserter(marks),
                [&](Clock::time_point at) { return at > states[i].at && at < last; });
            marks.push_back(last);
            longest = std::max(longest, longestGap(marks));
        }
        i = end + 1;
    }
    return longest;
}

/// The longest time from a fault to the first reaction: a new connection, or a state other than
/// "playing" with a message.
double longestUnnoticed(const Stage &stage, const Watch &watch)
{
    double longest = -1;
    const std::vector<Clock::time_point> arrivals = stage.arrivals();
    const std::vector<Watch::State> states = watch.states();
    for (const Clock::time_point fault : stage.faults()) {
        Clock::time_point noticed = Clock::now();
        const auto arrival = std::upper_bound(arrivals.begin(), arrivals.end(), fault);
        if (arrival != arrivals.end())
            noticed = *arrival;
        for (const Watch::State &state : states) {
            const bool says = !state.error.isEmpty() || !state.problem.isEmpty();
            if (state.at > fault && says)
                noticed = std::min(noticed, state.at);
        }
        longest = std::max(longest, seconds(noticed - fault));
    }
    return longest;
}

std::vector<std::string> wordsOf(const Watch &watch)
{
    std::vector<std::string> told;
    for (const Watch::State &state : watch.states()) {
        for (const QString &words : {state.error, state.problem}) {
            const std::string said = words.toStdString();
            if (!said.empty() && std::find(told.begin(), told.end(), said) == told.end())
                told.push_back(said);
        }
    }
    return told;
}

/// When the play was over. The state before its start is the same.
std::optional<Clock::time_point> timeOfEnd(const Watch &watch)
{
    bool begun = false;
    for (const Watch::State &state : watch.states()) {
        if (state.state == 0 && (begun || !state.error.isEmpty()))
            return state.at;
        begun = begun || state.state > 0;
    }
    return {};
}

Figures measure(const Stage &stage, const Watch &watch)
{
    Figures figures;
    const Clock::time_point end = Clock::now();
    Clock::time_point over = end;
    const auto stopped = timeOfEnd(watch);
    if (stopped) {
        over = *stopped;
        figures.stopped = seconds(over - watch.begin());
    }
    std::vector<Clock::time_point> loud = loudTimes(watch);
    if (!loud.empty()) {
        figures.toSound = seconds(loud.front() - watch.begin());
        figures.soundsAtEnd = seconds(end - loud.back()) < SoundWithin;
        // After the end silence no longer counts.
        loud.push_back(std::max(over, loud.back()));
        figures.silence = longestGap(loud);
    }
    figures.falsePlaying = falsePlaying(watch);
    figures.noticed = longestUnnoticed(stage, watch);
    figures.slowestAnswer = watch.slowestAnswer();
    figures.megabytes = watch.megabytes();
    figures.connects = static_cast<int>(stage.arrivals().size());
    figures.told = wordsOf(watch);
    return figures;
}

bool wasSaid(const std::vector<std::string> &told, const char *words)
{
    const QRegularExpression wanted(
        QString::fromUtf8(words), QRegularExpression::CaseInsensitiveOption);
    return std::any_of(told.begin(), told.end(),
        [&](const std::string &each) { return QString::fromStdString(each).contains(wanted); });
}

class Judge {
public:
    Judge(const Fault &fault, const Figures &figures)
        : m_expected(fault.expected)
        , m_figures(figures)
    {
    }

    std::vector<std::string> failures()
    {
        judgeEnding();
        atMost("playing without samples for", m_figures.falsePlaying, Expected::FalsePlaying);
        if (m_figures.noticed >= 0)
            atMost("noticed after", m_figures.noticed, m_expected.noticed);
        atMost("the host answered after", m_figures.slowestAnswer, SlowestAnswer);
        if (m_figures.connects > m_expected.connects)
            fail(std::to_string(m_figures.connects) + " connections");
#ifndef __SANITIZE_ADDRESS__
        if (m_figures.megabytes > MostMegabytes)
            fail(number(m_figures.megabytes) + " MB");
#endif
        return m_failures;
    }

private:
    void judgeEnding()
    {
        const bool sounds = m_figures.soundsAtEnd && m_figures.stopped < 0;
        const bool over = m_figures.stopped >= 0;
        const bool said = wasSaid(m_figures.told, m_expected.words);
        switch (m_expected.ending) {
        case Ending::SoundOrTold:
            // A stream that has played is never given up.
            if (sounds || (!over && m_figures.toSound >= 0 && said))
                return;
            [[fallthrough]];
        case Ending::Told:
            if (!over)
                return fail("not over");
            atMost("over after", m_figures.stopped, m_expected.told);
            if (!said)
                fail("not told in the right words");
            return;
        case Ending::Sound:
            if (!sounds)
                return fail(over ? "it is over" : "no sound at the end");
            atMost("sound after", m_figures.toSound, m_expected.toSound);
            atMost("silent for", m_figures.silence, m_expected.silence);
            return;
        case Ending::Ended:
            if (!over || !m_figures.told.empty())
                fail(over ? "an error at its end" : "not over");
            return;
        case Ending::Trying:
            if (over || !said)
                fail(over ? "it is over" : "not told in the right words");
            return;
        }
    }

    void atMost(const char *what, double measured, double limit)
    {
        if (measured > limit)
            fail(std::string(what) + ' ' + number(measured) + " s");
    }

    void fail(const std::string &what)
    {
        m_failures.push_back(what);
    }

    const Expected &m_expected;
    const Figures &m_figures;
    std::vector<std::string> m_failures;
};

/// Waits for the end of the watch, or until the play is over for good.
void wait(const Fault &fault, const Site &site, Stage &stage, const Watch &watch)
{
    std::size_t done = 0;
    const auto elapsed = [&] { return seconds(Clock::now() - watch.begin()); };
    while (elapsed() < fault.seconds) {
        if (done < site.actions.size() && elapsed() >= site.actions[done].at)
            site.actions[done++].act(stage);
        stage.look();
        if (timeOfEnd(watch) && done == site.actions.size())
            return;
        if (watch.megabytes() > TooManyMegabytes)
            return;
        std::this_thread::sleep_for(Tick);
    }
}

/// What is wrong with the host after the fault: it must stop, and play a healthy stream.
std::string goesOn(Stage &stage, const HostLink &link)
{
    if (link.call("player.stop", {}, 2000).isEmpty())
        return "the host does not stop";
    Watch watch(stage.product().hostUrl(), stage.wav(), stage.pid());
    stage.play("http://radio.test/healthy", true, link);
    while (loudTimes(watch).empty()) {
        if (seconds(Clock::now() - watch.begin()) > HealthyToSound)
            return "the next station is not heard";
        std::this_thread::sleep_for(Tick);
    }
    return stage.end();
}

} // namespace

Result playOut(const Fault &fault, const QString &folder)
{
    Result result;
    result.fault = &fault;
    const Site site = fault.site();
    Stage stage(site, folder);
    if (!stage.isUp()) {
        result.failures = {"the host did not start"};
        return result;
    }
    const HostLink link(stage.product().hostUrl());
    {
        Watch watch(stage.product().hostUrl(), stage.wav(), stage.pid());
        stage.play(site, link);
        wait(fault, site, stage, watch);
        result.figures = measure(stage, watch);
    }
    result.failures = Judge(fault, result.figures).failures();
    if (stage.wasAskedFor(site.forbidden))
        result.failures.push_back("what must not be asked for was");
    const std::string wrong = goesOn(stage, link);
    if (!wrong.empty()) {
        result.failures.push_back(wrong);
        stage.kill();
    }
    return result;
}
