// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/MemberIdFile.h"

#include "api/core/log.h"

#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>

VESK_LOGGER("Host")

namespace {

using Content = files::KeptFile::Content;

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
    const Content content = m_file.read();
    if (content.state == Content::Missing)
        return {};
    const QString id = QString::fromStdString(content.bytes).trimmed();
    if (isMemberId(id))
        return id;
    std::string name;
    const files::Problem problem = m_file.setAside(name);
    VESK_WARN("There is no member id in " << m_file.name()
                                          << (problem ? ". The file stays there: " : ", now ")
                                          << (problem ? problem.text : name) << '.');
    return {};
}

files::Problem MemberIdFile::write(const QString &id)
{
    return m_isUsed ? m_file.write((id + QLatin1Char('\n')).toStdString()) : files::Problem();
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
