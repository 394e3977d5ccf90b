// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/MemberIdFile.h"

#include "api/core/log.h"

#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>

VESK_LOGGER("Host")

namespace {

constexpr std::size_t MaxSize = 64;

} // namespace

MemberIdFile::MemberIdFile(const QString &folder)
    : m_isUsed(!folder.isEmpty())
    , m_file(QFile::encodeName(folder + QStringLiteral("/member-id")).toStdString(), MaxSize)
{
}

QString MemberIdFile::read()
{
    if (!m_isUsed)
        return {};
    m_file.removeLeftovers();
    const auto content = m_file.read();
    if (content && !*content)
        return {};
    const QString id = content ? QString::fromStdString(**content).trimmed() : QString();
    if (isMemberId(id))
        return id;
    const auto name = m_file.setAside();
    VESK_WARN("There is no member id in " << m_file.name()
                                          << (name ? ", now " : ". The file stays there: ")
                                          << (name ? *name : name.error().text) << '.');
    return {};
}

Result<void, files::Problem> MemberIdFile::write(const QString &id)
{
    if (!m_isUsed)
        return {};
    return m_file.write((id + QLatin1Char('\n')).toStdString());
}

bool MemberIdFile::isMemberId(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^[0-9a-f]{32}\\z"));
    return form.match(text).hasMatch();
}

QString MemberIdFile::make()
{
    QString id;
    for (int part = 0; part < 2; ++part) {
        const quint64 bits = QRandomGenerator::system()->generate64();
        id += QStringLiteral("%1").arg(bits, 16, 16, QLatin1Char('0'));
    }
    return id;
}
