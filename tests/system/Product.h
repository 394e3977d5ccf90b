#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include <memory>

/// How a program ended.
struct Outcome {
    int code = -1;
    QString out;
    QString err;
};

/// The local directory and a host that is connected to it, each a process of its own on a free
/// port.
class Product {
public:
    /// \a hostArguments are added to the host's.
    explicit Product(const QStringList &hostArguments = {});
    ~Product();

    bool isUp() const { return !m_hostUrl.isEmpty(); }
    QString hostUrl() const { return m_hostUrl; }
    QString directoryAddress() const { return m_directoryAddress; }
    QString stateDir() const;
    QProcess &host() { return m_host; }

    /// Runs veskctl against the host.
    Outcome ctl(const QStringList &arguments) const;
    /// One JSON-RPC call; the whole answer.
    QVariantHash rpc(const QString &method, const QVariantHash &params) const;
    /// Posts \a body to the host's JSON-RPC as it is; the body of the answer.
    QByteArray post(const QByteArray &body) const;
    /// Rows of a screen with the given roles, or with all.
    QVariantList rows(const QString &path, const QStringList &roles, int last = 99) const;

    /// Makes the directory misbehave as \a fault says, or behave again.
    void setFault(const QByteArray &fault) const;
    void clearFaults() const;
    /// "METHOD TARGET" of each request that the directory got.
    QStringList requestLog() const;

    /// Ends the host as its manager would; its exit code.
    int stopHost();
    /// Starts it again, with the same state. Returns whether it is up.
    bool startHost();

private:
    QTemporaryDir m_folder;
    QStringList m_hostArguments;
    QProcess m_directory;
    QProcess m_host;
    QString m_directoryAddress;
    QString m_hostUrl;
};

/// Runs a program of the build to its end.
Outcome runProgram(const QString &name, const QStringList &arguments);
