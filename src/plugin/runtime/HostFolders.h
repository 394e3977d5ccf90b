// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

/// Where files are, relative to the program, in a build folder and when installed.
namespace HostFolders {
/// Every plug-in of the folders that belong to this program, by name.
QStringList installedPlugins();
/// The program that runs one plug-in.
QString pluginProgram();
/// The program that decodes one stream.
QString decoderProgram();
/// Folders with translation catalogues.
QStringList translations();
/// The folder with the content browser's page; empty when it is not installed.
QString webPage();
} // namespace HostFolders
