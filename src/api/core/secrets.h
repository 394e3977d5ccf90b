// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>

/// \file
/// What of texts from elsewhere may be in a log: the one rule for all of them. Any thread.

/// Whether what is kept under this name, in a hash or otherwise, is never shown: passwords,
/// sessions, tokens.
VESK_API bool veskIsSecretKey(const QString &key);

/// An address as a log may have it: "***" in place of the user and of every value in query and
/// fragment that is not known to be harmless, for the others are keys and names of listeners as
/// often as not. An address inside a harmless value is shown by the same rule. The text form of a
/// CMPath is an address, too; what is none, or has nothing to hide, stays to the letter.
VESK_API QString veskWithoutSecrets(const QString &address);

/// The same for a text that may be an address: it is taken for one if it begins with a scheme and
/// has no blanks.
VESK_API QString veskTextWithoutSecrets(const QString &text);

/// The value of the parameter \a name of a CMPath with that \a base, as a log may have it. Neither
/// is percent-encoded.
VESK_API QString veskShownParameter(const QString &base, const QString &name, const QString &value);
