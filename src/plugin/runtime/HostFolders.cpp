// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/HostFolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>

namespace {

QString besideProgram(const QString &folder)
{
    return QDir::cleanPath(
        QCoreApplication::applicationDirPath() + QStringLiteral("/../") + folder);
}

/// A service that runs as root may have none, or "/".
bool isHome(const QString &folder)
{
    return QDir::isAbsolutePath(folder) && QDir::cleanPath(folder) != QLatin1String("/");
}

} // namespace

QStringList HostFolders::pluginFolders()
{
    QStringList folders;
    const QStringList named
        = qEnvironmentVariable("VESK_PLUGIN_PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &folder : named)
        folders.append(QDir(folder).absolutePath());
    const QString home = qEnvironmentVariable("HOME");
    if (isHome(home))
        folders.append(QDir::cleanPath(home + QStringLiteral("/.local/lib/vesk/plugins")));
    // A build folder's layout, then the distribution's own library folder.
    const QString built = besideProgram(QStringLiteral("lib/vesk/plugins"));
    folders.append(pluginsIn({built}).used.isEmpty()
            ? besideProgram(QStringLiteral(VESK_PLUGIN_INSTALL_DIR))
            : built);
    return folders;
}

HostFolders::PluginFiles HostFolders::pluginsIn(const QStringList &folders)
{
    PluginFiles files;
    QHash<QString, QString> byName;
    for (const QString &folder : folders) {
        const QDir dir(folder);
        const QStringList names = dir.entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
        for (const QString &name : names) {
            const QString file = dir.absoluteFilePath(name);
            const auto first = byName.constFind(name);
            if (first == byName.constEnd()) {
                byName.insert(name, file);
                files.used.append(file);
            } else if (*first != file) {
                files.hidden.append(file);
                files.instead.append(*first);
            }
        }
    }
    return files;
}

QString HostFolders::pluginProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/vesk-plugin");
}

QString HostFolders::decoderProgram()
{
    // A build folder's layout, then where programs lie that nobody starts by hand.
    const QString built = QCoreApplication::applicationDirPath() + QStringLiteral("/vesk-decoder");
    return QFileInfo::exists(built)
        ? built
        : besideProgram(QStringLiteral(VESK_LIBEXEC_INSTALL_DIR)) + QStringLiteral("/vesk-decoder");
}

QString HostFolders::cache()
{
    // As the XDG base directory specification has it.
    const QString named = qEnvironmentVariable("XDG_CACHE_HOME");
    if (QDir::isAbsolutePath(named))
        return QDir::cleanPath(named + QStringLiteral("/vesk"));
    const QString home = qEnvironmentVariable("HOME");
    return isHome(home) ? QDir::cleanPath(home + QStringLiteral("/.cache/vesk")) : QString();
}

QStringList HostFolders::translations()
{
    return {besideProgram(QStringLiteral("share/vesk/translations"))};
}

QString HostFolders::webPage()
{
    const QString folder = besideProgram(QStringLiteral("share/vesk/web"));
    return QDir(folder).exists() ? folder : QString();
}
