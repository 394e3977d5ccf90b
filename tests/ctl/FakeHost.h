// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>

/// A host with scripted responses, on a WebSocket in the main loop that veskctl runs while it
/// waits. Calls are named "method path", for rows behind the first with "first" after it; the
/// response is a result (or error) in JSON by that name, or a screen of rows by its path. Other
/// calls fail. Main thread.
class FakeHost {
public:
    using Results = QHash<QString, QByteArray>;

    explicit FakeHost(const Results &results = {});
    virtual ~FakeHost();

    FakeHost(const FakeHost &) = delete;
    FakeHost &operator=(const FakeHost &) = delete;

    QString url() const;
    void setResult(const QString &call, const QByteArray &result);
    /// Rows, of which each request gets the roles that it names.
    void setScreen(const QString &path, const QList<VeskRoles> &rows);
    /// The response is sent later.
    void setDelay(const QString &call, unsigned milliseconds);
    /// Notifications that the host sends right after its response to the call.
    void setNotifications(const QString &call, const QList<QByteArray> &messages);
    /// The connection is closed in place of a response, \a times times.
    void setClosing(const QString &call, int times);

    /// The names of the calls so far, without the one for the language.
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

    /// One message's answer; \a call is its name.
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

/// How one run of veskctl ended.
struct Outcome {
    int status;
    std::string out;
    std::string errors;
};

/// The environment of a run.
struct Surroundings {
    /// Standard input.
    QByteArray input = {};
    /// The terminal's width; 0 for none.
    int width = 0;
    /// The folder that remembers shown lists, and the terminal's name.
    QString memory = {};
    QString terminal = {};
    QStringList catalogues = {};
};

/// Runs the commands in this process.
Outcome run(const QString &url, const QStringList &arguments, const Surroundings &around = {});
QStringList words(const char *text);

/// A row of that type.
VeskRoles row(int type, const char *title, const char *path);
