// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/values/VeskHash.h"

/// Why a request failed: a name for programs, and a translatable message and title for the user. An
/// empty error means success.
class VESK_API CMError : public VeskHash {
public:
    using VeskHash::VeskHash;
    CMError() = default;
    CMError(const QString &name, const TrString &message, const TrString &title);
    /// An error with the default name and title.
    explicit CMError(const TrString &message);

    /// Keys of the entries.
    static const QString &Name();
    static const QString &Message();
    static const QString &Title();

    static const QString &DefaultName();
    static const QString &DefaultTitle();
    /// Names of the errors that the request mechanism itself ends requests with.
    static const QString &NoNodeName();
    static const QString &UnansweredName();
    static const QString &TooLongName();

    QString name() const;
    TrString message() const;
    TrString title() const;
};

Q_DECLARE_METATYPE(CMError)
