// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "tests/support/ScriptedServer.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <ostream>

inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

/// For GoogleTest, which would print them character by character.
void PrintTo(const QString &text, std::ostream *out);
void PrintTo(const QByteArray &bytes, std::ostream *out);
void PrintTo(const QVariant &value, std::ostream *out);
void PrintTo(const CMPath &path, std::ostream *out);
void PrintTo(const VeskHash &hash, std::ostream *out);

/// The reply to a request.
struct Answer {
    bool finished = false;
    CMError error;
    QVariant value;

    /// The error's message as the user reads it; empty when there is no error.
    QString errorText() const;
};

/// The reply to a request for rows.
struct RowsAnswer : Answer {
    int count = 0;
    QList<QVariantList> rows;
    VeskRoles roles;

    /// The values of one role, as text.
    QStringList texts(int column = 0) const;
};

/// The host's side of the plug-in, on the calling thread: a root, the values that the plug-in
/// reads, and a local server in place of the web API. Knows the plug-in only through requests.
class TuneInHost {
public:
    /// The values are served for \a prefixes; the rest of the tree is empty.
    explicit TuneInHost(const QStringList &prefixes = {"settings"_s, "system"_s, "network"_s});
    ~TuneInHost();

    void set(const CMPath &path, const QString &text);
    void set(const CMPath &path, bool on);

    ScriptedServer &server() { return *m_server; }
    /// Requests for \a path ("/Browse.ashx") are answered with \a body from now on.
    void answer(const QByteArray &path, const QByteArray &body);
    void answer(const QByteArray &path, const ScriptedServer::Response &response);
    /// The same for every path.
    void answerAll(const QByteArray &body);
    void answerAll(const ScriptedServer::Response &response);
    /// Closes the server, with all its threads and connections.
    void closeServer();
    void openServer();

    static RowsAnswer rows(
        const QString &path, const QStringList &roles = {"title"_s}, int first = 0, int last = 99);
    static Answer data(const QString &path, const QStringList &roles);
    /// The value of one role.
    static QVariant role(const QString &path, const QString &role);
    static Answer setData(const QString &path, const QString &role, const QVariant &value);

private:
    struct Script;

    CMRootWorker m_root;
    CMValuesWorker m_values;
    std::shared_ptr<Script> m_script;
    std::unique_ptr<ScriptedServer> m_server;
};

/// A whole answer of the web API around the text of its body's elements.
QByteArray screen(const QByteArray &elements);
/// A path from its text form, with parameters added.
CMPath path(const QString &text, const QMap<QString, QString> &params = {});
/// A value as it is printed into a log record.
template <class T>
QString printed(const T &value)
{
    std::ostringstream out;
    out << value;
    return QString::fromStdString(out.str());
}
