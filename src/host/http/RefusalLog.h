// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <functional>
#include <map>

/// Logs refusals, but no more than one line of a kind in a second, so that a client that is refused
/// over and over does not fill the log. Suppressed lines are counted, and the count is logged when
/// the second is over. Main thread, with an event loop.
class RefusalLog : public QObject {
    Q_OBJECT

public:
    /// Kinds beyond these share one line.
    static constexpr std::size_t MaxKinds = 64;

    using Write = std::function<void(const QByteArray &line)>;
    /// \a write puts a line into the log. Lines of a kind are \a milliseconds apart.
    explicit RefusalLog(Write write, int milliseconds = 1000, QObject *parent = nullptr);
    /// Logs the counts of the current second.
    ~RefusalLog() override;

    /// \a line says what was refused and why; equal lines are of one kind. It has been so \a times.
    void log(const QByteArray &line, int times = 1);

private:
    struct Kind {
        QTimer second;
        int suppressed = 0;
    };

    Kind &kindOf(const QByteArray &line);
    void writeCount(const QByteArray &line, Kind &kind);

    const Write m_write;
    const int m_milliseconds;
    std::map<QByteArray, Kind> m_kinds;
};
