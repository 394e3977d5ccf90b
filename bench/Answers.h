// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QStringList>

/// Response bodies like the directory's, for benchmarks.

/// A list of \a count stations with 14 entries each, about 500 bytes per station.
QByteArray stationsAnswer(int count);
/// A list of \a count stations with the required entries only: 10,000 of them just fit into the
/// 1,000,000 bytes that the plug-in reads. Their names begin with \a name.
QByteArray shortStationsAnswer(int count, const QByteArray &name = "Radio");
/// The root menu.
QByteArray rootAnswer();
/// The list of the genres that the stations refer to.
QByteArray genresAnswer();
/// The roles that the content browser's page requests.
const QStringList &pageRoles();
