// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/mpris/Mpris.h"

#include "host/mpris/MprisPlayer.h"
#include "host/mpris/MprisProperties.h"
#include "tests/host/announce/PrivateBus.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>

#include <csignal>
#include <limits>
#include <unistd.h>

namespace {

using std::chrono::microseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char Variable[] = "DBUS_SESSION_BUS_ADDRESS";
constexpr char Path[] = "/org/mpris/MediaPlayer2";
constexpr char Root[] = "org.mpris.MediaPlayer2";
constexpr char Player[] = "org.mpris.MediaPlayer2.Player";

/// Far below what a bus that hangs would make a blocking caller wait for, which is 25 s.
constexpr qint64 AtOnce = 2000;

class FakePlayer : public MprisPlayer {
public:
    MprisState state() const override { return now; }
    microseconds position() const override { return where; }
    void play() override { called("play"); }
    void pause() override { called("pause"); }
    void stop() override { called("stop"); }
    void goNext() override { called("next"); }
    void goPrevious() override { called("previous"); }
    void seekTo(microseconds position) override
    {
        called("seekTo " + QByteArray::number(qint64(position.count())));
    }
    void seekBy(microseconds offset) override
    {
        called("seekBy " + QByteArray::number(qint64(offset.count())));
    }
    void setVolume(double volume) override { called("volume " + QByteArray::number(volume)); }

    void called(const QByteArray &what) { calls.append(what); }

    MprisState now;
    microseconds where {0};
    QByteArrayList calls;
};

MprisState playing(const char *title)
{
    MprisState state;
    state.status = MprisState::Playing;
    state.track.number = 1;
    state.track.title = text(title);
    state.canPlay = true;
    state.canPause = true;
    return state;
}

/// A connection of its own. Calls run the event loop, which serves the player as well.
class Client {
public:
    Client()
    {
        const auto done = [](GObject *, GAsyncResult *result, gpointer self) {
            static_cast<Client *>(self)->m_bus
                = g_dbus_connection_new_for_address_finish(result, nullptr);
        };
        g_dbus_connection_new_for_address(qgetenv(Variable).constData(),
            GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
                | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, done, this);
        spinUntil([this] { return m_bus; });
        const auto heard = [](GDBusConnection *, const char *, const char *, const char *,
                               const char *signal, GVariant *arguments, gpointer self) {
            g_autofree char *printed = g_variant_print(arguments, FALSE);
            static_cast<Client *>(self)->signals_.append(
                QByteArray(signal) + " " + QByteArray(printed));
        };
        m_subscription = g_dbus_connection_signal_subscribe(m_bus, nullptr, nullptr, nullptr, Path,
            nullptr, G_DBUS_SIGNAL_FLAGS_NONE, heard, this, nullptr);
    }
    ~Client()
    {
        // A signal that has arrived waits in the main loop, and closing does not take it out.
        g_dbus_connection_signal_unsubscribe(m_bus, m_subscription);
        g_dbus_connection_close_sync(m_bus, nullptr, nullptr);
        g_object_unref(m_bus);
    }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    /// The response as it is printed, or the error's name.
    QByteArray call(const char *interface, const char *method, GVariant *arguments = nullptr,
        const char *name = Mpris::Name)
    {
        struct Outcome {
            QByteArray text;
            bool isThere = false;
        } outcome;
        const auto done = [](GObject *bus, GAsyncResult *result, gpointer data) {
            auto *const out = static_cast<Outcome *>(data);
            g_autoptr(GError) error = nullptr;
            g_autoptr(GVariant) reply
                = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error);
            g_autofree char *printed
                = reply ? g_variant_print(reply, FALSE) : g_dbus_error_get_remote_error(error);
            out->text = printed;
            out->isThere = true;
        };
        g_dbus_connection_call(m_bus, name, Path, interface, method, arguments, nullptr,
            G_DBUS_CALL_FLAGS_NONE, 30000, nullptr, done, &outcome);
        spinUntil([&] { return outcome.isThere; }, 30000);
        return outcome.text;
    }
    QByteArray get(const char *interface, const char *property)
    {
        const QByteArray printed = call(
            "org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", interface, property));
        return printed.startsWith("(<") ? printed.mid(2, printed.size() - 5) : printed;
    }
    QByteArray set(const char *property, GVariant *value)
    {
        return call("org.freedesktop.DBus.Properties", "Set",
            g_variant_new("(ssv)", Player, property, value));
    }
    QByteArrayList takeSignals() { return std::exchange(signals_, {}); }
    /// The signals, once there are that many.
    QByteArrayList waitForSignals(int count)
    {
        spinUntil([&] { return signals_.size() >= count; });
        return takeSignals();
    }

private:
    GDBusConnection *m_bus = nullptr;
    guint m_subscription = 0;
    QByteArrayList signals_;
};

class MprisTest : public testing::Test {
protected:
    MprisTest()
    {
        if (!m_bus->isRunning())
            throw std::runtime_error("dbus-daemon does not run");
    }

    bool begin()
    {
        m_mpris = std::make_unique<Mpris>(&m_player);
        return isFoundAs(Mpris::Name);
    }
    bool isFoundAs(const char *name)
    {
        return spinUntil([&] { return m_mpris->name() == QString::fromUtf8(name); }, 60000);
    }
    void change(const MprisState &state)
    {
        m_player.now = state;
        Q_EMIT m_player.changed();
    }
    QByteArrayList takeCalls() { return std::exchange(m_player.calls, {}); }
    /// playerctl's output, or what it says is wrong.
    QByteArray playerctl(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(text("playerctl"), arguments);
        spinUntil([&] { return process.state() == QProcess::NotRunning; }, 30000);
        return process.readAll().trimmed();
    }

    LogCapture m_log {"Mpris"};
    std::unique_ptr<PrivateBus> m_bus = std::make_unique<PrivateBus>(Variable);
    FakePlayer m_player;
    std::unique_ptr<Mpris> m_mpris;
};

TEST_F(MprisTest, SaysWhatItIs)
{
    ASSERT_TRUE(begin());
    Client client;
    EXPECT_EQ(client.get(Root, "Identity"), "'Vesk'");
    for (const char *name : {"CanQuit", "CanRaise", "HasTrackList"})
        EXPECT_EQ(client.get(Root, name), "false") << name;
    for (const char *name : {"SupportedUriSchemes", "SupportedMimeTypes"})
        EXPECT_EQ(client.get(Root, name), "@as []") << name;
    EXPECT_EQ(client.call(Root, "Raise"), "()");
    EXPECT_EQ(client.call(Root, "Quit"), "()");
    EXPECT_THAT(m_player.calls, IsEmpty());
    EXPECT_EQ(m_log.lines(),
        QStringList {text("DEBUG remote controls find the player as org.mpris.MediaPlayer2.vesk")});
}

/// Each with the type that the standard gives it.
TEST_F(MprisTest, TellsAllProperties)
{
    m_player.now = playing("Jazz");
    m_player.now.volume = 0.5;
    m_player.now.canSeek = true;
    m_player.now.canGoNext = true;
    m_player.where = microseconds(5000000);
    ASSERT_TRUE(begin());
    Client client;
    const std::pair<const char *, const char *> properties[] {{"PlaybackStatus", "'Playing'"},
        {"Rate", "1.0"}, {"MinimumRate", "1.0"}, {"MaximumRate", "1.0"}, {"Volume", "0.5"},
        {"Position", "int64 5000000"}, {"CanGoNext", "true"}, {"CanGoPrevious", "false"},
        {"CanPlay", "true"}, {"CanPause", "true"}, {"CanSeek", "true"}, {"CanControl", "true"},
        {"Metadata",
            "{'mpris:trackid': <objectpath '/org/vesk/play/1'>, 'xesam:title': <'Jazz'>}"}};
    for (const auto &[name, value] : properties)
        EXPECT_EQ(client.get(Player, name), value) << name;
    const QByteArray all
        = client.call("org.freedesktop.DBus.Properties", "GetAll", g_variant_new("(s)", Player));
    for (const auto &[name, value] : properties)
        EXPECT_TRUE(all.contains(QByteArray("'") + name + "': <" + value + ">")) << name;
    EXPECT_EQ(client.get(Player, "Nothing"), "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(client.set("CanSeek", g_variant_new_boolean(TRUE)),
        "org.freedesktop.DBus.Error.InvalidArgs");
}

TEST_F(MprisTest, MethodsReachThePlayer)
{
    ASSERT_TRUE(begin());
    Client client;
    for (const auto &[method, call] : {std::make_pair("Next", "next"), {"Previous", "previous"},
             {"Pause", "pause"}, {"Stop", "stop"}, {"Play", "play"}, {"PlayPause", "play"}}) {
        EXPECT_EQ(client.call(Player, method), "()");
        EXPECT_THAT(takeCalls(), ElementsAre(call)) << method;
    }
    m_player.now = playing("Jazz");
    EXPECT_EQ(client.call(Player, "PlayPause"), "()");
    m_player.now.status = MprisState::Paused;
    EXPECT_EQ(client.call(Player, "PlayPause"), "()");
    EXPECT_THAT(takeCalls(), ElementsAre("pause", "play"));
    EXPECT_EQ(client.call(Player, "OpenUri", g_variant_new("(s)", "http://a.example/")),
        "org.freedesktop.DBus.Error.NotSupported");
    EXPECT_EQ(client.call(Player, "Seek", g_variant_new("(s)", "far")),
        "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(client.call(Player, "Dance"), "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_THAT(takeCalls(), IsEmpty());
}

TEST_F(MprisTest, VolumeIsBounded)
{
    ASSERT_TRUE(begin());
    Client client;
    for (const double volume : {0.0, 0.35, 1.0, 1.5, -1.0, std::numeric_limits<double>::max()})
        EXPECT_EQ(client.set("Volume", g_variant_new_double(volume)), "()");
    EXPECT_THAT(takeCalls(),
        ElementsAre("volume 0", "volume 0.35", "volume 1", "volume 1", "volume 0", "volume 1"));
    for (const double volume :
        {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(client.set("Volume", g_variant_new_double(volume)),
            "org.freedesktop.DBus.Error.InvalidArgs");
    }
    EXPECT_EQ(client.set("Volume", g_variant_new_string("loud")),
        "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_THAT(takeCalls(), IsEmpty());
}

/// The standard wants 0 to be a pause; there is no other rate than 1.
TEST_F(MprisTest, RateStaysOne)
{
    ASSERT_TRUE(begin());
    Client client;
    EXPECT_EQ(client.set("Rate", g_variant_new_double(2)), "()");
    EXPECT_THAT(takeCalls(), IsEmpty());
    EXPECT_EQ(client.set("Rate", g_variant_new_double(0)), "()");
    EXPECT_THAT(takeCalls(), ElementsAre("pause"));
    EXPECT_EQ(client.get(Player, "Rate"), "1.0");
}

TEST_F(MprisTest, SeeksOnlyInsideThePresentTrack)
{
    m_player.now = playing("Episode");
    m_player.now.canSeek = true;
    m_player.now.track.length = std::chrono::seconds(60);
    ASSERT_TRUE(begin());
    Client client;
    const auto setPosition = [&](const char *track, gint64 position) {
        EXPECT_EQ(client.call(Player, "SetPosition", g_variant_new("(ox)", track, position)), "()");
    };
    setPosition("/org/vesk/play/1", 30000000);
    setPosition("/org/vesk/play/1", 0);
    setPosition("/org/vesk/play/1", 60000000);
    EXPECT_THAT(takeCalls(), ElementsAre("seekTo 30000000", "seekTo 0", "seekTo 60000000"));
    setPosition("/org/vesk/play/2", 30000000);
    setPosition("/org/mpris/MediaPlayer2/TrackList/NoTrack", 30000000);
    setPosition("/org/vesk/play/1", -1);
    setPosition("/org/vesk/play/1", 60000001);
    setPosition("/org/vesk/play/1", std::numeric_limits<gint64>::max());
    EXPECT_THAT(takeCalls(), IsEmpty());
    const auto seek
        = [&](gint64 offset) { client.call(Player, "Seek", g_variant_new("(x)", offset)); };
    seek(-5000000);
    seek(std::numeric_limits<gint64>::min());
    seek(std::numeric_limits<gint64>::max());
    EXPECT_THAT(takeCalls(),
        ElementsAre("seekBy -5000000", "seekBy -31536000000000", "seekBy 31536000000000"));
    m_player.now.canSeek = false;
    setPosition("/org/vesk/play/1", 30000000);
    seek(5);
    EXPECT_THAT(takeCalls(), IsEmpty());
}

TEST_F(MprisTest, TellsChangedValuesOnlyAndTogether)
{
    ASSERT_TRUE(begin());
    Client client;
    change(playing("Jazz"));
    change(playing("Blues"));
    EXPECT_THAT(client.waitForSignals(1),
        ElementsAre("PropertiesChanged ('org.mpris.MediaPlayer2.Player', {'PlaybackStatus': "
                    "<'Playing'>, 'Metadata': <{'mpris:trackid': <objectpath '/org/vesk/play/1'>, "
                    "'xesam:title': <'Blues'>}>, 'CanPlay': <true>, 'CanPause': <true>}, [])"));
    // Nothing has changed, or only the position.
    m_player.where = microseconds(7000000);
    change(playing("Blues"));
    MprisState louder = playing("Blues");
    louder.volume = 0.5;
    change(louder);
    EXPECT_THAT(client.waitForSignals(1),
        ElementsAre("PropertiesChanged ('org.mpris.MediaPlayer2.Player', {'Volume': <0.5>}, [])"));
    for (int i = 0; i < 20; ++i) {
        m_player.where += microseconds(1000);
        change(louder);
        EXPECT_EQ(client.get(Player, "Volume"), "0.5");
    }
    EXPECT_THAT(client.takeSignals(), IsEmpty());
}

TEST_F(MprisTest, TellsAJumpOnceTheTrackIsKnown)
{
    ASSERT_TRUE(begin());
    Client client;
    m_player.where = microseconds(42000000);
    change(playing("Episode"));
    Q_EMIT m_player.moved();
    const QByteArrayList heard = client.waitForSignals(2);
    ASSERT_EQ(heard.size(), 2);
    EXPECT_TRUE(heard.at(0).startsWith("PropertiesChanged"));
    EXPECT_EQ(heard.at(1), "Seeked (42000000,)");
}

TEST_F(MprisTest, ATakenNameIsReplacedByAnotherOne)
{
    ASSERT_TRUE(begin());
    FakePlayer second;
    const Mpris other(&second);
    const QByteArray name
        = Mpris::Name + (".instance" + QByteArray::number(QCoreApplication::applicationPid()));
    ASSERT_TRUE(spinUntil([&] { return other.name() == QString::fromLatin1(name); }));
    Client client;
    client.call(Player, "Stop", nullptr, name.constData());
    EXPECT_THAT(second.calls, ElementsAre("stop"));
    EXPECT_THAT(m_player.calls, IsEmpty());
    // A third one gets none, and does no harm.
    FakePlayer third;
    const Mpris last(&third);
    EXPECT_TRUE(spinUntil([&] {
        return m_log.contains(text("DEBUG no remote controls: the session bus gives no name"));
    }));
    EXPECT_EQ(last.name(), QString());
}

TEST_F(MprisTest, LeavesTheBusWithItsObject)
{
    ASSERT_TRUE(begin());
    Client client;
    m_mpris.reset();
    ASSERT_TRUE(spinUntil([&] {
        return client.get(Player, "Volume") == "org.freedesktop.DBus.Error.ServiceUnknown";
    }));
}

TEST_F(MprisTest, WithoutABusThereIsOneLine)
{
    struct Case {
        const char *address;
        const char *folder;
    };
    for (const Case &c : {Case {"", ""}, Case {"autolaunch:", ""}, Case {"disabled:", ""},
             Case {"nonsense", ""}, Case {"", "relative"}}) {
        qputenv(Variable, c.address);
        qputenv("XDG_RUNTIME_DIR", c.folder);
        m_log.clear();
        m_mpris = std::make_unique<Mpris>(&m_player);
        change(playing("Jazz"));
        Q_EMIT m_player.moved();
        EXPECT_EQ(
            m_log.lines(), QStringList {text("DEBUG no remote controls: there is no session bus")});
        EXPECT_EQ(m_mpris->name(), QString());
    }
    qunsetenv("XDG_RUNTIME_DIR");
}

/// As after a restart of a user's session; in the runtime folder or elsewhere.
TEST_F(MprisTest, ABusMayEndAndComeBack)
{
    ASSERT_TRUE(begin());
    for (int i = 0; i < 3; ++i) {
        m_bus->end();
        ASSERT_TRUE(isFoundAs(""));
        change(playing("Jazz"));
        Q_EMIT m_player.moved();
        m_bus->start();
        ASSERT_TRUE(isFoundAs(Mpris::Name));
        Client client;
        EXPECT_EQ(client.get(Player, "PlaybackStatus"), "'Playing'");
        change({});
        EXPECT_EQ(client.waitForSignals(1).size(), 1);
    }
}

TEST_F(MprisTest, ABusMayComeLater)
{
    m_bus->end();
    const QByteArray socket = m_bus->address().mid(int(qstrlen("unix:path=")));
    QFile::remove(QString::fromLocal8Bit(socket));
    m_mpris = std::make_unique<Mpris>(&m_player);
    ASSERT_TRUE(spinUntil([&] { return !m_log.lines().isEmpty(); }));
    m_bus->start();
    EXPECT_TRUE(isFoundAs(Mpris::Name));
}

TEST_F(MprisTest, NobodyWaitsForABusThatHangs)
{
    QElapsedTimer clock;
    clock.start();
    m_bus->signal(SIGSTOP);
    for (int i = 0; i < 3; ++i) {
        m_mpris = std::make_unique<Mpris>(&m_player);
        change(playing("Jazz"));
        QCoreApplication::processEvents();
    }
    EXPECT_LT(clock.restart(), AtOnce);
    m_bus->signal(SIGCONT);
    ASSERT_TRUE(isFoundAs(Mpris::Name));
    clock.restart();
    m_bus->signal(SIGSTOP);
    for (int i = 0; i < 1000; ++i) {
        MprisState state = playing("Jazz");
        state.track.number = quint64(i + 2);
        change(state);
        QCoreApplication::processEvents();
    }
    EXPECT_LT(clock.elapsed(), AtOnce);
    m_bus->signal(SIGCONT);
    Client client;
    ASSERT_TRUE(spinUntil([&] { return client.get(Player, "Metadata").contains("/1001'"); }));
    m_bus->signal(SIGSTOP);
    clock.restart();
    m_mpris.reset();
    EXPECT_LT(clock.elapsed(), AtOnce);
    m_bus->signal(SIGCONT);
}

/// However many changes there were while the bus hung, it is told the last of them.
TEST_F(MprisTest, NothingPilesUpBeforeABusThatHangs)
{
    ASSERT_TRUE(begin());
    Client client;
    m_bus->signal(SIGSTOP);
    for (int i = 0; i < 20000; ++i) {
        MprisState state = playing("Jazz");
        state.track.number = quint64(i + 1);
        state.track.title = QString(Mpris::MaxText, QLatin1Char('x'));
        change(state);
        QCoreApplication::processEvents();
    }
    m_bus->signal(SIGCONT);
    QByteArrayList heard;
    ASSERT_TRUE(spinUntil([&] {
        heard += client.takeSignals();
        return !heard.isEmpty() && heard.last().contains("/20000'");
    }));
    // What the socket takes goes out; far less than was to be told.
    EXPECT_LT(heard.size(), 5000);
}

TEST_F(MprisTest, PlayerctlControlsIt)
{
    m_player.now = playing("Jazz");
    m_player.now.track.artist = text("Someone");
    m_player.now.track.artUrl = text("https://pictures.example/1.png");
    m_player.now.track.length = std::chrono::seconds(3600);
    m_player.now.canSeek = true;
    m_player.now.canGoNext = true;
    m_player.now.canGoPrevious = true;
    m_player.now.volume = 0.25;
    m_player.where = std::chrono::seconds(61);
    ASSERT_TRUE(begin());
    EXPECT_EQ(playerctl({text("-l")}), "vesk");
    EXPECT_EQ(playerctl({text("status")}), "Playing");
    EXPECT_EQ(playerctl({text("metadata"), text("--format"),
                  text("{{artist}}|{{title}}|{{mpris:artUrl}}|{{duration(mpris:length)}}|"
                       "{{duration(position)}}|{{volume}}")}),
        "Someone|Jazz|https://pictures.example/1.png|1:00:00|1:01|0.25");
    const std::pair<QStringList, const char *> commands[] {{{text("play-pause")}, "pause"},
        {{text("pause")}, "pause"}, {{text("play")}, "play"}, {{text("next")}, "next"},
        {{text("previous")}, "previous"}, {{text("stop")}, "stop"},
        {{text("volume"), text("0.5")}, "volume 0.5"},
        {{text("position"), text("30")}, "seekTo 30000000"},
        {{text("position"), text("10+")}, "seekBy 10000000"},
        {{text("position"), text("10-")}, "seekBy -10000000"}};
    for (const auto &[arguments, call] : commands) {
        EXPECT_EQ(playerctl(arguments), "");
        EXPECT_THAT(takeCalls(), ElementsAre(call))
            << arguments.join(QLatin1Char(' ')).toStdString();
    }
}

} // namespace
