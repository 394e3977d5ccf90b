// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"
#include "base/Result.h"

#include <QVector>

#include <functional>

struct PluginDescriptor;

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
    std::function<bool(const VeskValue &value)> takes;
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

/// The settings and states that a host offers to its plug-ins and clients: its own, and the
/// settings that plug-ins declare. A value type; any thread.
class HostValues {
public:
    /// The host's own.
    HostValues();

    /// Adds the settings of a plug-in. Fails when there is one of them already; then none is added.
    Result<void, QString> add(const PluginDescriptor &descriptor);

    /// In the order in which they are shown.
    const QVector<HostValueDefinition> &definitions() const { return m_definitions; }
    /// The definition at \a path; null when there is none. Valid until the next add().
    const HostValueDefinition *find(const CMPath &path) const;
    /// The paths of a group's values, in the order in which they are shown.
    QList<CMPath> in(HostValueGroup group) const;

    /// Defines all of them in \a values, with their checks.
    void defineIn(CMValuesWorker *values) const;

private:
    QVector<HostValueDefinition> m_definitions;
    int m_afterPlugins = 0; ///< the index behind the settings of plug-ins
};

/// What is wrong with a value for \a definition: with \a given, which was read as \a value, empty
/// when it is not of the type. Names the setting and what it takes; empty when nothing is wrong.
CMError checkHostValue(
    const HostValueDefinition &definition, const QVariant &given, const VeskValue &value);

/// Whether services may lead the host to addresses in its own network and machine.
const CMPath &hostLocalAddressesPath();

/// For how many minutes a paused station can go on where it was.
const CMPath &playerPauseBufferPath();

/// Whether the host goes on with what played, after a start: "always", "crash", "never".
const CMPath &hostResumePath();

/// The prefixes of these values.
const QStringList &hostValuePrefixes();

/// The bare value: a bool, a number, a string.
QVariant plainValue(const VeskValue &value);
