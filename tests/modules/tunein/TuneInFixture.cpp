// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInFixture.h"

#include "api/values/VeskValuePaths.h"
#include "modules/tunein/TuneInBrowseNode.h"
#include "modules/tunein/TuneInClock.h"

#include <atomic>

const QByteArray CommonItems
    = "render=json&formats=mp3%2Caac&partnerId=partner&serial=ABC&locale=en";

namespace {

std::atomic<qint64> monotonicMs {0};
std::atomic<qint64> epochMs {1700000000789};

} // namespace

void FakeClock::install()
{
    advance(3600000);
    TuneInClock::instance().monotonicMs = [] { return monotonicMs.load(); };
    TuneInClock::instance().epochMs = [] { return epochMs.load(); };
}

void FakeClock::advance(qint64 milliseconds)
{
    monotonicMs += milliseconds;
    epochMs += milliseconds;
}

void FakeClock::setMonotonic(qint64 milliseconds)
{
    monotonicMs = milliseconds;
}

qint64 FakeClock::monotonic()
{
    return monotonicMs;
}

qint64 FakeClock::epochSeconds()
{
    return epochMs / 1000;
}

TuneInFixture::TuneInFixture()
{
    FakeClock::install();
}

TuneInFixture::~TuneInFixture() = default;

QVariantHash TuneInFixture::defaultConfig()
{
    return {{VeskService_Id(), "tunein"_s}};
}

void TuneInFixture::start(const QVariantHash &config)
{
    m_thread = std::make_unique<WorkerThread>([config]() -> QObject * {
        QVariantHash copy = config;
        return static_cast<CMTuneInWorker *>(worker_create("TuneIn", &copy));
    });
    // On this thread the call blocks until the first state has arrived.
    worker()->networkStateConnected();
}

void TuneInFixture::stop()
{
    m_thread.reset();
}

CMTuneInWorker *TuneInFixture::worker() const
{
    return static_cast<CMTuneInWorker *>(m_thread->object());
}

TuneInBrowseNode *TuneInFixture::browseNode() const
{
    TuneInBrowseNode *result = nullptr;
    m_thread->call([this, &result] {
        result = dynamic_cast<TuneInBrowseNode *>(worker()->nodes()->find(path("TuneIn:browse"_s)));
    });
    return result;
}

LogCapture &TuneInFixture::log()
{
    if (m_thread)
        m_thread->call([] {});
    return m_log;
}

void TuneInFixture::setNetwork(bool connected)
{
    set(VeskNetworkStateConnected(), connected);
    ASSERT_TRUE(spinUntil([&] { return worker()->networkStateConnected() == connected; }));
}

void TuneInFixture::expectRequests(const QList<QByteArray> &lines)
{
    EXPECT_EQ(server().requestLines(), lines);
    server().clearRequests();
}
