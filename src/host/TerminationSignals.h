#pragma once

#include <QObject>

/// Turns SIGTERM and SIGINT into a Qt signal. Main thread, in the GLib main loop that Qt runs
/// there; one at a time. While it lives the signals do nothing else.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void requested();

private:
    unsigned m_sources[2];
};
