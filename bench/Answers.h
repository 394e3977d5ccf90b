#pragma once

#include <QByteArray>
#include <QStringList>

/// Answers as the directory gives them, for measuring.

/// A list of \a count stations with 14 entries each, about 500 bytes a station.
QByteArray stationsAnswer(int count);
/// The root menu.
QByteArray rootAnswer();
/// The list of genres that the stations name.
QByteArray genresAnswer();
/// The roles that the content browser's page asks for.
const QStringList &pageRoles();
