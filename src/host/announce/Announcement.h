// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QString>

#include <memory>

/// What other devices of the network are told of this host.
struct AnnouncedHost {
    /// What they show in their lists; what is longer than 63 bytes of UTF-8 is cut off.
    QString name;
    quint16 port = 0;
    /// Whether the port speaks TLS. It answers plain HTTP as well then, by leading to https.
    bool isTls = false;
    /// Where the page is, with a slash at both ends.
    QString path = QStringLiteral("/");
};

class AnnouncementPrivate;

/// Has the Avahi daemon announce the host (DNS-SD over multicast DNS) for as long as this object
/// lives, as `_vesk._tcp`, for programs that know what that is, and as `_http._tcp`, for those that
/// list web pages. Not as `_https._tcp`: hardly a program looks for it, and those that do would
/// list the page twice, which is found at the other one's port just as well.
///
/// Made only if the host serves more than loopback, and destroyed before the server. Main thread,
/// in the GLib main loop that Qt runs there. Nothing here waits for the bus or the daemon, which
/// may hang: that is why it talks to the daemon with GDBus, and not with libavahi-client, whose
/// calls block.
///
/// The daemon may be absent, come later, be restarted or have its host renamed; without it, or
/// without a system bus, there is one line in the log at DEBUG, and nothing wakes up. It is never
/// started: who does not have it running does not want announcements. If the bus itself ends, there
/// are none until the host is started again. A name that is taken in the network is replaced by
/// what the daemon suggests, at most MaxRenames times.
class Announcement : public QObject {
    Q_OBJECT

public:
    /// For each start of the daemon. A neighbour that claims every name gets no more than that.
    static constexpr int MaxRenames = 20;

    explicit Announcement(const AnnouncedHost &host, QObject *parent = nullptr);
    /// Withdraws it.
    ~Announcement() override;

    /// Under which the host is announced at present; empty while it is not.
    QString name() const;

Q_SIGNALS:
    void nameChanged(const QString &name);

private:
    friend class AnnouncementPrivate;
    std::unique_ptr<AnnouncementPrivate> d;
};
