// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/StreamOutcome.h"

#include <QString>
#include <QUrl>

#include <chrono>

/// \file
/// What is said of streams, to users and in the log. Any thread.

TrString nothingToHear();
TrString notDecodable();
StreamOutcome endedByServer();
StreamOutcome neverAStream();

/// What went wrong, and that it is tried again after \a wait; also when the server asked for a
/// longer wait than it gets.
TrString problemWithRetry(const StreamOutcome &outcome, std::chrono::milliseconds wait);
/// The same, now.
TrString problemWithTry(const StreamOutcome &outcome);
/// What went wrong, and that another address of the station comes next.
TrString problemWithNextAddress(const StreamOutcome &outcome);

/// A stream's address as the log may have it: of its query only what is known to be harmless, for
/// the rest are keys and names of listeners as often as not; no user, no password.
QString displayedStreamAddress(const QUrl &url);
