#pragma once

#include <QString>
#include <QVariantHash>

#include <functional>
#include <memory>

/// Follows a host's player over its WebSocket, also when the host goes away and comes back. Uses
/// the main thread's GLib context and takes SIGINT, SIGTERM and SIGHUP while it runs.
class PlayerWatch {
public:
    enum End {
        Ended, ///< By a signal, because \a show wanted it, or because the reader is gone.
        Refused, ///< The host does not tell what its player does.
        NoHost, ///< There was none from the beginning.
    };

    /// Gets the state at first and with each change; false ends the watch.
    using Show = std::function<bool(const QVariantHash &state)>;

    /// \a host is an http address that ends with "/". The watch ends when nobody reads the
    /// descriptor \a output any more; -1 for none. \a lost is called when a host is gone.
    PlayerWatch(const QString &host, int output, Show show, std::function<void()> lost);
    ~PlayerWatch();

    /// Returns with the end of the watch, and why when that is a failure.
    End run(QString &problem);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
