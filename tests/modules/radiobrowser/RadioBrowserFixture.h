// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "modules/radiobrowser/RadioBrowserWorker.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>

/// What came back for a request for rows.
struct RadioBrowserRows {
    QString error; ///< as the user reads it
    CMError fullError;
    int count = 0;
    QList<VeskRoles> rows;
    VeskRoles screen;

    QStringList titles() const;
};

/// A clock that stands still until a test moves it.
class RadioBrowserClock {
public:
    RadioBrowserServers::Clock::time_point now() const
    {
        return RadioBrowserServers::Clock::time_point(std::chrono::seconds(m_seconds));
    }
    void advance(std::chrono::seconds by) { m_seconds += by.count(); }

private:
    std::atomic<qint64> m_seconds {1000};
};

/// The plug-in's worker on a thread of its own, and the host's side of it on the test's thread.
class RadioBrowserFixture : public testing::Test {
protected:
    RadioBrowserFixture();
    ~RadioBrowserFixture() override;

    /// With \a server (an address) as the only one.
    void start(const QString &server);
    /// With what a look-up of the servers brings.
    void startWithServers(const QStringList &servers);
    /// As a host does, with its configuration.
    void startWithConfig(const QVariantHash &config, RadioBrowserServers::LookUp lookUp);
    void stop() { m_thread.reset(); }

    void define(const CMPath &path, const QString &text);
    RadioBrowserClock &clock() { return *m_clock; }

    static QString addressOf(const ScriptedServer &server);
    static RadioBrowserRows rows(const QString &path, int first = 0, int last = 99);
    /// The value of one role.
    static QVariant role(const QString &path, const QString &role);
    static CMError setData(const CMPath &path, const QString &role, const QVariant &value);

private:
    CMRootWorker m_root;
    CMValuesWorker m_values;
    const std::shared_ptr<RadioBrowserClock> m_clock = std::make_shared<RadioBrowserClock>();
    std::unique_ptr<WorkerThread> m_thread;
};

/// A station as the directory lists it, with \a fields in place of the usual ones.
QVariantHash radioBrowserStation(int number, const QVariantHash &fields = {});
/// Answers everything with the list \a entries.
ScriptedServer::Handler radioBrowserAnswer(const QVariantList &entries);
/// The same with \a code and nothing else.
ScriptedServer::Handler radioBrowserCode(int code);
/// The items of a request's query, as "key=value".
QStringList queryOf(const ScriptedServer::Request &request);
