// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>

/// Turns SIGTERM and SIGINT into one Qt signal, and SIGHUP into another. Main thread, in the GLib
/// main loop that Qt runs there; one at a time. While it lives these signals have no other effect.
/// One that came after hold() is delivered by the main loop.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

    /// Blocks the signals until the first of these objects unblocks them. Call it before there are
    /// other threads: they inherit the mask, which leaves the signals to the main thread for good.
    static void hold();

Q_SIGNALS:
    void requested();
    /// The log's file is to be reopened, and the configuration to be read again.
    void hungUp();

private:
    unsigned m_sources[3];
};
