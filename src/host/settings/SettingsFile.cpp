// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/SettingsFile.h"

#include "api/core/log.h"
#include "api/web/VeskJson.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

VESK_LOGGER("Host")

namespace {

using Content = Result<files::KeptFile::Content, files::Problem>;

bool isMissing(const Content &content)
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

/// Returns whether \a bytes could be understood.
bool parse(const std::string &bytes, KeptSettings &settings)
{
    VeskError error;
    const QVariant content = VeskJson::parse(QByteArray::fromStdString(bytes), error);
    if (!isSettings(content))
        return false;
    const QVariantHash members = content.toHash();
    settings = {members.value(valuesKey()).toHash(), members.value(memberIdKey()).toString()};
    return true;
}

} // namespace

SettingsFile::SettingsFile(const QString &folder)
    : m_name(folder.isEmpty() ? QString() : folder + QStringLiteral("/settings.json"))
    , m_file(QFile::encodeName(m_name).toStdString(), MaxSize)
{
}

KeptSettings SettingsFile::read(bool &isCurrent)
{
    isCurrent = false;
    if (m_name.isEmpty())
        return {};
    m_file.removeLeftovers();
    const Content content = m_file.read();
    KeptSettings settings;
    if (content && *content && parse(**content, settings)) {
        isCurrent = true;
        m_written = QByteArray::fromStdString(**content);
        return settings;
    }
    if (!isMissing(content)) {
        moveAside(content ? QStringLiteral("these are no settings")
                          : QString::fromStdString(content.error().text));
    }
    return readLastGood();
}

KeptSettings SettingsFile::readLastGood() const
{
    KeptSettings settings;
    const Content content = m_file.readLastGood();
    if (content && *content && parse(**content, settings)) {
        VESK_WARN("There are no settings in " << m_name << ", but in its copy from before.");
        return settings;
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
    const Content copy = m_file.readLastGood();
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
