// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/Caller.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

/// A device that was paired with this host.
struct PairedDevice {
    QString id; ///< 16 hexadecimal digits
    QString name;
    AccessRole role = AccessRole::Listener;
    QDateTime paired; ///< UTC, whole seconds; so is the next
    QDateTime seen; ///< when it came in last; invalid: never
    QString address; ///< from which IP address; empty: unknown
};

/// The same, with that by which it is recognised.
struct KeptDevice : PairedDevice {
    QByteArray digest; ///< SHA-256 of its token, 32 bytes
};

/// The devices of a host, and the file that holds them. A value.
struct DeviceList {
    static constexpr int MaxDevices = 64;
    /// Unicode characters of a name; one may take two QChars.
    static constexpr int MaxNameLength = 64;
    static constexpr int DigestSize = 32;
    /// A file with more is damaged; the largest list takes a third of it.
    static constexpr std::size_t MaxFileSize = 128 * 1024;

    QVector<KeptDevice> devices; ///< at most MaxDevices, with different ids and digests

    /// Null when there is none.
    const KeptDevice *find(const QString &id) const;
    KeptDevice *find(const QString &id);
    void remove(const QString &id);

    /// JSON.
    QByteArray toFile() const;
    /// Nothing for a file with anything wrong in it, be it in one device only: it cannot be known
    /// whom it would let in. Members that are not known are ignored.
    static std::optional<DeviceList> fromFile(const QByteArray &file);

    /// Whether \a name may be shown as a device's: 1 to MaxNameLength characters without spaces at
    /// the ends, controls, line ends, marks that turn the direction of writing around, or halves of
    /// characters, and one of them can be seen.
    static bool isName(const QString &name);
    /// Whether \a text is an IPv4 or IPv6 address.
    static bool isAddress(const QString &text);
};

/// "listener" or "owner".
QString accessRoleName(AccessRole role);
/// Nothing for other texts.
std::optional<AccessRole> accessRoleOf(const QString &name);
/// ISO 8601 in UTC, "2026-11-22T16:00:00Z"; empty for an invalid time.
QString accessTimeText(const QDateTime &time);
