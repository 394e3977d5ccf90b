// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <functional>
#include <map>

/// Tells the log of refusals, but no more than one line of a kind in a second, so that a client
/// that is refused over and over does not fill it. The lines that were kept back are counted, and
/// the count is a line itself when the second is over. Main thread, with an event loop.
class RefusalLog : public QObject {
    Q_OBJECT

public:
    /// Kinds beyond these share one line.
    static constexpr std::size_t MaxKinds = 64;

    using Write = std::function<void(const QByteArray &line)>;
    /// \a write puts a line into the log. Lines of a kind are \a milliseconds apart.
    explicit RefusalLog(Write write, int milliseconds = 1000, QObject *parent = nullptr);
    /// Tells the counts that are still open.
    ~RefusalLog() override;

    /// \a line says what was refused and why; the same words are the same kind.
    void tell(const QByteArray &line);

private:
    struct Kind {
        QTimer second;
        int keptBack = 0;
    };

    Kind &kindOf(const QByteArray &line);
    void writeCount(const QByteArray &line, Kind &kind);

    const Write m_write;
    const int m_milliseconds;
    std::map<QByteArray, Kind> m_kinds;
};
