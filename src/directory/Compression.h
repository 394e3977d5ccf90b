// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Deflates bytes, for pictures and for clients that take compressed answers.
#pragma once

#include <string>
#include <string_view>

namespace directory {

enum class Compression { Zlib, Gzip };

std::string compressed(const std::string &bytes, Compression compression);
/// Whether an Accept-Encoding header's value allows gzip (RFC 9110).
bool acceptsGzip(std::string_view header);

} // namespace directory
