// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/sound/SoundOutput.h"

#include <QString>

#include <atomic>
#include <memory>
#include <vector>

/// A sound device for tests: one file that goes on over plays, switches and pauses, with the
/// samples as they come, 32-bit, in whatever format.
class TestSink {
public:
    explicit TestSink(const QString &file);

    /// The files are that of the spec if it has one, else the given one. Keeps what it counts
    /// alive.
    SoundOutput::MakeSink maker() const;
    /// How many sinks there are that were made and not destroyed.
    int open() const { return *m_open; }
    int made() const { return *m_made; }
    /// The samples of all channels.
    std::vector<float> samples() const;
    /// Those of the first of two channels.
    std::vector<float> left() const;

private:
    const QString m_file;
    const std::shared_ptr<std::atomic<int>> m_open = std::make_shared<std::atomic<int>>(0);
    const std::shared_ptr<std::atomic<int>> m_made = std::make_shared<std::atomic<int>>(0);
};

std::vector<float> rawSamples(const QString &file);
/// The largest difference between two samples that follow each other, silence before the first
/// one included.
float largestStep(const std::vector<float> &samples);
