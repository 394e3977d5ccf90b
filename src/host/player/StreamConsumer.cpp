// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamConsumer.h"

StreamConsumer::~StreamConsumer() = default;

void StreamConsumer::look() { }

void StreamConsumer::takeFile(const StreamFile &) { }

void StreamConsumer::takeDuration(std::chrono::microseconds) { }

void StreamConsumer::placeAudio(const AudioPlace &) { }

void StreamConsumer::startAudio(const GoOn &goOn, const std::optional<AudioPlace> &place)
{
    if (m_begun && isUsable())
        finishAudio(goOn);
    beginAudio();
    if (place)
        placeAudio(*place);
    m_begun = true;
}

bool StreamConsumer::feedAudio(const char *data, std::size_t size, const GoOn &goOn)
{
    Taken taken = takeAudio(data, size);
    while (taken == Taken::None && goOn())
        taken = takeAudio(data, size);
    return taken == Taken::All;
}

void StreamConsumer::finishAudio(const GoOn &goOn)
{
    while (!endAudio() && goOn()) { }
    m_begun = false;
}
