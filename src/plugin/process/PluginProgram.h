// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// The descriptor at which a worker process finds its socket to the host.
constexpr int PluginSocket = 3;

/// Runs one plug-in for the host at the other end of PluginSocket: takes what the host tells it,
/// gives up every right that it does not need, loads the plug-in, and serves its paths until the
/// host says stop or is gone. Returns the exit status.
int runPlugin(int argc, char **argv);
