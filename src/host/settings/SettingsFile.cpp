// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/SettingsFile.h"

#include "api/core/log.h"
#include "api/web/VeskJson.h"

#include <QDir>
#include <QFile>

#include <optional>
#include <unistd.h>

VESK_LOGGER("Host")

namespace {

using Kept = Result<files::KeptFile::Content, files::Problem>;

bool isMissing(const Kept &content)
{
    return content && !*content;
}

const QString &valuesKey()
{
    static const QString key = QStringLiteral("values");
    return key;
}

const QString &memberIdKey()
{
    static const QString key = QStringLiteral("memberId");
    return key;
}

/// Whether \a content has the form that is written.
bool isSettings(const QVariant &content)
{
    const QVariantHash members = content.toHash();
    const QVariant values = members.value(valuesKey());
    const QVariant memberId = members.value(memberIdKey());
    return content.userType() == QMetaType::QVariantHash
        && (values.isNull() || values.userType() == QMetaType::QVariantHash)
        && (memberId.isNull() || memberId.userType() == QMetaType::QString);
}

/// What \a content holds; nothing when it cannot be understood.
std::optional<KeptSettings> settingsIn(const Kept &content)
{
    if (!content || !*content)
        return std::nullopt;
    VeskError error;
    const QVariant value = VeskJson::parse(QByteArray::fromStdString(**content), error);
    if (!isSettings(value))
        return std::nullopt;
    const QVariantHash members = value.toHash();
    return KeptSettings {
        members.value(valuesKey()).toHash(), members.value(memberIdKey()).toString()};
}

} // namespace

SettingsFile::SettingsFile(const QString &folder)
    : m_name(folder.isEmpty() ? QString() : folder + QStringLiteral("/settings.json"))
    , m_file(QFile::encodeName(m_name).toStdString(), MaxSize)
{
}

SettingsFile::Content SettingsFile::read()
{
    if (m_name.isEmpty())
        return {};
    m_file.removeLeftovers();
    const Kept content = m_file.read();
    if (const auto settings = settingsIn(content)) {
        m_written = QByteArray::fromStdString(**content);
        return {*settings, true};
    }
    if (!isMissing(content)) {
        moveAside(content ? QStringLiteral("these are no settings")
                          : QString::fromStdString(content.error().text));
    }
    return {readLastGood(), false};
}

KeptSettings SettingsFile::readLastGood() const
{
    const Kept content = m_file.readLastGood();
    if (const auto settings = settingsIn(content)) {
        VESK_WARN("There are no settings in " << m_name << ", but in its copy from before.");
        return *settings;
    }
    if (!isMissing(content))
        VESK_WARN("The copy of " << m_name << " cannot be read either; starting without settings.");
    return {};
}

void SettingsFile::moveAside(const QString &reason)
{
    const auto name = m_file.setAside();
    VESK_WARN("The settings in " << m_name << " cannot be read: " << reason
                                 << (name ? ". They are now in " : ". They stay there: ")
                                 << (name ? *name : name.error().text) << '.');
}

Result<void, files::Problem> SettingsFile::write(const KeptSettings &settings)
{
    if (m_name.isEmpty())
        return {};
    QVariantHash content {{valuesKey(), settings.values}};
    if (!settings.memberId.isEmpty())
        content.insert(memberIdKey(), settings.memberId);
    const QByteArray bytes = VeskJson::write(content) + '\n';
    auto written = m_file.write(bytes.toStdString());
    if (written)
        m_written = bytes;
    return written;
}

void SettingsFile::writeLastGood()
{
    const std::string bytes = m_written.toStdString();
    const Kept copy = m_file.readLastGood();
    if (bytes.empty() || (copy && *copy == bytes))
        return;
    const auto written = m_file.writeLastGood(bytes);
    if (!written && !m_isCopyFailing)
        VESK_WARN("There is no copy of the settings in " << m_name << ": " << written.error().text);
    m_isCopyFailing = !written;
}

QString SettingsFile::defaultFolder()
{
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (QDir::isAbsolutePath(state))
        return state + QStringLiteral("/vesk");
    const QString home = qEnvironmentVariable("HOME");
    if (QDir::isAbsolutePath(home))
        return home + QStringLiteral("/.local/state/vesk");
    return ::geteuid() == 0 ? QStringLiteral("/var/lib/vesk") : QString();
}
