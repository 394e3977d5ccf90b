// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/TransportStream.h"

#include <algorithm>

namespace directory {

namespace {

constexpr std::size_t packetSize = 188;
constexpr std::size_t packetHead = 4;
constexpr std::size_t clockField = 8; ///< an adaptation field with nothing but a clock
constexpr std::size_t pesHead = 14;
constexpr std::uint64_t samplesPerFrame = 1024;
constexpr std::uint64_t ticksPerSecond = 90000;
constexpr unsigned programPid = 0x1000;
constexpr unsigned audioPid = 0x0100;
constexpr char stuffing = '\xFF';

void append(std::string &out, std::uint64_t value, int bytes)
{
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        out += static_cast<char>((value >> shift) & 0xFF);
}

std::uint32_t checksum(const std::string &bytes)
{
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char c : bytes) {
        crc ^= static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 24;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc << 1) ^ ((crc & 0x80000000u) != 0 ? 0x04C11DB7u : 0);
    }
    return crc;
}

std::string packetStart(unsigned pid, bool first, bool adaptation, std::uint64_t counter)
{
    std::string out(1, '\x47');
    append(out, (first ? 0x4000u : 0u) | pid, 2);
    append(out, (adaptation ? 0x30u : 0x10u) | (counter & 0xF), 1);
    return out;
}

/// A packet that is one table. `body` is what follows the section's length.
std::string tablePacket(unsigned pid, int tableId, const std::string &body, std::uint64_t counter)
{
    std::string section;
    append(section, static_cast<std::uint64_t>(tableId), 1);
    append(section, 0xB000u | (body.size() + 4), 2);
    section += body;
    append(section, checksum(section), 4);
    std::string packet = packetStart(pid, true, false, counter) + '\0' + section;
    packet.resize(packetSize, stuffing);
    return packet;
}

std::string tables(std::uint64_t number)
{
    std::string programs;
    append(programs, 1, 2); // this stream's number
    append(programs, 0xC10000, 3); // version 0, in force, section 0 of 0
    append(programs, 1, 2);
    append(programs, 0xE000u | programPid, 2);
    std::string streams;
    append(streams, 1, 2);
    append(streams, 0xC10000, 3);
    append(streams, 0xE000u | audioPid, 2); // has the clock
    append(streams, 0xF000, 2);
    append(streams, 0x0F, 1); // AAC with ADTS
    append(streams, 0xE000u | audioPid, 2);
    append(streams, 0xF000, 2);
    return tablePacket(0, 0, programs, number) + tablePacket(programPid, 2, streams, number);
}

std::string pes(const std::string &frame, std::uint64_t time)
{
    std::string out;
    append(out, 0x000001C0, 4); // an audio stream
    append(out, frame.size() + pesHead - 6, 2);
    append(out, 0x808005, 3); // a presentation time of five bytes follows
    append(out, 0x21u | ((time >> 30 & 0x7) << 1), 1);
    append(out, 1u | ((time >> 15 & 0x7FFF) << 1), 2);
    append(out, 1u | ((time & 0x7FFF) << 1), 2);
    return out + frame;
}

/// The frame in exactly that many packets.
std::string audioPackets(
    const std::string &frame, std::uint64_t time, std::size_t packets, std::uint64_t counter)
{
    const std::string data = pes(frame, time);
    std::size_t taken = 0;
    std::string out;
    for (std::size_t i = 0; i < packets; ++i) {
        const std::size_t least = i == 0 ? clockField : 0;
        const std::size_t share
            = std::min(data.size() - taken, (data.size() + packets - 1) / packets + clockField);
        const std::size_t size = i + 1 == packets
            ? data.size() - taken
            : std::min(share, packetSize - packetHead - least);
        const std::size_t field = packetSize - packetHead - size;
        std::string packet = packetStart(audioPid, i == 0, field > 0, counter + i);
        if (field > 0)
            append(packet, field - 1, 1);
        if (field > 1)
            append(packet, i == 0 ? 0x10 : 0x00, 1);
        if (i == 0) {
            append(packet, time >> 1, 4);
            append(packet, ((time & 1) << 15) | 0x7E00, 2);
        }
        packet.resize(packetSize - size, stuffing);
        out += packet.append(data, taken, size);
        taken += size;
    }
    return out;
}

} // namespace

std::string transportStream(
    const std::vector<std::string> &frames, std::uint64_t number, unsigned rate)
{
    std::size_t largest = 0;
    for (const std::string &frame : frames)
        largest = std::max(largest, frame.size());
    const std::size_t room = packetSize - packetHead;
    const std::size_t packets = (largest + pesHead + clockField + room - 1) / room;
    std::string out = tables(number);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const std::uint64_t frame = number * frames.size() + i;
        const std::uint64_t time = frame * samplesPerFrame * ticksPerSecond / rate;
        out += audioPackets(frames[i], time & 0x1FFFFFFFFu, packets, i * packets);
    }
    return out;
}

} // namespace directory
