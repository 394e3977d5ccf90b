// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PlayerText.h"

TrString playerText(const char *text)
{
    return TrString("Player", text);
}

TrString playerText(const char *text, const QStringList &values)
{
    QVector<TrArg> arguments;
    for (const QString &value : values)
        arguments.append(TrArg(value));
    return TrString(QStringLiteral("Player"), QString::fromLatin1(text), QString(), -1, arguments);
}
