// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// The MIME type of the picture that \a bytes are by their first bytes: image/png, image/jpeg,
/// image/gif or image/webp. Empty for everything else; an SVG is a document that can hold scripts,
/// and none. A pure function.
QByteArray imageTypeOf(const QByteArray &bytes);
