// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostSession.h"

#include <QString>
#include <QStringList>

class Command;

/// One thing that could come next on a command line. Texts without control characters.
struct Candidate {
    QString text;
    QString description;
};

/// What a command line that is being typed lacks. A value.
struct Completion {
    /// The beginning of the word that is typed.
    QString typed;
    /// What fits there as far as it is known without the host: commands, options, choices.
    QList<Candidate> known;
    /// The name of the value that belongs there, as "PLACE", and of its command; empty for none.
    QString value;
    QString command;
    /// The arguments before it.
    QStringList arguments;
    /// Where to ask, if the line says so.
    QString host;
    QString service;
};

/// Pure. \a words are those after the program's name; the last one is what is typed so far.
Completion completionOf(const Command &program, const QStringList &words);

/// How long completing may take. Then the process ends, with what was printed until then.
constexpr int CompletionMs = 900;

/// Prints what completes the line, for scripts of shells: a line for each candidate, with a tab
/// before its description; ":files" alone where a file's name belongs. Tells nothing of failures,
/// and never takes longer than CompletionMs.
CtlResult<> complete(HostSession &session, const Completion &completion);
