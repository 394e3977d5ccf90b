// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/settings/SettingsFile.h"

#include "api/web/VeskJson.h"

#include <QDir>

#include <unistd.h>

namespace {

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

QVariant contentOf(const QByteArray &file)
{
    VeskError error;
    return VeskJson::parse(file, error);
}

bool isSettingsFile(const QByteArray &file)
{
    return isSettings(contentOf(file));
}

} // namespace

SettingsFile::SettingsFile(const QString &folder)
    : m_file(folder.isEmpty() ? QString() : folder + QStringLiteral("/settings.json"), MaxSize,
        QStringLiteral("settings"), &isSettingsFile)
{
}

SettingsFile::Content SettingsFile::read()
{
    const CheckedFile::Content content = m_file.read();
    const QVariantHash members = contentOf(content.bytes).toHash();
    return {{members.value(valuesKey()).toHash(), members.value(memberIdKey()).toString()},
        content.isCurrent};
}

Result<void, files::Problem> SettingsFile::write(const KeptSettings &settings)
{
    QVariantHash content {{valuesKey(), settings.values}};
    if (!settings.memberId.isEmpty())
        content.insert(memberIdKey(), settings.memberId);
    return m_file.write(VeskJson::write(content) + '\n');
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
