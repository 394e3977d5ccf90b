// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioOutputSpec.h"

#include "base/files/Descriptor.h"

#include <QFile>

AudioOutputSpec AudioOutputSpec::parse(const QString &text, bool &ok)
{
    AudioOutputSpec spec;
    const QString wav = QStringLiteral("wav:");
    ok = true;
    if (text == QLatin1String("null")) {
        spec.kind = Null;
    } else if (text.startsWith(wav) && text.size() > wav.size()) {
        spec.kind = Wav;
        spec.file = text.mid(wav.size());
    } else {
        ok = text == QLatin1String("auto");
    }
    return spec;
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
