#pragma once

#include <QString>
#include <QVariant>

/// How a call ended.
struct RpcAnswer {
    enum Kind {
        Result, ///< `result` holds it.
        Error, ///< The host answered with an error.
        NoHost, ///< Nobody answered, or not a host.
    };

    Kind kind = NoHost;
    QVariant result;
    /// Why there is no result.
    QString message;
    /// Error: its name and title, empty where the host gave none.
    QString name;
    QString title;
    /// Error: the whole of it, as the host gave it.
    QVariantHash error;
};

/// Calls a host's methods over HTTP; each call waits for its answer. One thread at a time.
class RpcClient {
public:
    /// Longest answer that is taken, in bytes.
    static constexpr int MaxAnswer = 64 * 1024 * 1024;

    /// \a host is an http address that ends with "/".
    explicit RpcClient(const QString &host);

    RpcAnswer call(const QString &method, const QVariantHash &params);

private:
    /// Returns why it failed; empty when \a answer is what the host sent with code 200.
    QString post(const QByteArray &body, QByteArray &answer);

    const QByteArray m_url;
};
