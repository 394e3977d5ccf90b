// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskTuneInAccount.h"

/// Operations on a listener's account with a service, with the same codes and names.
using VeskAccountOperation = VeskTuneInAccountOperation;

/// An operation on a listener's account with a service, with its parameters or its results: the
/// value type "account". It has the entries of VeskTuneInAccount, of which a service uses those
/// that it needs; clients handle both types alike. Printed with the password and the session id as
/// "***".
class VESK_API VeskAccount : public VeskTuneInAccount {
public:
    using VeskTuneInAccount::VeskTuneInAccount;
};
