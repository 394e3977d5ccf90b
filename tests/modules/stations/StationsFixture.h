// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMWorker.h"
#include "api/store/VeskStore.h"
#include "api/values/VeskRowsRoles.h"
#include "modules/stations/StationsWorker.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <mutex>

/// What came back for a request for rows.
struct StationsShown {
    QString error; ///< as the user reads it
    int count = 0;
    QList<VeskRoles> rows;
    VeskRoles screen;

    QStringList titles() const;
    /// The row with this title; empty when there is none.
    VeskRoles row(const char *title) const;
};

/// What the host keeps for the plug-in. Any thread.
class StationsStored {
public:
    /// Each write from now on is refused with \a error; with an empty one none.
    void refuse(const QString &error);
    QVariantHash config() const;
    /// Keys with values of each write that was not refused.
    QList<QVariantHash> writes() const;
    void set(const QString &key, const QByteArray &value);
    QHash<QString, QByteArray> values() const;

private:
    friend class StationsFakeStore;
    mutable std::mutex m_mutex;
    QString m_refusal;
    QHash<QString, QByteArray> m_values;
    QList<QVariantHash> m_writes;
};

/// The plug-in's worker on a thread of its own, its store on another, and the host's side of both
/// on the test's.
class StationsFixture : public testing::Test {
protected:
    StationsFixture();
    ~StationsFixture() override;

    /// As a host does; again: with what was kept. \a folder is that of the listener's files.
    void start(const QString &folder = {});
    StationsStored &stored() { return *m_stored; }
    StationsWorker *worker() const { return static_cast<StationsWorker *>(m_thread->object()); }
    void callWorker(const std::function<void()> &function) { m_thread->call(function); }

    static StationsShown rows(const CMPath &path, int first = 0, int last = 9999);
    static StationsShown rows(const QString &path) { return rows(CMPath::fromEncoded(path)); }
    static VeskRoles data(const CMPath &path);
    /// What a row of type "activate" is for; the error's text, empty for none.
    static QString activate(const VeskRoles &row);
    static QString activate(const QString &path);
    static std::shared_ptr<CMReplyData<QVariant>> set(
        const CMPath &path, const QString &role, const QVariant &value);
    /// The screen that a query row leads to for a text.
    static CMPath asked(const VeskRoles &query, const QString &text);

    /// Adds a station and returns its row.
    static VeskRoles add(const char *title, const char *address, const QString &folder = {});
    /// Adds a folder and returns its id.
    static QString addFolder(const char *title, const QString &folder = {});
    /// The titles of the list or of one of its folders, without the rows that are always there.
    static QStringList list(const QString &folder = {});
    static VeskRoles itemCalled(const char *title, const QString &folder = {});
    /// The menu of a row.
    static StationsShown menu(const VeskRoles &row) { return rows(row.context().path()); }

private:
    CMRootWorker m_root;
    const std::shared_ptr<StationsStored> m_stored = std::make_shared<StationsStored>();
    std::unique_ptr<WorkerThread> m_store;
    std::unique_ptr<WorkerThread> m_thread;
};
