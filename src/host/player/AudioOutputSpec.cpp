// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioOutputSpec.h"

#include "base/files/Descriptor.h"

#include <QFile>

std::optional<AudioOutputSpec> AudioOutputSpec::parse(const QString &text)
{
    const QString wav = QStringLiteral("wav:");
    if (text == QLatin1String("auto"))
        return AudioOutputSpec {Auto, {}};
    if (text == QLatin1String("null"))
        return AudioOutputSpec {Null, {}};
    if (text.startsWith(wav) && text.size() > wav.size())
        return AudioOutputSpec {Wav, text.mid(wav.size())};
    return {};
}

QString AudioOutputSpec::problem() const
{
    if (kind != Wav)
        return {};
    const auto checked = files::checkRegular(QFile::encodeName(file).toStdString());
    return checked
        ? QString()
        : QStringLiteral("%1: %2").arg(file, QString::fromStdString(checked.error().text));
}
