// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Compression.h"

#include "directory/Query.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <gio/gio.h>

namespace directory {

namespace {

constexpr int Level = 6;

std::string withoutBlanks(const std::string &text)
{
    std::string out;
    for (const char c : text) {
        if (c != ' ' && c != '\t')
            out += c;
    }
    return out;
}

} // namespace

std::string compressed(const std::string &bytes, Compression compression)
{
    GZlibCompressor *compressor
        = g_zlib_compressor_new(compression == Compression::Gzip ? G_ZLIB_COMPRESSOR_FORMAT_GZIP
                                                                 : G_ZLIB_COMPRESSOR_FORMAT_ZLIB,
            Level);
    std::string out;
    std::size_t at = 0;
    GConverterResult result = G_CONVERTER_CONVERTED;
    std::array<char, 16384> buffer;
    while (result != G_CONVERTER_FINISHED) {
        gsize read = 0;
        gsize written = 0;
        result = g_converter_convert(G_CONVERTER(compressor), bytes.data() + at, bytes.size() - at,
            buffer.data(), buffer.size(), G_CONVERTER_INPUT_AT_END, &read, &written, nullptr);
        if (result == G_CONVERTER_ERROR)
            break;
        at += read;
        out.append(buffer.data(), written);
    }
    g_object_unref(compressor);
    return out;
}

bool acceptsGzip(std::string_view header)
{
    bool anything = false;
    for (const std::string &each : split(lowered(header), ',')) {
        const std::string item = withoutBlanks(each);
        const std::size_t semicolon = std::min(item.find(';'), item.size());
        const std::string name = item.substr(0, semicolon);
        const std::string weight = item.substr(semicolon);
        const bool allowed
            = weight.rfind(";q=", 0) != 0 || std::strtod(weight.c_str() + 3, nullptr) > 0;
        if (name == "gzip")
            return allowed;
        if (name == "*")
            anything = allowed;
    }
    return anything;
}

} // namespace directory
