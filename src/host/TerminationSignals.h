// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>

/// Turns SIGTERM and SIGINT into a Qt signal, and SIGHUP, for who asks for it, into another. Main
/// thread, in the GLib main loop that Qt runs there; one at a time. While it lives the signals do
/// nothing else. One that came after hold() comes out of the main loop.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    /// With \a hangUps SIGHUP is told, and ends nothing: a log's file is to be opened anew.
    explicit TerminationSignals(bool hangUps, QObject *parent = nullptr);
    ~TerminationSignals() override;

    /// Keeps the signals waiting for the first of these. Before there are other threads, which
    /// leave them to the main thread for good.
    static void hold();

Q_SIGNALS:
    void requested();
    void hungUp();

private:
    unsigned m_sources[2];
    unsigned m_hangUps;
};
