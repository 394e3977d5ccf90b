// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QStringList>

/// \file
/// Where the directory's servers are: DNS SRV records (RFC 2782) at _api._tcp.radio-browser.info.

/// Asks the system's name servers. Blocks for up to two seconds for each of them, so call it on a
/// thread that may wait. Returns the servers' addresses ("https://de1.api.radio-browser.info"),
/// none when the question was not answered.
QStringList lookUpRadioBrowserServers();

/// The addresses of the servers that a DNS message (RFC 1035, section 4) holds in its answers. The
/// message is not trusted: what cannot be read, and a server outside of radio-browser.info, is left
/// out. At most 16. A pure function, any thread.
QStringList radioBrowserServersIn(const QByteArray &message);
