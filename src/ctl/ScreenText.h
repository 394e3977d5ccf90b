#pragma once

#include "api/values/VeskRoles.h"
#include "ctl/TerminalText.h"

#include <QStringList>
#include <QVariant>

/// \file
/// Screens and values as lines of text. Everything is made printable. Pure functions, any thread.

/// A row's \a values under the names of the \a roles that were asked for.
VeskRoles namedRoles(const QStringList &roles, const QVariantList &values);

/// The roles from which rowLine() makes a line, in the order in which it expects them.
const QStringList &rowLineRoles();
/// One line for the row at \a index: number, mark of its kind, title, description, and the path
/// that opens it, quoted for a shell where needed.
std::string rowLine(int index, const QVariantList &values, const TerminalStyle &style);

/// A value without its type; a hash or list as JSON; nothing for null.
QString plainText(const QVariant &value);
