// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/mpris/Mpris.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "host/mpris/MprisPlayer.h"
#include "host/mpris/MprisProperties.h"
#include "host/mpris/SessionBus.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

VESK_LOGGER("Mpris")

namespace {

using Microseconds = std::chrono::microseconds;

constexpr char ObjectPath[] = "/org/mpris/MediaPlayer2";
constexpr char RootInterface[] = "org.mpris.MediaPlayer2";
constexpr char PlayerInterface[] = "org.mpris.MediaPlayer2.Player";

/// Of what the bus says is wrong.
constexpr int MaxReason = 200;

constexpr int FirstWait = 1000;

/// Of the standard's RequestName.
constexpr guint32 DoNotQueue = 4;
constexpr guint32 NameIsOurs = 1;

/// A bus that hangs answers when it goes on, and the connection says when it is gone.
constexpr int NoTimeout = G_MAXINT;

/// Longer than anything that plays, and far from what overflows.
constexpr Microseconds FarthestSeek = std::chrono::hours(24 * 365);

/// Left out are what is optional and this player does not have: Fullscreen, DesktopEntry,
/// LoopStatus, Shuffle, and the lists of tracks and playlists.
constexpr char Introspection[] = R"(<node>
 <interface name="org.mpris.MediaPlayer2">
  <method name="Raise"/>
  <method name="Quit"/>
  <property name="CanQuit" type="b" access="read"/>
  <property name="CanRaise" type="b" access="read"/>
  <property name="HasTrackList" type="b" access="read"/>
  <property name="Identity" type="s" access="read"/>
  <property name="SupportedUriSchemes" type="as" access="read"/>
  <property name="SupportedMimeTypes" type="as" access="read"/>
 </interface>
 <interface name="org.mpris.MediaPlayer2.Player">
  <method name="Next"/>
  <method name="Previous"/>
  <method name="Pause"/>
  <method name="PlayPause"/>
  <method name="Stop"/>
  <method name="Play"/>
  <method name="Seek"><arg name="Offset" type="x" direction="in"/></method>
  <method name="SetPosition">
   <arg name="TrackId" type="o" direction="in"/>
   <arg name="Position" type="x" direction="in"/>
  </method>
  <method name="OpenUri"><arg name="Uri" type="s" direction="in"/></method>
  <signal name="Seeked"><arg name="Position" type="x"/></signal>
  <property name="PlaybackStatus" type="s" access="read"/>
  <property name="Rate" type="d" access="readwrite"/>
  <property name="Metadata" type="a{sv}" access="read"/>
  <property name="Volume" type="d" access="readwrite"/>
  <property name="Position" type="x" access="read">
   <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
  </property>
  <property name="MinimumRate" type="d" access="read"/>
  <property name="MaximumRate" type="d" access="read"/>
  <property name="CanGoNext" type="b" access="read"/>
  <property name="CanGoPrevious" type="b" access="read"/>
  <property name="CanPlay" type="b" access="read"/>
  <property name="CanPause" type="b" access="read"/>
  <property name="CanSeek" type="b" access="read"/>
  <property name="CanControl" type="b" access="read">
   <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
  </property>
 </interface>
</node>)";

QString reasonOf(const GError *error)
{
    g_autoptr(GError) copy = g_error_copy(error);
    g_dbus_error_strip_remote_error(copy);
    return QString::fromUtf8(copy->message).simplified().left(MaxReason);
}

GVariant *rootProperty(const QByteArray &name)
{
    if (name == "Identity")
        return g_variant_new_string("Vesk");
    if (name.startsWith("Supported"))
        return g_variant_new_strv(nullptr, 0);
    return g_variant_new_boolean(FALSE);
}

} // namespace

/// Connects to the bus, puts the object there, takes a name; begins again when the bus has ended.
class MprisPrivate {
public:
    MprisPrivate(Mpris *mpris, MprisPlayer *player);
    ~MprisPrivate();
    MprisPrivate(const MprisPrivate &) = delete;
    MprisPrivate &operator=(const MprisPrivate &) = delete;

    void connectToBus();
    const QString &name() const { return m_name; }

private:
    using Call = void (MprisPrivate::*)(GVariant *arguments);
    static Call callOf(const QByteArray &method);

    void connected(GDBusConnection *bus);
    void disconnect();
    void onClosed();
    void waitForBus(const QString &why);
    void tryAgain();
    void registerObject();
    void takeName(const QByteArray &name);
    void onNameRefused();
    void setName(const QString &name);

    void announce();
    void publish();
    void awaitSending();
    void emitSignal(const char *interface, const char *signal, GVariant *arguments);

    GVariant *playerProperty(const QByteArray &name) const;
    bool setPlayerProperty(const QByteArray &name, GVariant *value);
    bool isPlaying() const { return m_player->state().status == MprisState::Playing; }

    void next(GVariant *) { m_player->goNext(); }
    void previous(GVariant *) { m_player->goPrevious(); }
    void pause(GVariant *) { m_player->pause(); }
    void play(GVariant *) { m_player->play(); }
    void playPause(GVariant *);
    void stop(GVariant *) { m_player->stop(); }
    void seek(GVariant *arguments);
    void setPosition(GVariant *arguments);

    static void onCall(GDBusConnection *, const char *, const char *, const char *interface,
        const char *method, GVariant *arguments, GDBusMethodInvocation *invocation, gpointer self);
    static GVariant *onGet(GDBusConnection *, const char *, const char *, const char *interface,
        const char *property, GError **, gpointer self);
    static gboolean onSet(GDBusConnection *, const char *, const char *, const char *,
        const char *property, GVariant *value, GError **error, gpointer self);

    Mpris *const m_mpris;
    MprisPlayer *const m_player;
    GDBusNodeInfo *const m_node = g_dbus_node_info_new_for_xml(Introspection, nullptr);
    /// While there is no bus.
    QFileSystemWatcher m_folder;
    QTimer m_again;
    int m_tries = 0;

    GDBusConnection *m_bus = nullptr;
    GCancellable *m_connecting = nullptr; ///< null: it is not being connected to
    std::vector<guint> m_objects;
    GCancellable *m_calls = nullptr; ///< of all calls to the present bus
    QByteArray m_wantedName;
    QString m_name;
    /// What those on the bus know.
    MprisProperties m_sent;
    bool m_announced = false;
    bool m_isSending = false; ///< the bus has not taken all yet
    bool m_changedSince = false;
};

MprisPrivate::MprisPrivate(Mpris *mpris, MprisPlayer *player)
    : m_mpris(mpris)
    , m_player(player)
{
    m_again.setSingleShot(true);
    QObject::connect(&m_again, &QTimer::timeout, mpris, [this] { connectToBus(); });
    QObject::connect(&m_folder, &QFileSystemWatcher::directoryChanged, mpris, [this] {
        m_tries = 0;
        connectToBus();
    });
    QObject::connect(player, &MprisPlayer::changed, mpris, [this] { announce(); });
    QObject::connect(player, &MprisPlayer::moved, mpris, [this] {
        // Those who are told of a place are to know of which track it is.
        publish();
        emitSignal(PlayerInterface, "Seeked", g_variant_new("(x)", m_player->position().count()));
    });
}

MprisPrivate::~MprisPrivate()
{
    disconnect();
    g_dbus_node_info_unref(m_node);
}

void MprisPrivate::connectToBus()
{
    if (m_bus || m_connecting)
        return;
    m_again.stop();
    const QByteArray address = sessionBusAddress();
    if (address.isEmpty()) {
        VESK_DEBUG("no remote controls: there is no session bus");
        return;
    }
    m_connecting = g_cancellable_new();
    const auto done = [](GObject *, GAsyncResult *result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        GDBusConnection *const bus = g_dbus_connection_new_for_address_finish(result, &error);
        if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
            return;
        auto *const d = static_cast<MprisPrivate *>(self);
        g_clear_object(&d->m_connecting);
        if (bus)
            d->connected(bus);
        else
            d->waitForBus(reasonOf(error));
    };
    g_dbus_connection_new_for_address(address.constData(),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
            | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, m_connecting, done, this);
}

void MprisPrivate::connected(GDBusConnection *bus)
{
    m_bus = bus;
    m_calls = g_cancellable_new();
    if (!m_folder.directories().isEmpty())
        m_folder.removePaths(m_folder.directories());
    const auto closed = +[](GDBusConnection *, gboolean, GError *, gpointer self) {
        static_cast<MprisPrivate *>(self)->onClosed();
    };
    g_signal_connect(m_bus, "closed", G_CALLBACK(closed), this);
    registerObject();
    takeName(Mpris::Name);
}

void MprisPrivate::disconnect()
{
    if (m_connecting)
        g_cancellable_cancel(m_connecting);
    g_clear_object(&m_connecting);
    if (!m_bus)
        return;
    g_cancellable_cancel(m_calls);
    g_clear_object(&m_calls);
    m_isSending = false;
    m_changedSince = false;
    for (const guint object : m_objects)
        g_dbus_connection_unregister_object(m_bus, object);
    m_objects.clear();
    g_signal_handlers_disconnect_by_data(m_bus, this);
    g_dbus_connection_close(m_bus, nullptr, nullptr, nullptr);
    g_clear_object(&m_bus);
}

void MprisPrivate::onClosed()
{
    disconnect();
    setName({});
    waitForBus(QStringLiteral("the session bus has ended"));
}

/// A bus that begins makes its socket before it listens there, so it is tried several times. In a
/// folder where others make files, as in /tmp, it is not waited for any longer.
void MprisPrivate::waitForBus(const QString &why)
{
    if (m_tries == 0)
        VESK_DEBUG("no remote controls: " << why);
    const QFileInfo socket(busSocketOf(sessionBusAddress()));
    const QFileInfo folder(socket.path());
    const bool isOwn = !folder.permission(QFile::WriteOther) && folder.isDir();
    if (!socket.filePath().isEmpty() && isOwn && m_folder.directories().isEmpty())
        m_folder.addPath(folder.filePath());
    if (socket.filePath().isEmpty() || socket.exists())
        tryAgain();
}

void MprisPrivate::tryAgain()
{
    if (m_tries < Mpris::MaxTries)
        m_again.start(FirstWait << m_tries++);
}

void MprisPrivate::registerObject()
{
    static const GDBusInterfaceVTable table {&onCall, &onGet, &onSet, {}};
    for (GDBusInterfaceInfo *const *each = m_node->interfaces; *each; ++each) {
        m_objects.push_back(g_dbus_connection_register_object(
            m_bus, ObjectPath, *each, &table, this, nullptr, nullptr));
    }
    m_sent = mprisProperties(m_player->state());
}

/// Not by g_bus_own_name(), which waits for the bus when the name is given back. The bus takes it
/// back when it is left.
void MprisPrivate::takeName(const QByteArray &name)
{
    m_wantedName = name;
    const auto done = [](GObject *bus, GAsyncResult *result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        g_autoptr(GVariant) reply
            = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error);
        if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
            return;
        guint32 outcome = 0;
        if (reply)
            g_variant_get(reply, "(u)", &outcome);
        auto *const d = static_cast<MprisPrivate *>(self);
        if (outcome == NameIsOurs)
            d->setName(QString::fromLatin1(d->m_wantedName));
        else
            d->onNameRefused();
    };
    g_dbus_connection_call(m_bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
        "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", name.constData(), DoNotQueue),
        G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, NoTimeout, m_calls, done, this);
}

void MprisPrivate::onNameRefused()
{
    const QByteArray second
        = Mpris::Name + (".instance" + QByteArray::number(QCoreApplication::applicationPid()));
    if (g_dbus_connection_is_closed(m_bus))
        return;
    if (m_wantedName == second)
        VESK_DEBUG("no remote controls: the session bus gives no name");
    else
        takeName(second);
}

void MprisPrivate::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    if (!name.isEmpty()) {
        m_tries = 0;
        VESK_DEBUG("remote controls find the player as " << name);
    }
    Q_EMIT m_mpris->nameChanged(name);
}

/// Several changes at once are told together.
void MprisPrivate::announce()
{
    if (std::exchange(m_announced, true))
        return;
    QMetaObject::invokeMethod(
        m_mpris, [this] { publish(); }, Qt::QueuedConnection);
}

void MprisPrivate::publish()
{
    m_announced = false;
    if (!m_bus)
        return;
    if (m_isSending) {
        m_changedSince = true;
        return;
    }
    MprisProperties present = mprisProperties(m_player->state());
    GVariantBuilder changed;
    g_variant_builder_init(&changed, G_VARIANT_TYPE_VARDICT);
    bool isAny = false;
    for (std::size_t i = 0; i < present.size(); ++i) {
        if (g_variant_equal(present[i].second.get(), m_sent[i].second.get()))
            continue;
        isAny = true;
        g_variant_builder_add(
            &changed, "{sv}", present[i].first.constData(), present[i].second.get());
    }
    m_sent = std::move(present);
    if (!isAny) {
        g_variant_builder_clear(&changed);
        return;
    }
    emitSignal("org.freedesktop.DBus.Properties", "PropertiesChanged",
        g_variant_new("(sa{sv}as)", PlayerInterface, &changed, nullptr));
    awaitSending();
}

/// The next change is told once the bus has taken this one, so that nothing piles up before a bus
/// that hangs.
void MprisPrivate::awaitSending()
{
    m_isSending = true;
    const auto done = [](GObject *bus, GAsyncResult *result, gpointer self) {
        g_autoptr(GError) error = nullptr;
        g_dbus_connection_flush_finish(G_DBUS_CONNECTION(bus), result, &error);
        if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
            return;
        auto *const d = static_cast<MprisPrivate *>(self);
        d->m_isSending = false;
        if (std::exchange(d->m_changedSince, false))
            d->publish();
    };
    g_dbus_connection_flush(m_bus, m_calls, done, this);
}

void MprisPrivate::emitSignal(const char *interface, const char *signal, GVariant *arguments)
{
    g_variant_ref_sink(arguments);
    if (m_bus) {
        g_dbus_connection_emit_signal(
            m_bus, nullptr, ObjectPath, interface, signal, arguments, nullptr);
    }
    g_variant_unref(arguments);
}

GVariant *MprisPrivate::playerProperty(const QByteArray &name) const
{
    if (name == "Position")
        return g_variant_new_int64(m_player->position().count());
    if (name.endsWith("Rate"))
        return g_variant_new_double(1);
    for (MprisProperties::value_type &property : mprisProperties(m_player->state())) {
        if (property.first == name)
            return property.second.release();
    }
    return g_variant_new_boolean(TRUE); // CanControl
}

bool MprisPrivate::setPlayerProperty(const QByteArray &name, GVariant *value)
{
    const double number = g_variant_get_double(value);
    if (!std::isfinite(number))
        return false;
    if (name == "Volume")
        m_player->setVolume(std::clamp(number, 0.0, 1.0));
    else if (number == 0) // of Rate: as the standard wants it, and there is no other rate than 1
        m_player->pause();
    return true;
}

MprisPrivate::Call MprisPrivate::callOf(const QByteArray &method)
{
    static const std::pair<const char *, Call> calls[] {{"Next", &MprisPrivate::next},
        {"Previous", &MprisPrivate::previous}, {"Pause", &MprisPrivate::pause},
        {"PlayPause", &MprisPrivate::playPause}, {"Stop", &MprisPrivate::stop},
        {"Play", &MprisPrivate::play}, {"Seek", &MprisPrivate::seek},
        {"SetPosition", &MprisPrivate::setPosition}};
    for (const auto &[name, call] : calls) {
        if (method == name)
            return call;
    }
    return nullptr;
}

void MprisPrivate::playPause(GVariant *)
{
    if (isPlaying())
        m_player->pause();
    else
        m_player->play();
}

void MprisPrivate::seek(GVariant *arguments)
{
    gint64 offset = 0;
    g_variant_get(arguments, "(x)", &offset);
    if (m_player->state().canSeek)
        m_player->seekBy(std::clamp(Microseconds(offset), -FarthestSeek, FarthestSeek));
}

/// What is meant for a track that is over, or lies outside of it, is ignored.
void MprisPrivate::setPosition(GVariant *arguments)
{
    const char *track = nullptr;
    gint64 position = 0;
    g_variant_get(arguments, "(&ox)", &track, &position);
    const MprisState state = m_player->state();
    const bool isInside = position >= 0
        && (state.track.length.count() == 0 || position <= state.track.length.count());
    if (state.canSeek && isInside && mprisTrackPath(state.track.number) == track)
        m_player->seekTo(Microseconds(position));
}

void MprisPrivate::onCall(GDBusConnection *, const char *, const char *, const char *interface,
    const char *method, GVariant *arguments, GDBusMethodInvocation *invocation, gpointer self)
{
    auto *const d = static_cast<MprisPrivate *>(self);
    const bool isPlayer = qstrcmp(interface, PlayerInterface) == 0;
    const Call call = isPlayer ? callOf(method) : nullptr;
    if (isPlayer && !call) {
        g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR,
            G_DBUS_ERROR_NOT_SUPPORTED, "This player opens no addresses.");
        return;
    }
    if (call)
        (d->*call)(arguments);
    g_dbus_method_invocation_return_value(invocation, nullptr);
}

GVariant *MprisPrivate::onGet(GDBusConnection *, const char *, const char *, const char *interface,
    const char *property, GError **, gpointer self)
{
    if (qstrcmp(interface, RootInterface) == 0)
        return rootProperty(property);
    return static_cast<MprisPrivate *>(self)->playerProperty(property);
}

gboolean MprisPrivate::onSet(GDBusConnection *, const char *, const char *, const char *,
    const char *property, GVariant *value, GError **error, gpointer self)
{
    if (static_cast<MprisPrivate *>(self)->setPlayerProperty(property, value))
        return TRUE;
    g_set_error_literal(error, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS, "This is no number.");
    return FALSE;
}

Mpris::Mpris(MprisPlayer *player, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<MprisPrivate>(this, player))
{
    d->connectToBus();
}

Mpris::~Mpris()
{
    VESK_ASSERT_OWN_THREAD();
}

QString Mpris::name() const
{
    VESK_ASSERT_OWN_THREAD();
    return d->name();
}
