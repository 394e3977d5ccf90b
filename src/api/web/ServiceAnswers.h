// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/values/VeskServiceFault.h"
#include "api/web/HttpClient.h"

#include <QStringList>

/// \file
/// What a service's response says about its success. Pure functions, any thread.

/// Where a service's answers, JSON objects, have their status, and which statuses are good.
struct ServiceAnswerForm {
    /// The names of the members that lead to the status; empty when the form is not known.
    QStringList status;
    /// The statuses of good answers.
    QStringList good;

    bool isKnown() const { return !status.isEmpty(); }
};

/// What went wrong with the exchange, or, if \a form is known, according to its answer. Empty for
/// an exchange that was cancelled or never sent. Parses the whole answer.
VESK_API VeskServiceFault serviceFaultOf(
    const HttpClientResult &exchange, const ServiceAnswerForm &form);

/// Whether the exchange failed, whatever its answer says. Cheap: the answer is not read.
VESK_API bool hasFailed(const HttpClientResult &exchange);
