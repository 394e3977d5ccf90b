// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/QrText.h"

#include <QByteArray>

#include <memory>
#include <qrencode.h>

namespace {

/// ISO/IEC 18004: four modules on each side.
constexpr int QuietZone = 4;
constexpr uchar Dark = 1;

struct CodeFreer {
    void operator()(QRcode *code) const { QRcode_free(code); }
};

bool isLight(const QRcode &code, int row, int column)
{
    if (row < 0 || column < 0 || row >= code.width || column >= code.width)
        return true;
    return (code.data[row * code.width + column] & Dark) == 0;
}

QChar block(bool upper, bool lower)
{
    if (upper)
        return QChar(lower ? 0x2588 : 0x2580);
    return lower ? QChar(0x2584) : QChar(QLatin1Char(' '));
}

} // namespace

QStringList qrText(const QString &text, int width)
{
    // A screen is clean: the lowest level of error correction will do, and makes the smallest code.
    const std::unique_ptr<QRcode, CodeFreer> code(QRcode_encodeString(
        text.toUtf8().constData(), 0, QR_ECLEVEL_L, QR_MODE_8, /*casesensitive*/ 1));
    if (!code || code->width + 2 * QuietZone > width)
        return {};
    QStringList lines;
    const int end = code->width + QuietZone;
    for (int row = -QuietZone; row < end; row += 2) {
        QString line;
        for (int column = -QuietZone; column < end; ++column) {
            // The number of rows is odd; below the last one there is nothing to draw.
            const bool lower = row + 1 < end && isLight(*code, row + 1, column);
            line += block(isLight(*code, row, column), lower);
        }
        lines.append(line);
    }
    return lines;
}
