// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

#include <memory>

/// Records what one logger (with an empty name, every logger) logs while this object lives, at
/// every level, for tests that compare texts. Any thread may log.
class LogCapture {
public:
    explicit LogCapture(const char *loggerName);
    ~LogCapture();

    /// "LEVEL text" of each record so far, e.g. "WARN Got invalid MAC: x".
    QStringList lines() const;
    bool contains(const QString &line) const;
    /// The records of one level, without it.
    QStringList lines(const QString &level) const;
    /// "source:function" of the records, source as the record carries it.
    QStringList sources() const;
    void clear();

private:
    class Appender;
    struct Private;
    std::unique_ptr<Private> d;
};
