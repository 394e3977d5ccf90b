// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QVector>

#include <array>
#include <gio/gio.h>

/// As much of the Avahi daemon as announcing a service needs, on the process's system bus, in the
/// main loop of the test. Destroying it is the daemon's end. It knows one client, and one group.
class FakeAvahi {
public:
    /// The daemon's own numbers.
    enum ServerState { Registering = 1, Running = 2, Collision = 3 };
    enum GroupState { Uncommitted = 0, Established = 2, GroupCollision = 3, GroupFailure = 4 };

    struct Service {
        QByteArray name;
        QByteArray type;
        int port = 0;
        QByteArrayList txt;
    };

    explicit FakeAvahi(int serverState = Running);
    ~FakeAvahi();
    FakeAvahi(const FakeAvahi &) = delete;
    FakeAvahi &operator=(const FakeAvahi &) = delete;

    /// Names that another program of this machine has.
    QByteArrayList takenHere;
    /// Names that another device of the network has.
    QByteArrayList takenElsewhere;
    /// Takes every name.
    bool isTakingAll = false;
    /// The error that AddService fails with.
    QByteArray refusal;
    /// GetState answers with this instead.
    GVariant *oddState = nullptr;

    /// Keeps all calls unanswered until it is let go.
    void hang() { m_isHanging = true; }
    void goOn();
    bool isCalled() const { return !m_calls.isEmpty(); }

    void setServerState(int state);
    void sendGroupState(int state);
    /// To the present client, on the server's object.
    void sendStateChanged(GVariant *arguments);

    QByteArrayList calls() const { return m_calls; }
    /// What is announced in the network.
    QVector<Service> published() const { return m_published; }
    QByteArrayList publishedNames() const;

private:
    struct Call {
        QByteArray method;
        GVariant *arguments;
        GDBusMethodInvocation *invocation;
    };

    guint registerObject(const char *path, const char *interface);
    void answer(const Call &call);
    void addService(const Call &call);
    void commit();
    void forgetClient();
    void clientLeft();

    GDBusConnection *m_bus = nullptr;
    GDBusNodeInfo *m_info = nullptr;
    std::array<guint, 2> m_objects {};
    guint m_clientWatch = 0;
    int m_serverState;
    bool m_isHanging = false;
    QByteArray m_client;
    QVector<Call> m_waiting;
    QByteArrayList m_calls;
    QVector<Service> m_added;
    QVector<Service> m_published;
};
