// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>

/// A host with scripted responses, on a WebSocket served by the main loop that veskctl runs while
/// it waits. A call is named "method path", or "method path first" when it requests rows after the
/// first one; the response is the JSON result (or error) set for that name, or a screen of rows by
/// its path. Other calls fail. Main thread.
class FakeHost {
public:
    using Results = QHash<QString, QByteArray>;

    explicit FakeHost(const Results &results = {});
    virtual ~FakeHost();

    FakeHost(const FakeHost &) = delete;
    FakeHost &operator=(const FakeHost &) = delete;

    QString url() const;
    void setResult(const QString &call, const QByteArray &result);
    /// Sets a screen's rows; a request gets the roles that it names.
    void setScreen(const QString &path, const QList<VeskRoles> &rows);
    /// Delays the response to \a call.
    void setDelay(const QString &call, unsigned milliseconds);
    /// Sends these notifications right after the response to \a call.
    void setNotifications(const QString &call, const QList<QByteArray> &messages);
    /// Closes the connection instead of responding, for the next \a times calls of that name.
    void setClosing(const QString &call, int times);

    /// The names of the calls so far, without those that read the language.
    QStringList asked() const { return m_asked; }
    int timesAsked(const QString &call) const { return m_asked.count(call); }
    QVariantHash lastParams() const { return m_lastParams; }
    QVariantHash paramsOf(const QString &method) const { return m_paramsOf.value(method); }
    int connections() const;

protected:
    /// Called before each response.
    virtual void prepare(const QString &method, const QVariantHash &params);

    QHash<QString, QList<VeskRoles>> m_screens;
    Results m_results;

private:
    struct Server;

    /// The response to one message; sets \a call to the call's name.
    QByteArray answer(const QByteArray &message, QString &call);
    QByteArray resultFor(const QString &call, const QString &method, const QVariantHash &params);

    QStringList m_asked;
    QVariantHash m_lastParams;
    QHash<QString, QVariantHash> m_paramsOf;
    QHash<QString, unsigned> m_delays;
    QHash<QString, QList<QByteArray>> m_notifications;
    QHash<QString, int> m_closing;
    const std::unique_ptr<Server> m_server;
};

/// The exit status and output of one run of veskctl.
struct Outcome {
    int status;
    std::string out;
    std::string errors;
};

/// The environment of a run.
struct Surroundings {
    /// Standard input.
    QByteArray input = {};
    /// The terminal's width in columns; 0 without a terminal.
    int width = 0;
    /// The folder in which shown lists are stored, and the terminal's name.
    QString memory = {};
    QString terminal = {};
    QStringList catalogues = {};
};

/// Runs veskctl's commands in this process.
Outcome run(const QString &url, const QStringList &arguments, const Surroundings &around = {});
QStringList words(const char *text);

/// A row of \a type.
VeskRoles row(int type, const char *title, const char *path);
/// The row of a service whose root is "TITLE:", without what it can do.
VeskRoles serviceRow(const char *id, const char *title);
/// Adds to \a service that what it does is at \a path.
VeskRoles withRole(VeskRoles service, const char *role, const char *path);
