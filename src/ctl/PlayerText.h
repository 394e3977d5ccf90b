#pragma once

#include "ctl/TerminalText.h"

#include <QVariantHash>

/// \a state, as player.state tells it, in one line: a word for it, what plays, what is on the air,
/// the bit rate, what went wrong. Everything is made printable. A pure function, any thread.
std::string playerLine(const QVariantHash &state, const TerminalStyle &style);
