// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "modules/tunein/TuneInScreenUrl.h"

#include <QStringList>

/// Whether the URL of the screen \a path may be one of \a pages (in small letters) to some server:
/// one that decodes twice, in any case, with compatible letters, back slashes, parameters behind
/// ";", extra path behind the page, blanks and dots at its end.
inline bool mayBeOneOf(const CMPath &path, const QStringList &pages)
{
    TuneInScreenUrl::Fault fault;
    const VeskUrl url = TuneInScreenUrl::ofPath(path, fault);
    if (!fault.isEmpty())
        return false; // nothing is sent
    QString text = url.path();
    for (int times = 0; times < 3; ++times) {
        text = QString::fromUtf8(QByteArray::fromPercentEncoding(text.toUtf8()));
        text = text.normalized(QString::NormalizationForm_KC).toLower();
        text.replace(QLatin1Char('\\'), QLatin1Char('/'));
        const auto segments = text.split(QLatin1Char('/'));
        for (const QString &segment : segments) {
            QString name;
            for (const QChar c : segment) {
                if (!c.isLetterOrNumber())
                    break;
                name += c;
            }
            if (pages.contains(name))
                return true;
        }
    }
    return false;
}
