// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "ctl/HostSession.h"

#include <QList>
#include <QString>
#include <QStringList>

/// A loaded service and where its screens are, as its row in the list of services has it: without
/// what the service itself would have to be asked for. A value; what the service does not have is
/// empty.
struct Service {
    QString id;
    CMPath root;
    /// The screen with its searches.
    CMPath searches;
    CMPath favorites;
    /// The menu entries that add an item to the favorites or remove it, without parameters.
    QList<CMPath> favoriteEntries;
    /// The parameters of a menu's path that identify the menu's item.
    QStringList favoriteIds;
    /// The value with its account, and that value's type code and key.
    CMPath account;
    int accountType = 0;
    QString accountKey;
    /// The values that take and return files.
    CMPath imports;
    CMPath exports;

    /// Whether \a entry of a menu is one of favoriteEntries, with any parameters.
    bool changesFavorites(const CMPath &entry) const;
    /// The item that \a menu belongs to, as its identifying parameters have it.
    QStringList idsOf(const CMPath &menu) const;
};

/// The services of a host. One thread; the session must outlive it.
class Services {
public:
    explicit Services(HostSession &session)
        : m_session(session)
    {
    }

    /// The loaded ones, or the one that --in names.
    CtlResult<QList<Service>> chosen();
    /// Those of them that have \a screen; a failure with the reason \a none when there is none.
    CtlResult<QList<Service>> with(CMPath Service::*screen, const QString &none);
    /// The only one of them; a failure also when there are several.
    CtlResult<Service> only(CMPath Service::*screen, const QString &none);
    /// The chosen service to which \a path belongs.
    CtlResult<Service> of(const CMPath &path, CMPath Service::*screen, const QString &none);
    /// The path from which places count: that of the only service, or of the list of services.
    CtlResult<CMPath> root();
    /// Fails when there is no service with the id \a id.
    CtlResult<> check(const QString &id, const QString &complaint);

private:
    CtlResult<QList<Service>> loaded();

    HostSession &m_session;
};
