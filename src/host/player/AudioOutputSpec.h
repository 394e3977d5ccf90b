// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

/// The audio output of plays: "auto" (the system's sound output), "null" (none, in real time) or
/// "wav:FILE" (a file, in real time, overwritten by each play).
struct AudioOutputSpec {
    enum Kind { Auto, Null, Wav };
    Kind kind = Auto;
    QString file;

    /// Empty if \a text has none of the three forms.
    static std::optional<AudioOutputSpec> parse(const QString &text);
    /// Why the file cannot be used: it exists and is not a regular file. Empty if it is fine. Does
    /// not open the file, because opening a FIFO would block.
    QString problem() const;
};
