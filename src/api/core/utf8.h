// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>

#include <optional>

/// \file
/// UTF-8 (RFC 3629) byte by byte, and hexadecimal digits, for encoders and parsers that have their
/// own buffers. Pure functions.

/// Calls \a write with each byte of \a codePoint's UTF-8.
template <class Write>
void veskWriteUtf8(uint codePoint, Write write)
{
    if (codePoint < 0x80)
        return write(codePoint);
    if (codePoint < 0x800) {
        write(0xC0 | codePoint >> 6);
    } else {
        if (codePoint < 0x10000) {
            write(0xE0 | codePoint >> 12);
        } else {
            write(0xF0 | codePoint >> 18);
            write(0x80 | (codePoint >> 12 & 0x3F));
        }
        write(0x80 | (codePoint >> 6 & 0x3F));
    }
    write(0x80 | (codePoint & 0x3F));
}

/// The code point whose bytes \a readByte returns one after another, -1 when there is none left.
/// None for what is no UTF-8, overlong forms and surrogates included (RFC 3629, section 3).
template <class ReadByte>
std::optional<uint> veskReadUtf8(ReadByte readByte)
{
    const int first = readByte();
    if (first < 0 || (first >= 0x80 && first < 0xC2) || first > 0xF4)
        return std::nullopt;
    if (first < 0x80)
        return static_cast<uint>(first);
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    uint codePoint = static_cast<uint>(first & (0x3F >> more));
    for (int i = 0; i < more; ++i) {
        const int next = readByte();
        if (next < 0 || (next & 0xC0) != 0x80)
            return std::nullopt;
        codePoint = codePoint << 6 | static_cast<uint>(next & 0x3F);
    }
    static constexpr uint Least[] = {0, 0x80, 0x800, 0x10000};
    if (codePoint < Least[more] || codePoint > QChar::LastValidCodePoint
        || QChar::isSurrogate(codePoint))
        return std::nullopt;
    return codePoint;
}

/// Whether all of \a bytes is UTF-8.
inline bool veskIsUtf8(const QByteArray &bytes)
{
    auto next = bytes.begin();
    const auto readByte = [&] {
        return next == bytes.end() ? -1 : static_cast<int>(static_cast<unsigned char>(*next++));
    };
    while (next != bytes.end()) {
        if (!veskReadUtf8(readByte))
            return false;
    }
    return true;
}

/// Text from outside whose encoding nobody tells: UTF-8, without a byte order mark at its start, if
/// all of \a bytes is that, else Latin-1.
inline QString veskUtf8OrLatin1(const QByteArray &bytes)
{
    // With its size: given a QByteArray, Qt 5 stops at a NUL.
    return veskIsUtf8(bytes) ? QString::fromUtf8(bytes.constData(), bytes.size())
                             : QString::fromLatin1(bytes);
}

/// The value of a hexadecimal digit, -1 for any other character.
inline int veskHexValue(ushort c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    c |= 0x20;
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}
