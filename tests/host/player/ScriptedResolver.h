// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// Answers, in place of the system's resolver, what the whole test program asks for names that end
/// in ".scripted.test"; all others go to the system. Any thread.
namespace ScriptedResolver {

/// \a name has the IPv4 address \a address from now on.
void answer(const QByteArray &name, const QByteArray &address);
/// Questions for \a name wait until release().
void hang(const QByteArray &name);
/// Lets all that wait go: their names have no address.
void release();
/// How often \a name was asked for.
int questions(const QByteArray &name);

} // namespace ScriptedResolver
