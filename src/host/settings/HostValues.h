// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"

#include <QVector>

/// \file
/// The settings and states that this host offers to its plug-ins and clients. Pure functions, any
/// thread.

/// Who wants to see a setting.
enum class HostValueGroup {
    None, ///< a state, or what the host knows by itself
    General, ///< of the device
    Browsing, ///< of how lists and menus look
    Advanced, ///< what a listener leaves as it is
};

/// What a setting takes beside what its type says.
struct HostValueRule {
    /// Whether it takes a value of its type; null when it takes any.
    bool (*takes)(const VeskValue &value) = nullptr;
    /// What that is, as the end of "The setting cannot be x: it is ...".
    TrString what {};
};

/// One value of the tree as it is before anything was read or set. The writable ones are kept.
struct HostValueDefinition {
    CMPath path;
    VeskValue initial;
    CMValuesWorker::Access access;
    TrString title;
    HostValueGroup group = HostValueGroup::None;
    TrString description = TrString();
    HostValueRule rule {};
};

/// The longest text that a value may be, in characters.
constexpr int MaxHostText = 2000;

const QVector<HostValueDefinition> &hostValueDefinitions();
/// The definition at \a path; null when there is none.
const HostValueDefinition *findHostValue(const CMPath &path);

/// What is wrong with a value that is to be given to \a definition: \a given, and what it
/// was read as, empty when it is not of the type. In words that name the setting and what it takes;
/// empty when nothing is.
CMError checkHostValue(
    const HostValueDefinition &definition, const QVariant &given, const VeskValue &value);

/// Whether services may lead the host to addresses in its own network and machine.
const CMPath &hostLocalAddressesPath();
/// The paths of a group's values, in the order in which they are shown.
QList<CMPath> hostValuesIn(HostValueGroup group);

/// The prefixes of these values.
const QStringList &hostValuePrefixes();
/// Defines all of them, with their checks.
void defineHostValues(CMValuesWorker *values);

/// The bare value: a bool, a number, a string.
QVariant plainValue(const VeskValue &value);
