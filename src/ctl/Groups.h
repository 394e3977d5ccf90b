// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/Screens.h"
#include "ctl/Services.h"

#include <functional>
#include <optional>
#include <vector>

/// Called with a screen's path, or with why there is none.
using FoundScreen = std::function<void(const Result<CMPath, RpcAnswer> &screen)>;

/// Reads, without waiting, where \a service shows what it finds for \a text; \a found is called by
/// the client's waitForAnswers().
void findResults(
    HostSession &session, const Service &service, const QString &text, const FoundScreen &found);

/// Lists of several services, read at the same time. Each is printed as soon as it is there, with
/// the service's name; its rows are numbered on from those of the lists before it. One thread; the
/// session must outlive it.
class Groups {
public:
    /// Rows of each list on a terminal, unless the options say how many.
    static constexpr int DefaultRows = 10;

    Groups(HostSession &session, const ListForm &form)
        : m_session(session)
        , m_form(form)
    {
    }

    /// Prints what each of \a services finds for \a text.
    CtlResult<> search(const QList<Service> &services, const QString &text);
    /// Prints the favorites of \a services.
    CtlResult<> favorites(const QList<Service> &services);

private:
    struct Group {
        Service service;
        /// Its id until its title is there.
        QString title;
        CMPath screen;
        /// The screen's own roles, and its rows so far.
        VeskRoles roles;
        QVariantList rows;
        int rowsCount = 0;
        /// Why there are no rows.
        std::optional<RpcAnswer> error;
        /// Both of them, before it is printed: the list, and the title.
        bool isRead = false;
        bool isTitled = false;

        bool isDone() const { return isRead && isTitled; }
    };

    void readTitle(Group &group);
    /// Prints the group when it is done.
    void finish(Group &group);
    void begin(const QList<Service> &services);
    CtlResult<> wait();
    void read(Group &group);
    void take(Group &group, const RpcAnswer &answer);
    void fail(Group &group, const RpcAnswer &answer);
    void printError(const Group &group);
    void print(const Group &group);
    void printJson(const Group &group);
    void remember(const Group &group);
    RowRange range() const;
    QStringList roles() const;
    QString waitingFor() const;

    HostSession &m_session;
    const ListForm m_form;
    /// Never resized while calls are under way, which refer to its elements.
    std::vector<Group> m_groups;
    QVariantHash m_player;
    QList<ShownPart> m_shown;
    int m_number = 0;
    bool m_someAnswered = false;
    bool m_hasHost = true;
};
