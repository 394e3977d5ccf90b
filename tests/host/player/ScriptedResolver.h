// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// Replaces the system's resolver in the whole test program for names that end in ".scripted.test";
/// lookups of other names go to the system. Any thread.
namespace ScriptedResolver {

/// Resolves \a name to the IPv4 address \a address from now on.
void answer(const QByteArray &name, const QByteArray &address);
/// Makes lookups of \a name block until release().
void hang(const QByteArray &name);
/// Forgets all names: blocked lookups fail with EAI_NONAME, as later ones do.
void release();
/// How often \a name was looked up.
int questions(const QByteArray &name);

} // namespace ScriptedResolver
