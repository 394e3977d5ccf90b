// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// What a client may do. Each role may do everything that the one before it may.
enum class AccessRole {
    None, ///< pair
    Listener, ///< browse, play, change favorites
    Owner, ///< settings, accounts, who else may come in
};

/// Whom a request comes from. A program on this machine is an owner without a device.
struct Caller {
    AccessRole role = AccessRole::Owner;
    /// The id of a paired device; empty for a program on this machine.
    QString deviceId;
};
