// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/StreamOutcome.h"

#include <QString>
#include <QUrl>

#include <chrono>

/// \file
/// Texts about streams, for users and the log. Any thread.

TrString nothingToHear();
TrString notDecodable();
StreamOutcome endedByServer();
StreamOutcome neverAStream();

/// "PROBLEM Trying again in N s.", and the server's Retry-After if that is longer than what is
/// honoured.
TrString problemWithRetry(const StreamOutcome &outcome, std::chrono::milliseconds wait);
/// The same for a retry that happens now.
TrString problemWithTry(const StreamOutcome &outcome);
/// The problem, and that the next address of the station is tried.
TrString problemWithNextAddress(const StreamOutcome &outcome);

/// A stream's address for the log: without user name, password and fragment, and with the query
/// masked except for parameters known to be harmless, because queries often contain keys or
/// identify the listener.
QString displayedStreamAddress(const QUrl &url);
