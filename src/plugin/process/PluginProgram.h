// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// The descriptor at which a plug-in process finds its socket to the host.
constexpr int PluginSocket = 3;

/// Runs one plug-in for the host at the other end of PluginSocket: receives its StartMessage, drops
/// all privileges that the plug-in does not need, loads it, and serves its paths until the host
/// sends StopMessage or is gone. Returns the exit status.
int runPlugin(int argc, char **argv);
