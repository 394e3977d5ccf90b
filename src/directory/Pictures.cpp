// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Pictures.h"

#include "directory/Compression.h"
#include "directory/Context.h"

#include <algorithm>
#include <array>

namespace directory {

namespace {

constexpr int GridCells = 5;

void append32(std::string &out, std::uint32_t value)
{
    for (const int shift : {24, 16, 8, 0})
        out += static_cast<char>((value >> shift) & 0xFF);
}

std::uint32_t crc32(const std::string &bytes)
{
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320u : 0);
    }
    return ~crc;
}

void appendChunk(std::string &png, const std::string &type, const std::string &data)
{
    append32(png, static_cast<std::uint32_t>(data.size()));
    const std::string covered = type + data;
    png += covered;
    append32(png, crc32(covered));
}

/// A pattern that mirrors at its middle, in one colour on a light ground, as one byte of palette
/// index per pixel.
std::string patternPixels(std::uint32_t seed, int size)
{
    std::string pixels;
    pixels.reserve(static_cast<std::size_t>(size) * (static_cast<std::size_t>(size) + 1));
    const int margin = size / 10;
    const int cell = std::max(1, (size - 2 * margin) / GridCells);
    for (int y = 0; y < size; ++y) {
        pixels += '\0'; // this row is not filtered
        for (int x = 0; x < size; ++x) {
            const int column = (x - margin) / cell;
            const int row = (y - margin) / cell;
            const bool inside = x >= margin && y >= margin && column < GridCells && row < GridCells;
            const int bit = row * 3 + std::min(column, GridCells - 1 - column);
            pixels += inside && ((seed >> bit) & 1) != 0 ? '\1' : '\0';
        }
    }
    return pixels;
}

std::string patternPng(const std::string &name, int size)
{
    const std::uint32_t seed = stableNumber(name);
    const std::uint32_t shade = stableNumber(name + "colour");
    std::string header;
    append32(header, static_cast<std::uint32_t>(size));
    append32(header, static_cast<std::uint32_t>(size));
    header += std::string("\x08\x03\x00\x00\x00", 5); // 8 bits, palette
    std::string palette = "\xF4\xF1\xEC";
    for (const int shift : {0, 8, 16})
        palette += static_cast<char>(40 + (shade >> shift) % 140);

    std::string png = "\x89PNG\r\n\x1A\n";
    appendChunk(png, "IHDR", header);
    appendChunk(png, "PLTE", palette);
    appendChunk(png, "IDAT", compressed(patternPixels(seed, size), Compression::Zlib));
    appendChunk(png, "IEND", {});
    return png;
}

/// The size that the letter before the extension means; cuts off the letter.
int takeSize(std::string &name)
{
    int size = 145;
    switch (name.empty() ? '\0' : name.back()) {
    case 't':
        size = 75;
        break;
    case 'q':
        break;
    case 'd':
        size = 300;
        break;
    case 'g':
        size = 600;
        break;
    default:
        return size;
    }
    name.pop_back();
    return size;
}

bool plainName(const std::string &name)
{
    return !name.empty() && name.size() <= 20 && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    });
}

/// MPEG-2 layer III, 24 kbit/s, 22.05 kHz, mono. A frame whose side information is zero decodes to
/// silence.
std::string silence(int frames)
{
    constexpr std::size_t FrameSize = 78;
    std::string frame("\xFF\xF3\x30\xC4", 4);
    frame.resize(FrameSize, '\0');
    std::string bytes;
    for (int i = 0; i < frames; ++i)
        bytes += frame;
    return bytes;
}

} // namespace

Answer logoPicture(const std::string &path)
{
    constexpr std::string_view Folder = "/logo/";
    constexpr std::string_view Extension = ".png";
    if (path.size() <= Folder.size() + Extension.size()
        || path.compare(path.size() - Extension.size(), Extension.size(), Extension) != 0)
        return textAnswer(404, "There is no such picture.");
    std::string name = path.substr(Folder.size(), path.size() - Folder.size() - Extension.size());
    const int size = takeSize(name);
    if (!plainName(name))
        return textAnswer(404, "There is no such picture.");
    Answer answer;
    answer.contentType = "image/png";
    answer.body = patternPng(name, size);
    answer.headers.emplace_back("Cache-Control", "max-age=86400");
    return answer;
}

Answer placeholderAudio(const std::string &path)
{
    for (const char *name : {"notcompatible", "nostream", "georestricted", "restricted"}) {
        if (path == std::string("/service/Audio/") + name + ".enUS.mp3") {
            Answer answer;
            answer.contentType = "audio/mpeg";
            answer.body = silence(77);
            return answer;
        }
    }
    return textAnswer(404, "There is no such file.");
}

} // namespace directory
