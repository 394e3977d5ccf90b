// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PauseBuffer.h"

#include <gmock/gmock.h>

namespace {

using Item = PauseBuffer::Item;
const PauseBuffer::Clock::time_point Now {};

TEST(PauseBuffer, GivesBackInOrderWhatItWasGiven)
{
    PauseBuffer buffer;
    const QByteArray bytes(40000, 'a');
    ASSERT_TRUE(buffer.append(bytes.constData(), 40000, Now));
    buffer.append(Item::Title, Now, QStringLiteral("Song"));
    ASSERT_TRUE(buffer.append("b", 1, Now));
    ASSERT_TRUE(buffer.append("c", 1, Now));
    QByteArray all;
    QStringList titles;
    int items = 0;
    for (; !buffer.isEmpty(); buffer.removeFirst(), ++items) {
        EXPECT_LE(buffer.first().bytes.size(), PauseBuffer::PieceSize);
        all += buffer.first().bytes;
        if (buffer.first().kind == Item::Title)
            titles.append(buffer.first().title + QString::number(all.size()));
    }
    EXPECT_EQ(all, bytes + "bc");
    EXPECT_EQ(titles, QStringList {QStringLiteral("Song40000")});
    EXPECT_EQ(items, 5);
    EXPECT_EQ(buffer.size(), 0U);
}

TEST(PauseBuffer, IsBoundedHoweverItIsFilled)
{
    for (const std::size_t size : {100U, 16384U, 65536U}) {
        PauseBuffer buffer;
        const QByteArray bytes(static_cast<int>(size), 'a');
        std::size_t taken = 0;
        while (buffer.append(bytes.constData(), size, Now))
            taken += size;
        EXPECT_LE(buffer.size(), PauseBuffer::MaxSize);
        EXPECT_GT(taken, PauseBuffer::MaxSize * 9 / 10);
        buffer.removeFirst();
        buffer.removeFirst();
        buffer.removeFirst();
        buffer.removeFirst();
        buffer.removeFirst();
        EXPECT_TRUE(buffer.append(bytes.constData(), size, Now)) << size;
    }
}

TEST(PauseBuffer, AStreamThatCannotBeDecodedIsSkipped)
{
    PauseBuffer buffer;
    buffer.append("a", 1, Now);
    buffer.append(Item::End, Now);
    EXPECT_FALSE(buffer.hasBegin());
    buffer.append(Item::Begin, Now);
    buffer.append("b", 1, Now);
    EXPECT_TRUE(buffer.hasBegin());
    buffer.skipStream();
    EXPECT_EQ(buffer.first().kind, Item::Begin);
    buffer.removeFirst();
    EXPECT_FALSE(buffer.hasBegin());
    EXPECT_EQ(buffer.first().bytes, "b");
    buffer.skipStream();
    EXPECT_TRUE(buffer.isEmpty());
}

} // namespace
