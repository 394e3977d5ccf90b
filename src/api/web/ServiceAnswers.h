// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/values/VeskServiceFault.h"
#include "api/web/HttpClient.h"

#include <QStringList>

/// \file
/// Whether an exchange brought what a service answers with. Pure functions, any thread.

/// How a service says in its answers, which are JSON objects, that all is well.
struct ServiceAnswerForm {
    /// Where the status stands, member by member; empty when that is not known.
    QStringList status;
    /// The statuses of good answers.
    QStringList good;

    bool isKnown() const { return !status.isEmpty(); }
};

/// What was wrong with the exchange, with its answer if \a form is known. Empty for one that was
/// cancelled or never begun, of which the service knows nothing. Reads the whole answer.
VESK_API VeskServiceFault serviceFaultOf(
    const HttpClientResult &exchange, const ServiceAnswerForm &form);

/// Whether the exchange failed for certain, whatever its answer says. Costs nothing.
VESK_API bool hasFailed(const HttpClientResult &exchange);
