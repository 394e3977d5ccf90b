// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/store/CheckedFile.h"

#include "api/core/log.h"

#include <QFile>

#include <utility>

VESK_LOGGER("Host")

CheckedFile::CheckedFile(const QString &name, std::size_t maxSize, const QString &what,
    std::function<bool(const QByteArray &)> isGood)
    : m_name(name)
    , m_what(what)
    , m_isGood(std::move(isGood))
    , m_file(QFile::encodeName(name).toStdString(), maxSize)
{
}

CheckedFile::Content CheckedFile::read()
{
    if (m_name.isEmpty())
        return {};
    m_file.removeLeftovers();
    const auto content = m_file.read();
    if (content && *content) {
        m_written = QByteArray::fromStdString(**content);
        if (m_isGood(m_written))
            return {m_written, true};
        m_written.clear();
    }
    if (!content)
        moveAside(QString::fromStdString(content.error().text));
    else if (*content)
        moveAside(QStringLiteral("these are no %1").arg(m_what));
    return {readLastGood(), false};
}

QByteArray CheckedFile::readLastGood() const
{
    const auto content = m_file.readLastGood();
    if (content && !*content)
        return {};
    const QByteArray bytes = content ? QByteArray::fromStdString(**content) : QByteArray();
    if (content && m_isGood(bytes)) {
        VESK_WARN(
            "There are no " << m_what << " in " << m_name << ", but in its copy from before.");
        return bytes;
    }
    VESK_WARN(
        "The copy of " << m_name << " cannot be read either; starting without " << m_what << '.');
    return {};
}

void CheckedFile::moveAside(const QString &reason)
{
    const auto name = m_file.setAside();
    VESK_WARN("The " << m_what << " in " << m_name << " cannot be read: " << reason
                     << (name ? ". They are now in " : ". They stay there: ")
                     << (name ? *name : name.error().text) << '.');
}

Result<void, files::Problem> CheckedFile::write(const QByteArray &bytes)
{
    if (m_name.isEmpty())
        return {};
    auto written = m_file.write(bytes.toStdString());
    if (written)
        m_written = bytes;
    return written;
}

bool CheckedFile::writeLastGood()
{
    if (m_written.isEmpty())
        return true;
    const std::string bytes = m_written.toStdString();
    const auto copy = m_file.readLastGood();
    if (copy && *copy == bytes)
        return true;
    const auto written = m_file.writeLastGood(bytes);
    if (!written && !m_isCopyFailing) {
        VESK_WARN("There is no copy of the " << m_what << " in " << m_name << ": "
                                             << written.error().text);
    }
    m_isCopyFailing = !written;
    return !m_isCopyFailing;
}
