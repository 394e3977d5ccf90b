// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QtGlobal>

/// Why a request to a service failed, as far as the exchange shows. A value type.
struct VESK_API VeskServiceFault {
    enum Kind : quint8 {
        None = 0,
        Unreachable, ///< No such host, no connection, or too many redirects.
        TimedOut, ///< The exchange took too long.
        Insecure, ///< No secure connection could be established.
        Broken, ///< The response was cut short, too long or not HTTP.
        HttpStatus, ///< The HTTP status is the error `code`, and the body names no fault.
        Unreadable, ///< The body is not in the form of the service's responses.
        Reported ///< The body reports the fault `code`; 0 when that is not a number.
    };

    Kind kind = None;
    int code = 0;

    bool isEmpty() const { return kind == None; }
    /// Whether the service denies access: 401 or 403, as HTTP status or reported in the body.
    bool isRefusal() const;
    /// Whether access is denied by the HTTP status alone: the body reports no fault.
    bool isBareRefusal() const { return kind == HttpStatus && isRefusal(); }

    bool operator==(const VeskServiceFault &other) const
    {
        return kind == other.kind && code == other.code;
    }
};
