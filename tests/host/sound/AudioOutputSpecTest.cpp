// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/AudioOutputSpec.h"

#include "tests/support/Text.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using ::testing::HasSubstr;

namespace {

AudioOutputSpec parsed(const char *text)
{
    const auto spec = AudioOutputSpec::parse(QString::fromUtf8(text));
    EXPECT_TRUE(spec) << text << ": " << spec.error().toStdString();
    return spec ? *spec : AudioOutputSpec();
}

std::string problemOf(const QString &text)
{
    const auto spec = AudioOutputSpec::parse(text);
    EXPECT_FALSE(spec) << text.toStdString();
    return spec ? std::string() : spec.error().toStdString();
}

} // namespace

TEST(AudioOutputSpecTest, ReadsAllForms)
{
    const struct {
        const char *text;
        AudioOutputSpec spec;
    } rows[] = {
        {"auto", {AudioOutputSpec::Auto}},
        {"null", {AudioOutputSpec::Null}},
        {"wav:out.wav", {AudioOutputSpec::Wav, text("out.wav")}},
        {"alsa", {AudioOutputSpec::Alsa}},
        {"alsa:hw:CARD=PCH,DEV=0", {AudioOutputSpec::Alsa, {}, text("hw:CARD=PCH,DEV=0")}},
        {"pulse", {AudioOutputSpec::Pulse}},
        {"pulse:alsa_output.usb-DAC", {AudioOutputSpec::Pulse, {}, text("alsa_output.usb-DAC")}},
        {"pipewire", {AudioOutputSpec::PipeWire}},
        {"pipewire:kitchen", {AudioOutputSpec::PipeWire, {}, text("kitchen")}},
        {"jack", {AudioOutputSpec::Jack}},
        {"pipe:/tmp/snapfifo", {AudioOutputSpec::Pipe, text("/tmp/snapfifo")}},
        {"tcp:music.local:4953", {AudioOutputSpec::Tcp, {}, {}, text("music.local"), 4953}},
        {"tcp:10.0.0.7:1", {AudioOutputSpec::Tcp, {}, {}, text("10.0.0.7"), 1}},
        {"tcp:[::1]:65535", {AudioOutputSpec::Tcp, {}, {}, text("::1"), 65535}},
        {"tcp:[fe80::1%eth0]:4953", {AudioOutputSpec::Tcp, {}, {}, text("fe80::1%eth0"), 4953}},
    };
    for (const auto &row : rows) {
        EXPECT_TRUE(parsed(row.text) == row.spec) << row.text;
        EXPECT_EQ(row.spec.text().toStdString(), row.text);
    }
}

TEST(AudioOutputSpecTest, TakesNamesAsTheyAre)
{
    for (const char *name : {"out.wav", "/tmp/a b.wav", "C:/x.wav", "wav:", " a ", "ä.wav"}) {
        const QString file = QString::fromUtf8(name);
        EXPECT_EQ(parsed(("wav:" + file.toUtf8()).constData()).file, file);
        EXPECT_EQ(parsed(("pipe:" + file.toUtf8()).constData()).file, file);
        EXPECT_EQ(parsed(("pulse:" + file.toUtf8()).constData()).device, file);
    }
}

TEST(AudioOutputSpecTest, SaysWhatIsWrong)
{
    const struct {
        const char *text;
        const char *problem;
    } rows[] = {
        {"", "\"\" is not auto, null, wav:FILE"},
        {"AUTO", "is not auto"},
        {"auto ", "is not auto"},
        {" null", "is not auto"},
        {"WAV:out.wav", "is not auto"},
        {"file:out.wav", "is not auto"},
        {"out.wav", "tcp:HOST:PORT"},
        {":x", "is not auto"},
        {"auto:x", "\"auto:x\" is auto with something after it"},
        {"null:", "null with something after it"},
        {"jack:music", "jack with something after it"},
        {"wav", "needs a file, as in wav:FILE"},
        {"wav:", "needs a file, as in wav:FILE"},
        {"pipe:", "needs a file, as in pipe:FILE"},
        {"pulse:", "has no name after the colon; pulse is the default one"},
        {"alsa:", "has no name after the colon"},
        {"alsa:a\nb", "control character"},
        {"tcp", "needs a server"},
        {"tcp:music", "needs a server"},
        {"tcp:music:", "needs a server"},
        {"tcp::4953", "needs a server"},
        {"tcp:::1:4953", "IPv6 address stands in brackets"},
        {"tcp:music:port", "needs a server"},
        {"tcp:music:0", "port from 1 to 65535"},
        {"tcp:music:65536", "port from 1 to 65535"},
        {"tcp:music:4953 ", "needs a server"},
        {"tcp:a b:4953", "needs a server"},
        {"tcp:http://music:4953", "needs a server"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(problemOf(QString::fromUtf8(row.text)), HasSubstr(row.problem)) << row.text;
    const std::string problem = problemOf(text("pulse:") + QString(5000, QLatin1Char('x')));
    EXPECT_THAT(problem, HasSubstr("too long"));
    EXPECT_LT(problem.size(), 200u);
}

TEST(AudioOutputSpecTest, FilesHaveToBeOfTheRightKind)
{
    const QTemporaryDir folder;
    const QString regular = folder.filePath(text("regular"));
    const QString fifo = folder.filePath(text("fifo"));
    QFile file(regular);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(::mkfifo(fifo.toUtf8().constData(), 0600), 0);
    const auto problem = [](AudioOutputSpec::Kind kind, const QString &name) {
        return AudioOutputSpec {kind, name}.problem().toStdString();
    };
    EXPECT_EQ(problem(AudioOutputSpec::Wav, regular), "");
    EXPECT_EQ(problem(AudioOutputSpec::Pipe, fifo), "");
    EXPECT_EQ(problem(AudioOutputSpec::Wav, folder.filePath(text("none"))), "");
    EXPECT_EQ(problem(AudioOutputSpec::Pipe, folder.filePath(text("none"))), "");
    EXPECT_THAT(problem(AudioOutputSpec::Wav, fifo), HasSubstr(fifo.toStdString()));
    EXPECT_EQ(problem(AudioOutputSpec::Pipe, regular), regular.toStdString() + ": not a FIFO");
    EXPECT_THAT(problem(AudioOutputSpec::Pipe, folder.path()), HasSubstr("not a FIFO"));
}

TEST(AudioOutputSpecTest, ClientsNameDevicesOnly)
{
    for (const char *text : {"auto", "null", "jack", "pulse", "pulse:a/b", "pipewire:x", "alsa",
             "alsa:default", "alsa:my_speakers-2.1", "alsa:hw:0,1", "alsa:plughw:CARD=PCH,DEV=0",
             "alsa:sysdefault:CARD=USB", "alsa:surround51:CARD=PCH,DEV=0", "alsa:null"})
        EXPECT_TRUE(parsed(text).isForClients()) << text;
    for (const char *text :
        {"wav:x", "pipe:/tmp/x", "tcp:localhost:80", "alsa:file:/tmp/x", "alsa:file:x",
            "alsa:file:'|touch x',raw", "alsa:tee:hw,x,raw", "alsa:{type file file x}",
            "alsa:hw:{x}", "alsa:default:'x'", "alsa:plug:file:x", "alsa:a b", "alsa:/etc/x"})
        EXPECT_FALSE(parsed(text).isForClients()) << text;
}
