// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/system/PlayFixture.h"

#include "tests/support/Text.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <QtEndian>

namespace {

/// Bytes of sound in the file.
constexpr qint64 Second = 44100 * 2 * sizeof(qint16);

QStringList inFolder(QStringList arguments, const QTemporaryDir &folder)
{
    return arguments.replaceInStrings(text("%1"), folder.path());
}

} // namespace

Footprint Footprint::of(qint64 pid)
{
    const QString folder = QStringLiteral("/proc/%1/").arg(pid);
    Footprint footprint;
    footprint.descriptors = QDir(folder + text("fd"))
                                .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                                .size();
    QFile status(folder + text("status"));
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("Threads:"))
            footprint.threads = line.mid(8).trimmed().toInt();
        else if (line.startsWith("VmRSS:"))
            footprint.kilobytes = line.mid(6).trimmed().split(' ').first().toInt();
    }
    return footprint;
}

Footprint Footprint::settled(qint64 pid, const Footprint &before)
{
    constexpr int PollMs = 25;
    const QDeadlineTimer deadline(5000);
    Footprint now = of(pid);
    while (!deadline.hasExpired()
        && (now.threads > before.threads || now.descriptors > before.descriptors)) {
        QThread::msleep(PollMs);
        now = of(pid);
    }
    return now;
}

PlayFixture::PlayFixture(QStringList hostArguments)
    : wav(folder.filePath(text("out.wav")))
    , product(QStringList {text("--audio"), text("wav:") + wav}
          + inFolder(std::move(hostArguments), folder))
{
}

void PlayFixture::SetUp()
{
    ASSERT_TRUE(product.isUp());
}

QVariantHash PlayFixture::play(const QString &search, int row) const
{
    return product.rpc(text("player.play"),
        {{text("screen"), text("TuneIn:browse/uri/Search.ashx?query=") + search},
            {text("row"), row}});
}

QVariantHash PlayFixture::state() const
{
    return product.rpc(text("player.state"), {}).value(text("result")).toHash();
}

bool PlayFixture::waitForState(int wanted, int milliseconds) const
{
    QElapsedTimer clock;
    clock.start();
    while (state().value(text("state")).toInt() != wanted) {
        if (clock.elapsed() > milliseconds)
            return false;
        QThread::msleep(PollMs);
    }
    return true;
}

void PlayFixture::command(const char *method) const
{
    EXPECT_FALSE(product.rpc(text(method), {}).contains(text("error"))) << method;
}

PlayFixture::Watched PlayFixture::watch(int milliseconds) const
{
    Watched watched;
    QElapsedTimer clock;
    clock.start();
    qint64 lastPlaying = 0;
    while (clock.elapsed() < milliseconds) {
        const QVariantHash now = state();
        watched.lastState = now.value(text("state")).toInt();
        watched.error = now.value(text("error")).toString();
        if (watched.lastState == 2)
            lastPlaying = clock.elapsed();
        watched.longestBreakMs
            = qMax(watched.longestBreakMs, static_cast<int>(clock.elapsed() - lastPlaying));
        QThread::msleep(PollMs);
    }
    return watched;
}

bool PlayFixture::isHeard() const
{
    return waitForSize(QFileInfo(wav).size() + Second, 3000);
}

bool PlayFixture::waitForSound(int seconds) const
{
    return waitForSize(seconds * Second, 60000);
}

bool PlayFixture::waitForSize(qint64 bytes, int milliseconds) const
{
    const QDeadlineTimer deadline(milliseconds);
    while (QFileInfo(wav).size() < bytes) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(PollMs);
    }
    return true;
}

/// Whether a WAV file's header holds the file's length.
static bool isComplete(const QByteArray &wav)
{
    constexpr int HeadSize = 8;
    return wav.size() > HeadSize
        && qFromLittleEndian<quint32>(wav.constData() + 4)
        == static_cast<quint32>(wav.size() - HeadSize);
}

ear::Sound PlayFixture::heard() const
{
    // After a stop the play's own thread completes the file.
    QElapsedTimer clock;
    clock.start();
    QByteArray bytes;
    do {
        QFile file(wav);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        bytes = file.readAll();
    } while (!isComplete(bytes) && clock.elapsed() < 20000);
    EXPECT_TRUE(isComplete(bytes));
    return ear::decoded(bytes.toStdString());
}

std::vector<double> PlayFixture::melody(const QString &id, int stream) const
{
    const QVariantList streams
        = product.directory(text("/_tunes?id=") + id).value(text("streams")).toList();
    std::vector<double> notes;
    const QVariantList values = streams.value(stream).toHash().value(text("notes")).toList();
    for (const QVariant &note : values)
        notes.push_back(note.toDouble());
    return notes;
}

QStringList PlayFixture::requests(const char *page) const
{
    return product.requestLog().filter(text(page));
}
