// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/web/ServiceAnswers.h"
#include "base/Result.h"
#include "plugin/supervision/ServiceScreens.h"
#include "plugin/supervision/SettingDeclaration.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// Addresses of a plug-in at which opening them changes or reports something, so that a link must
/// not lead there: those at or below a base that meet one of the two conditions.
struct ChangingAddresses {
    QString base; ///< below the plug-in's root; empty: the whole plug-in
    /// The base contains one of these words, in any case; or it contains anything but letters,
    /// digits, "-", "_", single "/" and "." within a name, so that the host cannot tell.
    QStringList words;
    /// What the plug-in removes from a base before it uses it.
    QStringList leftOut;
    /// The address has this parameter with one of these values, in any case; without values, with
    /// any.
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

/// What a plug-in may use; nothing of it unless it says so.
struct PluginNeeds {
    bool network = false; ///< sockets to the internet
    bool store = false; ///< VeskStore
    bool folder = false; ///< a folder of the host's state folder, which it may read
};

/// What the host has to know about a plug-in and its service, from a file beside the library:
/// NAME.json beside NAME.so. docs/host.md describes it.
struct PluginDescriptor {
    static constexpr int MaxBytes = 64 * 1024;
    /// Longest text, and most entries of a list.
    static constexpr int MaxText = 200;
    static constexpr int MaxEntries = 100;

    QString id;
    QString name; ///< to be shown; source text
    QString version; ///< of the plug-in
    QString api; ///< "MAJOR.MINOR" of the SDK that it was built with
    QString context; ///< in which the texts of the descriptor are translated
    /// The folder with its catalogues, ID_LANGUAGE.qm, beside the file; empty when there is none.
    QString translations;
    QVector<SettingDeclaration> settings;
    ServiceScreens screens;
    QVector<ChangingAddresses> changing;
    /// The setting by which the service knows the device; empty when there is none.
    CMPath deviceSetting;
    ServiceAnswerForm answers;
    QVector<ExcuseDeclaration> excuses;
    PluginNeeds needs;

    /// A pure function. Fails with what is wrong first.
    static Result<PluginDescriptor, QString> fromJson(const QByteArray &json);
    /// The folder with the catalogues of a plug-in with this descriptor; empty when it has none.
    QString catalogueFolder(const QString &library) const;
    /// The file that belongs to \a library.
    static QString fileOf(const QString &library);
    /// Blocks on nothing but the disk.
    static Result<PluginDescriptor, QString> read(const QString &file);
};

/// What a descriptor calls \a path, for the plug-in at \a root. A pure function.
CMPath pathBelow(const CMPath &root, const QString &path);

/// Whether opening \a path changes or reports something, by what the plug-in at \a root declares.
/// A pure function.
bool changesSomething(
    const QVector<ChangingAddresses> &changing, const CMPath &root, const CMPath &path);
