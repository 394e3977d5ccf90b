// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/values/VeskServiceFault.h"
#include "api/web/HttpClient.h"

#include <QStringList>

/// \file
/// Whether a request to a service succeeded, according to its response. Pure functions, any thread.

/// Where a service's responses, JSON objects, carry their status, and which statuses mean success.
struct ServiceAnswerForm {
    /// The member names that lead to the status, outermost first; empty when the form is not known.
    QStringList status;
    /// The statuses that mean success.
    QStringList good;

    bool isKnown() const { return !status.isEmpty(); }
};

/// The fault of the exchange or, if \a form is known, the one that the response reports. Empty on
/// success and for an exchange that was cancelled or never sent. Parses the whole body.
VESK_API VeskServiceFault serviceFaultOf(
    const HttpClientResult &exchange, const ServiceAnswerForm &form);

/// Whether the exchange failed or its HTTP status is an error, whatever the body says. Cheap: the
/// body is not parsed.
VESK_API bool hasFailed(const HttpClientResult &exchange);
