// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/StreamingServer.h"

#include <QByteArray>

#include <functional>
#include <string>
#include <vector>

class Stage;

/// How a fault must end for the listener, without any action by the user.
enum class Ending {
    Sound, ///< It is heard at the end of the watch.
    Told, ///< It ends with an error message.
    SoundOrTold, ///< Any of these or Trying: the decoder decides.
    Ended, ///< It ends without an error.
    Trying, ///< It reports the problem and keeps trying.
};

/// What is expected of the player; the rest is the same for all faults (see Trial).
struct Expected {
    static constexpr double FalsePlaying = 3;
    static constexpr double Noticed = 10;

    Ending ending = Ending::Sound;
    double toSound = 8; ///< seconds from the play request
    double silence = 1; ///< seconds, the longest after the first sound
    double told = 35; ///< seconds until it ends with an error
    double noticed = Noticed; ///< seconds until the player reacts
    const char *words = "."; ///< a regular expression that the error or the problem matches
    int connects = 60; ///< the most that its servers accept

    Expected within(double seconds) const;
    Expected silentFor(double seconds) const;
    Expected noticedIn(double seconds) const;
    Expected connecting(int most) const;
};

Expected sounds();
Expected told(const char *words);
Expected soundsOrTold();
Expected triesOn(const char *words);

/// An action at some moment of the watch.
struct Action {
    double at; ///< seconds from the play request
    std::function<void(Stage &stage)> act;
};

/// What is played: a stream at http://radio.test/, whose server runs a table of scripts, or a
/// search result of the local directory.
struct Site {
    Pages pages;
    Pages moved {}; ///< of http://moved.test/
    QByteArray url = "http://radio.test/";
    bool live = true;
    const char *search = nullptr; ///< plays the first result, in place of the URL
    std::vector<Action> actions {};
    /// https://safe.test/ leads to http://radio.test/.
    bool safe = false;
    /// Paths that must never be asked for.
    std::vector<QByteArray> forbidden {};
};

/// A row of the table: a fault and what is expected of the player.
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
