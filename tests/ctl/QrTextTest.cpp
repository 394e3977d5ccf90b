// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/QrText.h"

#include <gmock/gmock.h>

namespace {

/// As one version 2 code: 30 bytes, and 6 digits, which take less.
constexpr int Size = 25;
const QString Address = QStringLiteral("https://192.168.1.5:8765/pair#123456");

/// Whether the module is dark; above and left of it is the quiet zone.
bool isDark(const QStringList &lines, int row, int column)
{
    const ushort block = lines.at(row / 2).at(column).unicode();
    const bool isUpper = row % 2 == 0;
    return block == ' ' || block == (isUpper ? 0x2584 : 0x2580);
}

TEST(QrTextTest, IsASquareWithItsQuietZone)
{
    const QStringList lines = qrText(Address, 80);
    ASSERT_EQ(lines.size(), (Size + 8 + 1) / 2);
    for (const QString &line : lines)
        EXPECT_EQ(line.size(), Size + 8);
    for (int i = 0; i < Size + 8; ++i) {
        for (int j = 0; j < 4; ++j) {
            EXPECT_FALSE(isDark(lines, j, i)) << j << ' ' << i;
            EXPECT_FALSE(isDark(lines, i, j)) << i << ' ' << j;
            EXPECT_FALSE(isDark(lines, Size + 7 - j, i)) << Size + 7 - j << ' ' << i;
            EXPECT_FALSE(isDark(lines, i, Size + 7 - j)) << i << ' ' << Size + 7 - j;
        }
    }
}

TEST(QrTextTest, HasItsThreeFinders)
{
    const QStringList lines = qrText(Address, 80);
    ASSERT_FALSE(lines.isEmpty());
    constexpr int First = 4;
    constexpr int Last = 4 + Size - 7;
    for (const auto &[top, left] : {std::pair(First, First), {First, Last}, {Last, First}}) {
        for (int row = 0; row < 7; ++row) {
            for (int column = 0; column < 7; ++column) {
                const bool isRing = row == 0 || row == 6 || column == 0 || column == 6;
                const bool isCore = row >= 2 && row <= 4 && column >= 2 && column <= 4;
                EXPECT_EQ(isDark(lines, top + row, left + column), isRing || isCore)
                    << top << ' ' << left << ' ' << row << ' ' << column;
            }
        }
    }
}

TEST(QrTextTest, HasNoLinesWhereItDoesNotFit)
{
    EXPECT_FALSE(qrText(Address, Size + 8).isEmpty());
    EXPECT_TRUE(qrText(Address, Size + 7).isEmpty());
    EXPECT_TRUE(qrText(Address, 0).isEmpty());
    EXPECT_TRUE(qrText(QString(), 80).isEmpty());
    EXPECT_TRUE(qrText(QString(100000, QLatin1Char('x')), 10000).isEmpty());
}

} // namespace
