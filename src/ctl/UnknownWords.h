#pragma once

#include <QString>
#include <QStringList>

namespace CLI {
class App;
}

/// Names the first of \a arguments that stands where \a app wants a command, or looks like an
/// option, and is none; with the one that is most like it, if any is. Empty when there is no such
/// word. A pure function.
QString complainOfUnknownWord(const CLI::App &app, const QStringList &arguments);

/// The one of \a candidates that \a word was probably meant to be; empty when none is like it.
QString nearest(const QString &word, const QStringList &candidates);
