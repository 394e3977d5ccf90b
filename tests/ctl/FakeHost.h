#pragma once

#include "api/values/VeskRoles.h"
#include "tests/support/ScriptedServer.h"

#include <QHash>
#include <QStringList>

#include <mutex>
#include <string>

/// A host of which only the answers are there: what a call is answered with is a result (or error)
/// in JSON, by "method path" and, for rows, "first"; or a screen of rows, by its path. All other
/// calls fail.
class FakeHost {
public:
    using Results = QHash<QString, QByteArray>;

    explicit FakeHost(const Results &results = {});
    virtual ~FakeHost() = default;

    QString url() const;
    void setResult(const QString &call, const QByteArray &result);
    /// Rows of which each request gets the roles that it asks for.
    void setScreen(const QString &path, const QList<VeskRoles> &rows);

    /// What was asked, in the form of the results' names.
    QStringList asked() const;
    int timesAsked(const QString &call) const { return asked().count(call); }
    QVariantHash lastParams() const;
    QVariantHash paramsOf(const QString &method) const;

protected:
    /// Called for each call before it is answered, one at a time.
    virtual void prepare(const QString &method, const QVariantHash &params);
    /// For prepare().
    QHash<QString, QList<VeskRoles>> m_screens;
    Results m_results;

private:
    ScriptedServer::Response answer(const ScriptedServer::Request &request);
    QByteArray resultFor(const QString &call, const QString &method, const QVariantHash &params);

    mutable std::mutex m_mutex;
    /// Guarded by m_mutex, as are the answers.
    QStringList m_asked;
    QVariantHash m_lastParams;
    QHash<QString, QVariantHash> m_paramsOf;
    ScriptedServer m_server;
};

/// How one run of veskctl ended.
struct Outcome {
    int status;
    std::string out;
    std::string errors;
};

/// Runs the commands in this process; \a input is what a password prompt reads.
Outcome run(const QString &url, const QStringList &arguments, const QByteArray &input = {});
QStringList words(const char *text);

/// A row of that type.
VeskRoles row(int type, const char *title, const char *path);
