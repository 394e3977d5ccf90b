// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <gst/gst.h>

#include <optional>

/// \file
/// Element messages by which a sink says that the place that sound goes to has a fault that may
/// pass, while the pipeline goes on. Any thread.

/// Posts \a text (a text of the context "Player", with the placeholders %1 and %2) with \a place
/// and \a reason; null for "all is well".
void postSinkHealth(
    GstElement *sink, const char *text, const QString &place, const QString &reason = QString());

/// The fault that \a message tells, empty for "all is well"; nothing for other messages.
std::optional<TrString> sinkHealth(GstMessage *message);
