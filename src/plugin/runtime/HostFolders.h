// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

/// Where files are, relative to the program, in a build folder and when installed.
namespace HostFolders {
/// Libraries of plug-ins.
struct PluginFiles {
    QStringList used;
    /// Those that are not used because another one has their name, with that one.
    QStringList hidden;
    QStringList instead; ///< as many
};
/// Where plug-ins are looked for, in this order: the folders of the environment variable
/// VESK_PLUGIN_PATH, separated by colons; the user's, .local/lib/vesk/plugins in the home folder;
/// the one that belongs to this program.
QStringList pluginFolders();
/// Every plug-in of \a folders, by name in each; of those with the same name the first.
PluginFiles pluginsIn(const QStringList &folders);
/// The program that runs one plug-in.
QString pluginProgram();
/// The program that decodes one stream.
QString decoderProgram();
/// Where this user's programs keep what can be made again; empty if there is no place for it. It
/// may not exist.
QString cache();
/// Folders with translation catalogues.
QStringList translations();
/// The folder with the content browser's page; empty when it is not installed.
QString webPage();
} // namespace HostFolders
