// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/web/ServiceAnswers.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// Some addresses of a plug-in which change or report something as soon as they are opened, so that
/// a link must not lead there: those at or below a base that one of the two conditions holds for.
struct ChangingAddresses {
    QString base; ///< below the plug-in's root; empty: the whole plug-in
    /// The base holds one of these words, in any case; or it is written so that the host cannot
    /// tell (with anything but letters, digits, "-", "_", single "/" and "." within a name).
    QStringList words;
    /// What the plug-in takes out of a base before it uses it.
    QStringList leftOut;
    /// The address has this parameter, with one of these values, in any case, or, without values,
    /// with any.
    QString parameter;
    QStringList values;
};

/// A spoken message that a service names in the place of a stream which cannot be played.
struct ExcuseDeclaration {
    enum Meaning { Incompatible, NoStream, OtherCountry, Forbidden };
    /// How the path of its address ends, in any case; "*" stands for anything but a slash.
    QString file;
    Meaning meaning = NoStream;
};

/// What a plug-in says of itself in a file beside its library, NAME.json beside NAME.so: what the
/// host has to know of a service without asking it. docs/host.md describes the file.
struct PluginDescriptor {
    static constexpr int MaxBytes = 64 * 1024;
    /// Longest text, and most entries of a list.
    static constexpr int MaxText = 200;
    static constexpr int MaxEntries = 100;

    QString id;
    QVector<ChangingAddresses> changing;
    /// The setting by which the service knows the device; empty when there is none.
    CMPath deviceSetting;
    ServiceAnswerForm answers;
    QVector<ExcuseDeclaration> excuses;

    /// Of \a json; empty, with what is wrong in \a error, when it cannot be used. A pure function.
    static PluginDescriptor fromJson(const QByteArray &json, QString &error);
    /// The file that belongs to \a library.
    static QString fileOf(const QString &library);
    /// Of \a file; empty without an error when there is none. Blocks for a regular file's sake
    /// only.
    static PluginDescriptor read(const QString &file, QString &error);
};

/// Whether opening \a path changes or reports something, by what the plug-in at \a root declares.
/// A pure function.
bool changesSomething(
    const QVector<ChangingAddresses> &changing, const CMPath &root, const CMPath &path);
