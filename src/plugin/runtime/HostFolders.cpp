// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/HostFolders.h"

#include <QCoreApplication>
#include <QDir>

namespace {

QString besideProgram(const QString &folder)
{
    return QDir::cleanPath(
        QCoreApplication::applicationDirPath() + QStringLiteral("/../") + folder);
}

} // namespace

QStringList HostFolders::installedPlugins()
{
    // A build folder's layout, then the distribution's own library folder.
    const QStringList folders {
        QStringLiteral("lib/vesk/plugins"), QStringLiteral(VESK_PLUGIN_INSTALL_DIR)};
    for (const QString &folder : folders) {
        const QDir dir(besideProgram(folder));
        QStringList files;
        const QStringList names = dir.entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
        for (const QString &name : names)
            files.append(dir.absoluteFilePath(name));
        if (!files.isEmpty())
            return files;
    }
    return {};
}

QString HostFolders::pluginProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/vesk-plugin");
}

QString HostFolders::decoderProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/vesk-decoder");
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
