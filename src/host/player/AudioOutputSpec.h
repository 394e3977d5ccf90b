// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

/// Where a play is heard: "auto" (the machine's sound output), "null" (nowhere, in real time) or
/// "wav:FILE" (a file, in real time, written anew by each play).
struct AudioOutputSpec {
    enum Kind { Auto, Null, Wav };
    Kind kind = Auto;
    QString file;

    /// Nothing for what is none of the three forms.
    static std::optional<AudioOutputSpec> parse(const QString &text);
    /// Why the file must not be written to: what is there is no regular file. Empty when nothing is
    /// wrong. Opens nothing, so that no FIFO is waited for.
    QString problem() const;
};
