// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "base/files/FileLock.h"
#include "base/files/KeptFile.h"

#include <QByteArray>
#include <QString>
#include <QVariantHash>

/// What lets this user into a host that is not on this machine, and by what the host is known.
struct HostAccess {
    /// The token of this device, `[A-Za-z0-9_-]{43}`; empty before it is paired.
    QByteArray token;
    /// SHA-256 of the public key of the host's certificate, in hexadecimal digits. Empty when the
    /// certificate has to be one of an authority that the system knows.
    QString key;
    /// The fingerprint that the certificate had when its key was accepted.
    QString fingerprint;

    static bool isToken(const QByteArray &text);
};

/// The hosts that this user has paired with, in a file that only the user may read. One thread.
class KnownHosts {
public:
    /// An empty \a file knows no hosts, and takes none.
    explicit KnownHosts(const QString &file);

    /// What was kept for the host at that address, as CtlOptions has it; empty members when
    /// nothing was. Fails when the file cannot be read, or is not one of these.
    Result<HostAccess, QString> find(const QString &host) const;

    /// Sees to it that keep() will most likely succeed: makes the folder and locks the file, which
    /// another veskctl then cannot change as long as this object lives.
    Result<void, QString> prepare();
    /// On the disk once it has succeeded; a failed one leaves the file as it was.
    Result<void, QString> keep(const QString &host, const HostAccess &access);
    /// The same: nothing is kept for that host any more.
    Result<void, QString> forget(const QString &host);

private:
    Result<QVariantHash, QString> read() const;
    Result<void, QString> write(const QVariantHash &hosts);

    const std::string m_name;
    files::KeptFile m_file;
    files::FileLock m_lock;
};

/// The user's file of known hosts; empty when there is no place for one.
QString knownHostsFile();
