// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/announce/FakeAvahi.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

constexpr char Name[] = "org.freedesktop.Avahi";
constexpr char ServerInterface[] = "org.freedesktop.Avahi.Server";
constexpr char GroupInterface[] = "org.freedesktop.Avahi.EntryGroup";
constexpr char GroupPath[] = "/Client0/EntryGroup1";

/// The signatures are Avahi's. A reply of GetState may have any type, for a test.
constexpr char Interfaces[] = R"(<node>
<interface name="org.freedesktop.Avahi.Server">
  <method name="GetState"/>
  <method name="EntryGroupNew"><arg type="o" direction="out"/></method>
  <method name="GetAlternativeServiceName">
    <arg type="s" direction="in"/><arg type="s" direction="out"/>
  </method>
</interface>
<interface name="org.freedesktop.Avahi.EntryGroup">
  <method name="Reset"/>
  <method name="Commit"/>
  <method name="AddService">
    <arg type="i" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="q" direction="in"/><arg type="aay" direction="in"/>
  </method>
</interface>
</node>)";

QByteArrayList textsOf(GVariant *txt)
{
    QByteArrayList texts;
    GVariantIter entries;
    g_variant_iter_init(&entries, txt);
    while (GVariant *const entry = g_variant_iter_next_value(&entries)) {
        gsize size = 0;
        const void *const bytes = g_variant_get_fixed_array(entry, &size, 1);
        texts.append(QByteArray(static_cast<const char *>(bytes), static_cast<int>(size)));
        g_variant_unref(entry);
    }
    return texts;
}

} // namespace

FakeAvahi::FakeAvahi(int serverState)
    : m_info(g_dbus_node_info_new_for_xml(Interfaces, nullptr))
    , m_serverState(serverState)
{
    g_autofree char *address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    m_bus = g_dbus_connection_new_for_address_sync(address,
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
            | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    if (!m_bus)
        throw std::runtime_error("the test's bus cannot be reached");
    m_objects = {registerObject("/", ServerInterface), registerObject(GroupPath, GroupInterface)};
    g_autoptr(GVariant) owned
        = g_dbus_connection_call_sync(m_bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", Name, 0U),
            G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    guint32 result = 0;
    if (owned)
        g_variant_get(owned, "(u)", &result);
    if (result != 1)
        throw std::runtime_error("another daemon is on the test's bus");
}

FakeAvahi::~FakeAvahi()
{
    forgetClient();
    // A call that has arrived waits in the main loop, and closing does not take it out.
    for (const guint object : m_objects)
        g_dbus_connection_unregister_object(m_bus, object);
    for (const Call &call : std::as_const(m_waiting))
        g_object_unref(call.invocation);
    g_dbus_connection_close_sync(m_bus, nullptr, nullptr);
    g_object_unref(m_bus);
    g_dbus_node_info_unref(m_info);
}

guint FakeAvahi::registerObject(const char *path, const char *interface)
{
    static const GDBusInterfaceVTable table {
        [](GDBusConnection *, const char *, const char *, const char *, const char *method,
            GVariant *arguments, GDBusMethodInvocation *invocation, gpointer data) {
            auto *const self = static_cast<FakeAvahi *>(data);
            const Call call {method, arguments, invocation};
            self->m_calls.append(call.method);
            if (self->m_isHanging)
                self->m_waiting.append(call);
            else
                self->answer(call);
        },
        nullptr, nullptr, {}};
    return g_dbus_connection_register_object(m_bus, path,
        g_dbus_node_info_lookup_interface(m_info, interface), &table, this, nullptr, nullptr);
}

void FakeAvahi::goOn()
{
    m_isHanging = false;
    for (const Call &call : std::exchange(m_waiting, {}))
        answer(call);
}

void FakeAvahi::answer(const Call &call)
{
    GVariant *reply = nullptr;
    if (call.method == "GetState") {
        // A plain message: GDBus would check the type of a method's return value.
        GDBusMessage *const message = g_dbus_message_new_method_reply(
            g_dbus_method_invocation_get_message(call.invocation));
        g_dbus_message_set_body(message, oddState ? oddState : g_variant_new("(i)", m_serverState));
        g_dbus_connection_send_message(
            m_bus, message, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
        g_object_unref(message);
        g_object_unref(call.invocation);
        return;
    }
    if (call.method == "AddService")
        return addService(call);
    if (call.method == "EntryGroupNew") {
        forgetClient();
        m_client = g_dbus_method_invocation_get_sender(call.invocation);
        m_clientWatch = g_dbus_connection_signal_subscribe(
            m_bus, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
            "/org/freedesktop/DBus", m_client.constData(), G_DBUS_SIGNAL_FLAGS_NONE,
            [](GDBusConnection *, const char *, const char *, const char *, const char *,
                GVariant *, gpointer self) { static_cast<FakeAvahi *>(self)->clientLeft(); },
            this, nullptr);
        reply = g_variant_new("(o)", GroupPath);
    } else if (call.method == "GetAlternativeServiceName") {
        const char *name = nullptr;
        g_variant_get(call.arguments, "(&s)", &name);
        reply = g_variant_new("(s)", (QByteArray(name) + '+').constData());
    } else if (call.method == "Reset") {
        m_added.clear();
        m_published.clear();
        sendGroupState(Uncommitted);
    }
    g_dbus_method_invocation_return_value(call.invocation, reply);
    if (call.method == "Commit")
        commit();
}

void FakeAvahi::addService(const Call &call)
{
    gint32 interface = 0;
    gint32 protocol = 0;
    guint32 flags = 0;
    const char *name = nullptr;
    const char *type = nullptr;
    const char *domain = nullptr;
    const char *host = nullptr;
    guint16 port = 0;
    g_autoptr(GVariant) txt = nullptr;
    g_variant_get(call.arguments, "(iiu&s&s&s&sq@aay)", &interface, &protocol, &flags, &name, &type,
        &domain, &host, &port, &txt);
    if (!refusal.isEmpty()) {
        g_dbus_method_invocation_return_dbus_error(
            call.invocation, refusal.constData(), "Not wanted");
    } else if (isTakingAll || takenHere.contains(name)) {
        g_dbus_method_invocation_return_dbus_error(
            call.invocation, "org.freedesktop.Avahi.CollisionError", "Local name collision");
    } else if (interface != -1 || protocol != -1 || flags != 0 || *domain || *host) {
        g_dbus_method_invocation_return_dbus_error(
            call.invocation, "org.freedesktop.Avahi.InvalidArgumentError", "Not on every network");
    } else {
        m_added.append({name, type, port, textsOf(txt)});
        g_dbus_method_invocation_return_value(call.invocation, nullptr);
    }
}

void FakeAvahi::commit()
{
    const bool isTaken = std::any_of(m_added.cbegin(), m_added.cend(),
        [this](const Service &service) { return takenElsewhere.contains(service.name); });
    if (!isTaken)
        m_published = m_added;
    sendGroupState(isTaken ? GroupCollision : Established);
}

void FakeAvahi::forgetClient()
{
    if (const guint watch = std::exchange(m_clientWatch, 0U))
        g_dbus_connection_signal_unsubscribe(m_bus, watch);
}

void FakeAvahi::clientLeft()
{
    m_added.clear();
    m_published.clear();
}

void FakeAvahi::setServerState(int state)
{
    m_serverState = state;
    sendStateChanged(g_variant_new("(is)", state, ""));
}

void FakeAvahi::sendStateChanged(GVariant *arguments)
{
    g_dbus_connection_emit_signal(
        m_bus, nullptr, "/", ServerInterface, "StateChanged", arguments, nullptr);
}

void FakeAvahi::sendGroupState(int state)
{
    g_dbus_connection_emit_signal(m_bus, m_client.constData(), GroupPath, GroupInterface,
        "StateChanged", g_variant_new("(is)", state, ""), nullptr);
}

QByteArrayList FakeAvahi::publishedNames() const
{
    QByteArrayList names;
    for (const Service &service : m_published) {
        if (!names.contains(service.name))
            names.append(service.name);
    }
    return names;
}
