// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

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

/// What the local directory needs to be reached over TLS as well.
struct DirectoryTls {
    QByteArray certificateFile;
    QByteArray keyFile;
    QString authorityFile; ///< the authority that the host trusts
};

/// The local directory and a host that is connected to it, each a process of its own on a free
/// port. With VESK_TEST_IN_PROCESS in the environment the host's plug-ins run in its process.
class Product {
public:
    /// \a hostArguments are added to the host's; "%directory" in them is the directory's address.
    /// With \a tls the host reaches the directory over TLS too.
    explicit Product(const QStringList &hostArguments = {}, const DirectoryTls &tls = {});
    ~Product();

    bool isUp() const { return !m_hostUrl.isEmpty(); }
    QString hostUrl() const { return m_hostUrl; }
    quint16 hostPort() const;
    /// The device's member id, by which the directory knows it.
    QString serial() const;
    QString directoryAddress() const { return m_directoryAddress; }
    QString stateDir() const;
    const QProcess &host() const { return m_host; }

    /// Runs veskctl against the host with \a input on its standard input.
    Outcome ctl(const QStringList &arguments, const QByteArray &input = {}) const;
    /// One JSON-RPC call; the whole response.
    QVariantHash rpc(const QString &method, const QVariantHash &params) const;
    /// Posts \a body to the host's JSON-RPC unchanged; the body of the response.
    QByteArray post(const QByteArray &body) const;
    /// Rows of a screen with the given roles, or with all.
    QVariantList rows(const QString &path, const QStringList &roles, int last = 99) const;

    /// Sets a fault of the directory, or clears all.
    void setFault(const QByteArray &fault) const;
    void clearFaults() const;
    /// The directory's response at \a target, parsed as JSON.
    QVariantHash directory(const QString &target) const;
    /// Submits a form to the directory, as a browser does; the page in the response.
    QByteArray submitToDirectory(const QString &target, const QByteArray &form) const;
    /// "METHOD TARGET" of each request that the directory received.
    QStringList requestLog() const;
    /// Those since the last call.
    QStringList newRequests();
    /// Waits until \a count of them contain \a text; false after \a milliseconds.
    bool waitForRequests(const QString &text, int count, int milliseconds = 20000) const;

    /// Terminates the host, as a service manager does; its exit code.
    int stopHost();
    /// Kills the host, as a power failure would. Any thread.
    void killHost() const;
    /// Waits until a killed host has ended.
    void waitForHostsEnd();
    /// Starts the host again with the same state. Returns whether it is up.
    bool startHost();

private:
    QTemporaryDir m_folder;
    QStringList m_hostArguments;
    QProcess m_directory;
    QProcess m_host;
    QString m_directoryAddress;
    QString m_hostUrl;
    int m_requestsSeen = 0;
};

/// The contents of a file; empty if it cannot be read.
QByteArray contents(const QString &name);

/// Runs a program of the build to its end.
Outcome runProgram(const QString &name, const QStringList &arguments, const QByteArray &input = {});
