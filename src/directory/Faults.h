// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Faults on demand, for testing clients: what the server does wrong when told to. A fault is
/// written NAME[@PATH][:ARGUMENT][*COUNT]; docs/directory.md lists the names. The server's thread
/// owns them.
#pragma once

#include "base/Result.h"
#include "directory/Api.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace directory {

enum class FaultKind {
    HttpStatus,
    HeadFault,
    Empty,
    Truncated,
    Cut,
    Malformed,
    Oversized,
    SlowHeaders,
    Stall,
    Reset,
    Trickle,
    RedirectChain,
    RedirectLoop,
    Body,
    RetryAfter,
    LoginPage,
    Down,
    StreamClose,
    StreamReset,
    StreamStall,
    StreamGarbage,
};

struct Fault {
    FaultKind kind = FaultKind::Empty;
    std::string text; ///< as it was written, without the count
    std::string path; ///< empty: every path; "/x": all paths that begin so; else a page's name
    std::string argument;
    int number = 0; ///< the argument of the kinds that take one
    int bytes = 0; ///< a second argument
    int remaining = -1; ///< requests that it still affects; -1: all
    std::chrono::steady_clock::time_point until; ///< when "down" expires
};

/// What happens to a stream while it runs.
struct Disturbance {
    enum class Kind { Close, Reset, Stall, Garbage };
    Kind kind = Kind::Close;
    int seconds = 0; ///< until it happens
    std::size_t bytes = 0; ///< of garbage; 0: unlimited
};

/// How a response is sent that a fault affects.
struct Delivery {
    enum class End { Close, Reset, Hold };
    int delaySeconds = 0; ///< before the first byte
    std::optional<std::size_t> bodyBytes; ///< this much of the body only
    int bytesPerSecond = 0; ///< of the body; 0: unlimited
    End end = End::Close;
    std::optional<Disturbance> disturbance; ///< streams only
};

struct FaultyAnswer {
    Answer answer;
    std::optional<Delivery> delivery; ///< none: a correct HTTP exchange
};

class Faults {
public:
    static constexpr std::size_t MaxFaults = 100;
    static constexpr int MaxBody = 256 * 1024 * 1024;

    /// The error is one line.
    static Result<Fault, std::string> parse(const std::string &text);

    /// False when there are too many.
    bool add(Fault fault);
    void clear() { m_faults.clear(); }
    std::vector<std::string> texts() const;
    std::size_t size() const { return m_faults.size(); }
    /// The first fault for a request of the path. Its count goes down by one; at zero it is
    /// removed.
    std::optional<Fault> take(const std::string &path);
    /// The same for faults of running streams, skipping the first `skipped` faults.
    std::optional<Disturbance> takeDisturbance(const std::string &path, std::size_t skipped = 0);
    /// Whether a "down" fault is in force: for that path, or for the whole server. Counts nothing.
    bool isDown(const std::string &path) const;
    bool isDown() const;

private:
    std::optional<Fault> takeAt(std::vector<Fault>::iterator found);

    std::vector<Fault> m_faults;
};

/// Applies a fault to a request. `sound` gives the correct answer; it is called only by faults that
/// alter an answer, not by those that replace it. `target` is the request's, for redirections.
FaultyAnswer spoil(
    const Fault &fault, const std::string &target, const std::function<Answer()> &sound);

/// One redirection of a chain: "/_hops/3/target" redirects to "/_hops/2/target" and so on,
/// "/_hops/0/target" is the target, "/_hops/loop/target" redirects to itself. None for other paths.
struct Hop {
    std::string target; ///< to be answered now, when `location` is empty
    std::string location; ///< to be redirected to
};
std::optional<Hop> hopOf(const std::string &target);
Answer redirection(const std::string &location);

} // namespace directory
