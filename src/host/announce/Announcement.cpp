// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/announce/Announcement.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"

#include <QVector>

#include <functional>
#include <gio/gio.h>
#include <utility>

VESK_LOGGER("Announcement")

namespace {

constexpr char Daemon[] = "org.freedesktop.Avahi";
constexpr char ServerPath[] = "/";
constexpr char ServerInterface[] = "org.freedesktop.Avahi.Server";
constexpr char GroupInterface[] = "org.freedesktop.Avahi.EntryGroup";
constexpr char CollisionError[] = "org.freedesktop.Avahi.CollisionError";
constexpr char StateChanged[] = "StateChanged";

/// A daemon that hangs answers when it goes on, and the bus says so when it is gone; a timer in
/// between would tell nothing.
constexpr int NoTimeout = G_MAXINT;

/// RFC 6763, section 4.1.1.
constexpr int MaxNameSize = 63;
/// Of what the daemon says is wrong.
constexpr int MaxReason = 200;

/// The daemon's numbers, of its own state and of an entry group's.
enum ServerState { ServerRunning = 2 };
enum GroupState { GroupEstablished = 2, GroupCollision = 3, GroupFailure = 4 };

/// No interface and no protocol in particular.
constexpr gint32 Unspecified = -1;

QByteArray cutName(const QString &name)
{
    QByteArray utf8 = name.toUtf8();
    if (utf8.size() <= MaxNameSize)
        return utf8;
    int size = MaxNameSize;
    while (size > 0 && (utf8.at(size) & 0xc0) == 0x80)
        --size;
    return utf8.left(size);
}

QString reasonOf(const GError *error)
{
    g_autoptr(GError) copy = g_error_copy(error);
    g_dbus_error_strip_remote_error(copy);
    return QString::fromUtf8(copy->message).simplified().left(MaxReason);
}

bool isRemote(const GError *error, const char *name)
{
    const std::unique_ptr<char, decltype(&g_free)> remote(
        g_dbus_error_get_remote_error(error), &g_free);
    return remote && qstrcmp(remote.get(), name) == 0;
}

/// Whether nobody is there to answer, which the watch of the daemon's name says as well.
bool isGone(const GError *error)
{
    return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CLOSED)
        || g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY)
        || g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)
        || g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER);
}

/// The first argument of a signal, which is (is) for all that the daemon sends.
int stateOf(GVariant *arguments)
{
    if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(is)")))
        return Unspecified;
    gint32 state = 0;
    g_variant_get(arguments, "(i&s)", &state, nullptr);
    return state;
}

struct ServiceEntry {
    const char *type;
    QVector<QByteArray> txt;
};

QVector<ServiceEntry> entriesOf(const AnnouncedHost &host)
{
    const QByteArray path = "path=" + host.path.toUtf8();
    QVector<QByteArray> own {path, "version=" VESK_VERSION};
    if (host.isTls)
        own.append("tls=1");
    return {{"_vesk._tcp", own}, {"_http._tcp", {path}}};
}

} // namespace

/// One after another: connects to the bus; follows who is the daemon there, and the daemon's state;
/// when it runs, has it make a group of entries, fills that and commits it. What belongs to a
/// daemon that is gone is cancelled, and a callback of what is cancelled touches nothing.
class AnnouncementPrivate {
public:
    AnnouncementPrivate(Announcement *announcement, const AnnouncedHost &host)
        : m_announcement(announcement)
        , m_host(host)
        , m_entries(entriesOf(host))
    {
    }
    ~AnnouncementPrivate();
    AnnouncementPrivate(const AnnouncementPrivate &) = delete;
    AnnouncementPrivate &operator=(const AnnouncementPrivate &) = delete;

    void connectToBus();
    const QString &name() const { return m_name; }

private:
    using Then = std::function<void(GVariant *reply, const GError *error)>;

    void connected(GDBusConnection *bus);
    void daemonAppeared(const char *owner);
    void daemonVanished();
    void followServer(int state);
    void makeGroup();
    void followGroup(int state);
    void announce();
    void takeStep(int round, int step);
    void rename();
    void giveUp(const QString &reason);
    void setName(const QString &name);

    void call(const char *path, const char *interface, const char *method, GVariant *parameters,
        const char *replyType, Then then);
    void callGroup(const char *method, GVariant *parameters, Then then)
    {
        call(m_group.constData(), GroupInterface, method, parameters, "()", std::move(then));
    }
    guint subscribe(const char *path, const char *interface, GDBusSignalCallback callback);
    void unsubscribe(guint &subscription);
    GVariant *serviceArguments(const ServiceEntry &entry) const;

    Announcement *const m_announcement;
    const AnnouncedHost m_host;
    const QVector<ServiceEntry> m_entries;

    GDBusConnection *m_bus = nullptr;
    guint m_watch = 0;
    /// Of all calls to the present daemon, or of the connection to the bus before that.
    GCancellable *m_cancellable = g_cancellable_new();

    // Of the present daemon:
    QByteArray m_owner;
    guint m_serverSignals = 0;
    guint m_groupSignals = 0;
    bool m_isRunning = false;
    bool m_isGroupComing = false;
    bool m_hasGivenUp = false;
    QByteArray m_group;
    QByteArray m_triedName;
    int m_renames = 0;
    /// Counts beginnings of announce(); what belongs to an earlier one is not gone on with.
    int m_round = 0;

    QString m_name;
};

AnnouncementPrivate::~AnnouncementPrivate()
{
    g_cancellable_cancel(m_cancellable);
    g_object_unref(m_cancellable);
    if (!m_bus)
        return;
    unsubscribe(m_serverSignals);
    unsubscribe(m_groupSignals);
    g_bus_unwatch_name(m_watch);
    g_signal_handlers_disconnect_by_data(m_bus, this);
    // The daemon withdraws the entries of a client that leaves the bus.
    g_dbus_connection_close(m_bus, nullptr, nullptr, nullptr);
    g_object_unref(m_bus);
}

void AnnouncementPrivate::connectToBus()
{
    // Of an own connection, unlike of the shared one, nobody has the process end with the bus.
    const std::unique_ptr<char, decltype(&g_free)> address(
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr), &g_free);
    if (!address) {
        VESK_DEBUG("not announced: there is no system bus");
        return;
    }
    const auto done = [](GObject *, GAsyncResult *result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        GDBusConnection *const bus = g_dbus_connection_new_for_address_finish(result, &error);
        if (bus)
            static_cast<AnnouncementPrivate *>(self)->connected(bus);
        else if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
            VESK_DEBUG("not announced: there is no system bus: " << reasonOf(error));
    };
    g_dbus_connection_new_for_address(address.get(),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
            | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, m_cancellable, done, this);
}

void AnnouncementPrivate::connected(GDBusConnection *bus)
{
    m_bus = bus;
    // A bus that ends may report the end of the daemon before, or that of the connection only.
    const auto closed = +[](GDBusConnection *, gboolean, GError *, gpointer) {
        VESK_DEBUG("not announced: the system bus has ended");
    };
    g_signal_connect(m_bus, "closed", G_CALLBACK(closed), this);
    m_watch = g_bus_watch_name_on_connection(
        m_bus, Daemon, G_BUS_NAME_WATCHER_FLAGS_NONE,
        [](GDBusConnection *, const char *, const char *owner, gpointer self) {
            static_cast<AnnouncementPrivate *>(self)->daemonAppeared(owner);
        },
        [](GDBusConnection *, const char *, gpointer self) {
            static_cast<AnnouncementPrivate *>(self)->daemonVanished();
        },
        this, nullptr);
}

void AnnouncementPrivate::daemonAppeared(const char *owner)
{
    m_owner = owner;
    m_triedName = cutName(m_host.name);
    m_serverSignals = subscribe(ServerPath, ServerInterface,
        [](GDBusConnection *, const char *, const char *, const char *, const char *,
            GVariant *arguments, gpointer self) {
            static_cast<AnnouncementPrivate *>(self)->followServer(stateOf(arguments));
        });
    call(ServerPath, ServerInterface, "GetState", nullptr, "(i)",
        [this](GVariant *reply, const GError *error) {
            if (error)
                return giveUp(reasonOf(error));
            gint32 state = 0;
            g_variant_get(reply, "(i)", &state);
            followServer(state);
        });
}

void AnnouncementPrivate::daemonVanished()
{
    if (!g_dbus_connection_is_closed(m_bus))
        VESK_DEBUG("not announced: the Avahi daemon is not running");
    g_cancellable_cancel(m_cancellable);
    g_object_unref(m_cancellable);
    m_cancellable = g_cancellable_new();
    unsubscribe(m_serverSignals);
    unsubscribe(m_groupSignals);
    m_owner.clear();
    m_group.clear();
    m_isRunning = false;
    m_isGroupComing = false;
    m_hasGivenUp = false;
    m_renames = 0;
    ++m_round;
    setName({});
}

/// While the daemon looks for another name of the machine, entries that lead to the former one are
/// not to be there.
void AnnouncementPrivate::followServer(int state)
{
    if (m_hasGivenUp || m_isRunning == (state == ServerRunning))
        return;
    m_isRunning = state == ServerRunning;
    if (m_isRunning) {
        announce();
        return;
    }
    ++m_round;
    setName({});
    if (!m_group.isEmpty())
        callGroup("Reset", nullptr, [](GVariant *, const GError *) {});
}

void AnnouncementPrivate::makeGroup()
{
    if (std::exchange(m_isGroupComing, true))
        return;
    call(ServerPath, ServerInterface, "EntryGroupNew", nullptr, "(o)",
        [this](GVariant *reply, const GError *error) {
            m_isGroupComing = false;
            if (error)
                return giveUp(reasonOf(error));
            const char *path = nullptr;
            g_variant_get(reply, "(&o)", &path);
            m_group = path;
            m_groupSignals = subscribe(path, GroupInterface,
                [](GDBusConnection *, const char *, const char *, const char *, const char *,
                    GVariant *arguments, gpointer self) {
                    static_cast<AnnouncementPrivate *>(self)->followGroup(stateOf(arguments));
                });
            if (m_isRunning)
                announce();
        });
}

void AnnouncementPrivate::followGroup(int state)
{
    if (m_hasGivenUp || !m_isRunning)
        return;
    if (state == GroupEstablished)
        setName(QString::fromUtf8(m_triedName));
    else if (state == GroupCollision)
        rename();
    else if (state == GroupFailure)
        giveUp(QStringLiteral("its entries failed"));
}

void AnnouncementPrivate::announce()
{
    ++m_round;
    setName({});
    if (m_group.isEmpty())
        makeGroup();
    else
        takeStep(m_round, 0);
}

/// Empties the group, adds each of the entries, commits.
void AnnouncementPrivate::takeStep(int round, int step)
{
    const auto then = [this, round, step](GVariant *, const GError *error) {
        if (round != m_round)
            return;
        if (!error)
            takeStep(round, step + 1);
        else if (isRemote(error, CollisionError))
            rename();
        else
            giveUp(reasonOf(error));
    };
    const int entry = step - 1;
    if (entry < 0)
        callGroup("Reset", nullptr, then);
    else if (entry < m_entries.size())
        callGroup("AddService", serviceArguments(m_entries.at(entry)), then);
    else if (entry == m_entries.size())
        callGroup("Commit", nullptr, then);
}

GVariant *AnnouncementPrivate::serviceArguments(const ServiceEntry &entry) const
{
    GVariantBuilder txt;
    g_variant_builder_init(&txt, G_VARIANT_TYPE("aay"));
    for (const QByteArray &text : entry.txt) {
        g_variant_builder_add_value(&txt,
            g_variant_new_fixed_array(
                G_VARIANT_TYPE_BYTE, text.constData(), static_cast<gsize>(text.size()), 1));
    }
    // The machine's own domain and host name.
    return g_variant_new("(iiussssqaay)", Unspecified, Unspecified, 0U, m_triedName.constData(),
        entry.type, "", "", static_cast<guint16>(m_host.port), &txt);
}

void AnnouncementPrivate::rename()
{
    const int round = ++m_round;
    setName({});
    if (++m_renames > Announcement::MaxRenames)
        return giveUp(QStringLiteral("every name is taken"));
    call(ServerPath, ServerInterface, "GetAlternativeServiceName",
        g_variant_new("(s)", m_triedName.constData()), "(s)",
        [this, round](GVariant *reply, const GError *error) {
            if (round != m_round)
                return;
            if (error)
                return giveUp(reasonOf(error));
            const char *name = nullptr;
            g_variant_get(reply, "(&s)", &name);
            m_triedName = name;
            announce();
        });
}

/// Until the daemon is started again.
void AnnouncementPrivate::giveUp(const QString &reason)
{
    VESK_WARN("The Avahi daemon does not announce this host: " << reason);
    m_hasGivenUp = true;
    ++m_round;
    setName({});
    if (!m_group.isEmpty())
        callGroup("Reset", nullptr, [](GVariant *, const GError *) {});
}

void AnnouncementPrivate::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    if (!name.isEmpty())
        VESK_INFO("announced in the network as \"" << name << "\"");
    Q_EMIT m_announcement->nameChanged(name);
}

void AnnouncementPrivate::call(const char *path, const char *interface, const char *method,
    GVariant *parameters, const char *replyType, Then then)
{
    const auto done = [](GObject *bus, GAsyncResult *result, gpointer data) {
        const std::unique_ptr<Then> taken(static_cast<Then *>(data));
        g_autoptr(GError) error = nullptr;
        g_autoptr(GVariant) reply
            = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error);
        if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) && !isGone(error))
            (*taken)(reply, error);
    };
    g_dbus_connection_call(m_bus, m_owner.constData(), path, interface, method, parameters,
        G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NO_AUTO_START, NoTimeout, m_cancellable, done,
        new Then(std::move(then)));
}

guint AnnouncementPrivate::subscribe(
    const char *path, const char *interface, GDBusSignalCallback callback)
{
    return g_dbus_connection_signal_subscribe(m_bus, m_owner.constData(), interface, StateChanged,
        path, nullptr, G_DBUS_SIGNAL_FLAGS_NONE, callback, this, nullptr);
}

void AnnouncementPrivate::unsubscribe(guint &subscription)
{
    if (const guint id = std::exchange(subscription, 0U))
        g_dbus_connection_signal_unsubscribe(m_bus, id);
}

Announcement::Announcement(const AnnouncedHost &host, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<AnnouncementPrivate>(this, host))
{
    d->connectToBus();
}

Announcement::~Announcement()
{
    VESK_ASSERT_OWN_THREAD();
}

QString Announcement::name() const
{
    VESK_ASSERT_OWN_THREAD();
    return d->name();
}
