// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamFeed.h"

#include <utility>

namespace {

constexpr std::chrono::milliseconds GoodAudio {1000};

} // namespace

StreamFeed::StreamFeed(StreamConsumer &consumer, GoOn goOn)
    : m_consumer(consumer)
    , m_goOn(std::move(goOn))
{
}

void StreamFeed::open()
{
    m_started = false;
    m_brought = false;
    m_good = false;
    if (!m_consumer.isUsable())
        m_consumer.forgetAudio();
}

void StreamFeed::resume()
{
    m_brought = false;
    m_good = false;
    m_before = m_consumer.decoded();
}

void StreamFeed::start(const std::optional<AudioPlace> &place)
{
    // Keeps the result of the part that ends here: a connection is good if one part of it was.
    isGood();
    m_consumer.startAudio(m_goOn, place);
    m_started = true;
    m_before = {};
}

bool StreamFeed::take(const char *data, std::size_t size)
{
    m_brought = true;
    return m_consumer.feedAudio(data, size, m_goOn);
}

void StreamFeed::forget()
{
    m_consumer.forgetAudio();
    m_started = false;
}

void StreamFeed::finish()
{
    m_consumer.finishAudio(m_goOn);
}

bool StreamFeed::isGood()
{
    m_good = m_good || (hasBrought() && m_consumer.decoded() - m_before >= GoodAudio);
    return m_good;
}
