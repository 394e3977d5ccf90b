// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/Footprint.h"
#include "tests/faults/Stage.h"

#include <cstdio>
#include <random>
#include <vector>

/// A long run of one host: stations are switched and paused, streams and the directory fail,
/// processes are killed, clients come and go. Every half minute everything stops for a moment while
/// the host's footprint is recorded: only such moments can be compared.
class Soak {
public:
    struct Counts {
        int switches = 0;
        int badStreams = 0;
        int pauses = 0;
        int faults = 0; ///< of the directory and its streams
        int deaths = 0; ///< of processes that the host had started
        int clients = 0;
        int checks = 0; ///< of a healthy station
        int notHeard = 0; ///< within eight seconds
        int slowAnswers = 0; ///< of more than two seconds, or none
        double slowestAnswer = 0;
    };
    struct Sample {
        double seconds;
        bool quiet; ///< nothing plays
        Footprint footprint;
    };

    /// The same \a seed gives the same actions, as far as timing allows. Appends samples to \a csv
    /// as they are taken.
    Soak(const QString &folder, unsigned seed, std::FILE *csv);

    bool isUp() const { return m_stage.isUp(); }
    /// Returns early when the host has ended or stopped answering.
    void run(double seconds);
    /// Ends the host; returns what was wrong with its end.
    std::string end();

    const Counts &counts() const { return m_counts; }
    const std::vector<Sample> &samples() const { return m_samples; }

private:
    using Deed = void (Soak::*)();

    void switchStation();
    void playBadStream();
    void pauseAndResume();
    void disturbDirectory();
    void killProcess();
    void churnClients();
    void checkHealthy();
    void sample();
    void listen(double least, double most);
    QVariantHash ask(const char *method, const QVariantHash &params = {});
    template <class List>
    const auto &oneOf(const List &list);
    double elapsed() const;
    bool isDead() const;

    Stage m_stage;
    const HostLink m_link;
    std::mt19937 m_random;
    std::FILE *const m_csv;
    const Clock::time_point m_begin = Clock::now();
    Counts m_counts;
    int m_unanswered = 0; ///< in a row
    std::vector<Sample> m_samples;
};
