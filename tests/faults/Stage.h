// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/Fault.h"
#include "tests/faults/Watch.h"
#include "tests/system/Product.h"

#include <memory>
#include <string>
#include <vector>

class SafeServer;

/// The environment of one trial: a host of its own, the local directory and the servers of the
/// fault's site. Trial's thread only.
class Stage {
public:
    /// The host's log and the recording go to \a folder; \a more are added to the host's arguments.
    Stage(const Site &site, const QString &folder, const QStringList &more = {});
    ~Stage();

    bool isUp() const { return m_product.isUp(); }
    const Product &product() const { return m_product; }
    StreamingServer &server() { return m_server; }
    const QString &wav() const { return m_wav; }
    qint64 pid() const { return m_product.host().processId(); }

    /// Plays the site's stream, or another URL of its server.
    void play(const Site &site, const HostLink &link) const;
    void play(const QByteArray &url, bool live, const HostLink &link) const;

    /// Sets a fault of the directory.
    void setFault(const QByteArray &fault);
    void clearFaults() { m_product.clearFaults(); }
    /// Sends a signal to the host's children whose command line contains \a name; without one to
    /// all.
    void signalChildren(int number, const QByteArray &name = {});
    /// Marks the moment of a fault that the player must notice.
    void markFault() { m_faults.push_back(Clock::now()); }

    /// Connections to the servers, including those of the directory's streams, and the moments of
    /// faults, in order.
    std::vector<Clock::time_point> arrivals() const;
    std::vector<Clock::time_point> faults() const;
    bool wasAskedFor(const std::vector<QByteArray> &paths) const;
    /// Reads new requests from the directory's log.
    void look();
    /// Ends the host; returns what was wrong with its end.
    std::string end();
    /// Kills a host that no longer answers.
    void kill();

private:
    QStringList arguments(const QString &folder, const QStringList &more) const;

    const QString m_wav;
    StreamingServer m_server;
    StreamingServer m_moved;
    std::unique_ptr<SafeServer> m_safe;
    Product m_product;
    std::vector<Clock::time_point> m_faults;
    std::vector<Clock::time_point> m_streamRequests;
};
