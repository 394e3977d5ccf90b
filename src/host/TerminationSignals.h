#pragma once

#include <QObject>

/// Turns SIGTERM and SIGINT into a Qt signal. Main thread, in the GLib main loop that Qt runs
/// there; one at a time. While it lives the signals do nothing else. One that came after hold()
/// comes out of the main loop.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

    /// Keeps the signals waiting for the first of these. Before there are other threads, which
    /// leave them to the main thread for good.
    static void hold();

Q_SIGNALS:
    void requested();

private:
    unsigned m_sources[2];
};
