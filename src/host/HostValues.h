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

/// One value of the tree as it is before anything was read or set. The writable ones are kept.
struct HostValueDefinition {
    CMPath path;
    VeskValue initial;
    CMValuesWorker::Access access;
    TrString title;
    HostValueGroup group = HostValueGroup::None;
    TrString description = TrString();
};

const QVector<HostValueDefinition> &hostValueDefinitions();
/// The definition at \a path; null when there is none.
const HostValueDefinition *findHostValue(const CMPath &path);

/// Whether services may lead the host to addresses in its own network and machine.
const CMPath &hostLocalAddressesPath();
/// The paths of a group's values, in the order in which they are shown.
QList<CMPath> hostValuesIn(HostValueGroup group);

/// The prefixes of these values.
const QStringList &hostValuePrefixes();
/// Defines all of them.
void defineHostValues(CMValuesWorker *values);

/// The bare value: a bool, a number, a string.
QVariant plainValue(const VeskValue &value);
