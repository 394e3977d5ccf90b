// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "base/Result.h"
#include "host/player/HttpStream.h"
#include "host/player/MediaLayout.h"

#include <QThread>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

/// The longest search for a place.
constexpr std::chrono::milliseconds LongestSearch {10000};

/// Fetches what is missing in \a layout: the duration, where that stands at the end of the file.
/// Blocks while \a goOn returns true and for LongestSearch at most. Returns a text for the user on
/// failure.
Result<void, TrString> completeLayout(
    HttpStream &http, const QUrl &url, MediaLayout &layout, const std::function<bool()> &goOn);

/// Finds the place of \a time in the file, with requests for parts of it; also whether the server
/// sends parts at all, and whether the file is what \a layout says. As completeLayout() otherwise.
Result<MediaPlace, TrString> findPlace(HttpStream &http, const QUrl &url, const MediaLayout &layout,
    std::chrono::microseconds time, const std::function<bool()> &goOn);

/// Does both on a thread of its own, with a connection of its own: the play goes on meanwhile.
/// Created and destroyed on one thread, where finished() is received.
class PlaceFinder : public QThread {
    Q_OBJECT

public:
    /// Without \a time only the layout is completed.
    PlaceFinder(const QUrl &url, const MediaLayout &layout,
        std::optional<std::chrono::microseconds> time, const HttpStream::Times &times);
    /// Interrupts the search and waits for the thread.
    ~PlaceFinder() override;

    // After finished():
    const MediaLayout &layout() const { return m_layout; }
    const std::optional<std::chrono::microseconds> &time() const { return m_time; }
    /// Empty unless the search has failed: a text for the user.
    const TrString &problem() const { return m_problem; }
    const MediaPlace &place() const { return m_place; }

protected:
    void run() override;

private:
    const QUrl m_url;
    MediaLayout m_layout;
    const std::optional<std::chrono::microseconds> m_time;
    HttpStream m_http;
    TrString m_problem;
    MediaPlace m_place;
};
