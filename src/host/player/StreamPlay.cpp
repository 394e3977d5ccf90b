// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamPlay.h"

#include "api/core/ThreadCheck.h"
#include "host/player/AlarmSound.h"
#include "host/player/AudioOutput.h"
#include "host/player/DecoderProcess.h"
#include "host/player/PlaceFinder.h"
#include "host/player/SpareDecoder.h"
#include "host/player/StreamSupply.h"

StreamPlay::StreamPlay(StreamSource source, std::shared_ptr<SoundOutput> sound,
    std::shared_ptr<SpareDecoder> spare, const StreamReader::Times &times)
    : m_source(std::move(source))
    , m_sound(std::move(sound))
    , m_spare(std::move(spare))
    , m_times(times)
{
}

StreamPlay::~StreamPlay()
{
    m_finder.reset();
    m_clock->setOutput(nullptr);
    if (!m_output)
        return;
    // Closing the output must not signal to a half-destroyed play.
    disconnect(m_output.get(), nullptr, this, nullptr);
    cutSupply();
}

void StreamPlay::start()
{
    VESK_ASSERT_OWN_THREAD();
    m_output = std::make_unique<AudioOutput>(m_sound);
    m_clock->setOutput(m_output.get());
    m_holdEnd.setSingleShot(true);
    connect(&m_holdEnd, &QTimer::timeout, this, &StreamPlay::leave);
    connect(m_output.get(), &AudioOutput::audibleChanged, this,
        [this](bool audible) { Q_EMIT audibleChanged(audible, m_step); });
    connect(m_output.get(), &AudioOutput::audibleChanged, this, &StreamPlay::showProblem);
    connect(m_output.get(), &AudioOutput::drained, this, &StreamPlay::ended);
    connect(m_output.get(), &AudioOutput::failed, this, &StreamPlay::outputFailed);
    supply();
}

void StreamPlay::supply()
{
    if (AlarmSound::isAt(m_source.url)) {
        m_alarmSound = std::make_unique<AlarmSound>(*m_output);
        return;
    }
    m_supply = std::make_unique<StreamSupply>(m_source, *m_output, *m_clock, m_times);
    connect(m_supply.get(), &StreamSupply::titleChanged, this, &StreamPlay::titleChanged);
    connect(m_supply.get(), &StreamSupply::bitRateChanged, this, &StreamPlay::bitRateChanged);
    connect(m_supply.get(), &StreamSupply::ended, m_output.get(), &AudioOutput::finish);
    connect(m_supply.get(), &StreamSupply::gaveUp, this, &StreamPlay::gaveUp);
    connect(m_supply.get(), &StreamSupply::fellBehind, this, &StreamPlay::rejoin);
    connect(m_supply.get(), &StreamSupply::problemChanged, this, [this](const TrString &problem) {
        m_problem = problem;
        showProblem();
    });
    watchPlace();
    m_supply->start(m_spare->take());
}

void StreamPlay::cutSupply()
{
    if (!m_supply && !m_alarmSound)
        return;
    // The decoder's thread may be waiting in AudioOutput::write(); let it return.
    m_output->refuse(true);
    m_supply.reset();
    m_alarmSound.reset();
    m_output->refuse(false);
    m_problem = {};
    showProblem();
}

/// After a sleep: drops the buffered audio and reconnects to the station.
void StreamPlay::rejoin()
{
    if (m_heldSince)
        return leave();
    setBehind({});
    cutSupply();
    m_output->flush();
    supply();
}

/// A fault that buffered audio bridges is not shown.
void StreamPlay::showProblem()
{
    const TrString problem = m_output->isAudible() ? TrString() : m_problem;
    if (problem == m_shown)
        return;
    m_shown = problem;
    Q_EMIT problemChanged(problem);
}

void StreamPlay::pause(int step, std::chrono::milliseconds keep)
{
    VESK_ASSERT_OWN_THREAD();
    m_step = step;
    m_isPaused = true;
    if (!m_output)
        return;
    m_output->pause();
    if (m_source.live)
        hold(keep);
}

void StreamPlay::resume(int step)
{
    VESK_ASSERT_OWN_THREAD();
    m_step = step;
    m_isPaused = false;
    if (!m_output)
        return;
    release();
    if (!m_supply && !m_alarmSound)
        supply();
    m_output->resume();
}

void StreamPlay::tryNow()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_supply)
        m_supply->tryNow();
}
