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

/// Where a setting is shown.
enum class HostValueGroup {
    None, ///< nowhere: a state, or a value that the host finds out by itself
    General, ///< of the device
    Browsing, ///< of how lists and menus look
    Advanced, ///< of no interest to most users
};

/// Which values of its type a setting takes.
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

/// What is wrong with a value for \a definition: with \a given, which was read as \a value, empty
/// when it is not of the type. Names the setting and what it takes; empty when nothing is wrong.
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
