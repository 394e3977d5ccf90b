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

/// Where a fault is played out: a host of its own with the local directory and the servers of the
/// fault's site. On the thread of its trial.
class Stage {
public:
    /// \a folder gets the host's log and what was heard; \a more are added to its arguments.
    Stage(const Site &site, const QString &folder, const QStringList &more = {});
    ~Stage();

    bool isUp() const { return m_product.isUp(); }
    const Product &product() const { return m_product; }
    StreamingServer &server() { return m_server; }
    const QString &wav() const { return m_wav; }
    qint64 pid() const { return m_product.host().processId(); }

    /// Plays what the site offers, or another address of its server.
    void play(const Site &site, const HostLink &link) const;
    void play(const QByteArray &url, bool live, const HostLink &link) const;

    /// Makes the directory misbehave.
    void setFault(const QByteArray &fault);
    void clearFaults() { m_product.clearFaults(); }
    /// Sends the host's children whose command line holds \a name a signal; to all without one.
    void signalChildren(int number, const QByteArray &name = {});
    /// From here on something is wrong that must be noticed.
    void markFault() { m_faults.push_back(Clock::now()); }

    /// Connections to the servers, those of the directory's streams included, and when something
    /// was done wrong, in their order.
    std::vector<Clock::time_point> arrivals() const;
    std::vector<Clock::time_point> faults() const;
    bool wasAskedFor(const std::vector<QByteArray> &paths) const;
    /// Looks for new requests in the directory's log.
    void look();
    /// Ends the host; what is wrong with how it ended.
    std::string end();
    /// Ends a host that does not answer any more.
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
