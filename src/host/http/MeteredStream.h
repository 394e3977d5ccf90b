// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <gio/gio.h>

/// \file
/// A GIOStream over another one that counts the bytes written and bounds the bytes read. libsoup's
/// WebSocket connection has no way to ask how much it still has to send, and no bound for a message
/// that comes in fragments; both follow from the bytes that really pass.

/// A pollable stream over \a base, which it references and closes when it goes; the two sides of
/// \a base must be pollable. At first anything may be read.
GIOStream *meteredStreamNew(GIOStream *base);
guint64 meteredStreamBytesWritten(GIOStream *stream);
/// Bytes that may still be read; after them reading fails.
guint64 meteredStreamReadAllowance(GIOStream *stream);
void meteredStreamSetReadAllowance(GIOStream *stream, guint64 bytes);
