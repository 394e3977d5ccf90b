// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/TransportStream.h"

#include <gtest/gtest.h>
#include <map>

using namespace directory;

namespace {

constexpr std::size_t packetSize = 188;

int byteAt(const std::string &bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

/// Follows the continuity counters of a stream; counts the packets.
class Counters {
public:
    void follow(const std::string &stream)
    {
        ASSERT_EQ(stream.size() % packetSize, 0u);
        for (std::size_t at = 0; at < stream.size(); at += packetSize) {
            ASSERT_EQ(byteAt(stream, at), 0x47);
            const int pid = (byteAt(stream, at + 1) & 0x1F) << 8 | byteAt(stream, at + 2);
            const int counter = byteAt(stream, at + 3) & 0xF;
            if (m_last.count(pid) != 0) {
                EXPECT_EQ(counter, (m_last[pid] + 1) & 0xF) << pid << " at " << at;
            }
            m_last[pid] = counter;
        }
    }
    std::size_t pids() const { return m_last.size(); }

private:
    std::map<int, int> m_last;
};

TEST(TransportStream, CountsOnFromSegmentToSegmentWhateverTheirFramesAre)
{
    Counters counters;
    std::uint64_t number = 876594977;
    for (const std::size_t size : {100, 400, 170, 1300, 1, 162, 163}) {
        std::vector<std::string> frames(96, std::string(size, 'x'));
        frames[5] = std::string(20, 'y');
        counters.follow(transportStream(frames, number++, 48000));
    }
    EXPECT_EQ(counters.pids(), 3u);
}

TEST(TransportStream, KeepsEveryByteOfAFrame)
{
    for (std::size_t size = 1; size < 800; ++size) {
        std::string frame;
        for (std::size_t i = 0; i < size; ++i)
            frame += static_cast<char>(i * 7);
        const std::string stream = transportStream(std::vector<std::string>(16, frame), 1, 48000);
        std::string payload;
        for (std::size_t at = 2 * packetSize; at < stream.size(); at += packetSize) {
            const bool adapted = (byteAt(stream, at + 3) & 0x20) != 0;
            const std::size_t start
                = adapted ? 5 + static_cast<std::size_t>(byteAt(stream, at + 4)) : 4;
            ASSERT_LE(start, packetSize);
            payload += stream.substr(at + start, packetSize - start);
        }
        std::string expected;
        for (std::size_t at = 0; at < payload.size(); at += 14 + size)
            expected += payload.substr(at, 14) + frame;
        ASSERT_EQ(payload, expected) << size;
        ASSERT_EQ(payload.size(), 16 * (14 + size));
    }
}

} // namespace
