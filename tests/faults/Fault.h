// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/StreamingServer.h"

#include <QByteArray>

#include <functional>
#include <string>
#include <vector>

class Stage;

/// How a fault is to end for the listener, without anybody's doing.
enum class Ending {
    Sound, ///< It is heard at the end of the watch.
    Told, ///< It ends with an error, in words.
    SoundOrTold, ///< Any of these and of Trying: what can be made of it depends on the decoder.
    Ended, ///< It ends, and that is no error.
    Trying, ///< It says what is wrong, in words, and goes on trying.
};

/// What is expected of the player; the rest is the same for all faults (see Trial).
struct Expected {
    static constexpr double FalsePlaying = 3;
    static constexpr double Noticed = 10;

    Ending ending = Ending::Sound;
    double toSound = 8; ///< seconds from the wish to play
    double silence = 1; ///< seconds, the longest after the first sound
    double told = 35; ///< seconds until it ends with an error
    double noticed = Noticed; ///< seconds until something is done about it
    const char *words = "."; ///< a regular expression that the error or the problem fits
    int connects = 60; ///< most that its servers see

    Expected within(double seconds) const;
    Expected silentFor(double seconds) const;
    Expected noticedIn(double seconds) const;
    Expected connecting(int most) const;
};

Expected sounds();
Expected told(const char *words);
Expected soundsOrTold();
Expected triesOn(const char *words);

/// Something that is done at a moment of the watch.
struct Action {
    double at; ///< seconds from the wish to play
    std::function<void(Stage &stage)> act;
};

/// What there is to play: a stream at http://radio.test/, whose server is a table of scripts, or
/// what the local directory finds.
struct Site {
    Pages pages;
    Pages moved {}; ///< of http://moved.test/
    QByteArray url = "http://radio.test/";
    bool live = true;
    const char *search = nullptr; ///< plays the first thing found, in place of the address
    std::vector<Action> actions {};
    /// https://safe.test/ leads to http://radio.test/.
    bool safe = false;
    /// Paths that must never be asked for.
    std::vector<QByteArray> forbidden {};
};

/// A row of the table: what goes wrong and what is to become of it.
struct Fault {
    const char *name;
    Expected expected;
    int seconds; ///< of the watch
    std::function<Site()> site;
    bool quick = false; ///< part of the short form
};

/// The rows by subject.
std::vector<Fault> connectionFaults();
std::vector<Fault> answerFaults();
std::vector<Fault> audioFaults();
std::vector<Fault> playlistFaults();
std::vector<Fault> liveStreamingFaults();
std::vector<Fault> houseFaults();
