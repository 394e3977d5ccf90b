// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QtGlobal>

/// Why a service did not give what it was asked for, as far as the exchange with it tells. A value.
struct VESK_API VeskServiceFault {
    enum Kind : quint8 {
        None = 0,
        Unreachable, ///< There is no such host, no connection to it, or no end of redirects.
        TimedOut, ///< It took too long.
        Insecure, ///< There is no secure connection to it.
        Broken, ///< The answer broke off, was too long, or was none of HTTP.
        HttpStatus, ///< It answered with the HTTP status `code`, and nothing that it would say.
        Unreadable, ///< What came is none of its answers.
        Reported ///< Its answer itself tells of a fault, `code`, 0 when that is no number.
    };

    Kind kind = None;
    int code = 0;

    bool isEmpty() const { return kind == None; }
    /// Whether the service refuses the caller: HTTP's 401 and 403.
    bool isRefusal() const;
    /// Whether there is nothing but the HTTP code: the answer itself reports no fault.
    bool isBareRefusal() const { return kind == HttpStatus && isRefusal(); }

    bool operator==(const VeskServiceFault &other) const
    {
        return kind == other.kind && code == other.code;
    }
};
