// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

class CMValuesWorker;
class SoundOutput;

/// The volume of the player: kept in the settings, applied to the sound output. Where the output
/// has a volume of its own, that one is used, and followed when something else changes it.
///
/// The volume is perceptual, as in the mixers of desktops: the amplitude is (volume / 100) cubed,
/// so that 79 halves it. Changes come at most once a second to the settings, whoever makes how
/// many. Main thread.
class PlayerVolume : public QObject {
    Q_OBJECT

public:
    static constexpr int Loudest = 100;

    /// Begins with what the settings say. Both must outlive it; \a values has
    /// playerVolumePath() and playerMutePath().
    PlayerVolume(
        std::shared_ptr<SoundOutput> sound, CMValuesWorker *values, QObject *parent = nullptr);
    ~PlayerVolume() override;

    /// From 0 to Loudest.
    int volume() const { return m_volume; }
    bool isMuted() const { return m_muted; }
    /// Brings \a volume within its bounds.
    void setVolume(int volume);
    void setMuted(bool muted);
    /// Fades from one factor to the other, beside the volume: 1 is the volume as it is, 0 silence.
    /// The factor is perceptual as the volume is, so that the steps sound even. It stays at \a to
    /// afterwards: fade(1, 1, 0ms) ends a fade. The time runs while nothing plays, too.
    void fade(double from, double to, std::chrono::milliseconds time);

    /// Writes what is not in the settings yet, at once.
    void keep();

Q_SIGNALS:
    /// volume() or isMuted() is another one.
    void changed();

private:
    void change(int volume, bool muted);
    void take(int volume, bool muted);
    void write(const CMPath &path, const VeskValue &value);
    void follow(const CMPath &path);

    const std::shared_ptr<SoundOutput> m_sound;
    CMValuesWorker *const m_values;
    QTimer m_keepLater;
    int m_volume = Loudest;
    bool m_muted = false;
    bool m_isKept = true; ///< the settings have it, or were asked to
    int m_writing = 0; ///< requests that wait for the disk
};

/// The settings of the sound: the volume from 0 to 100, whether it is mute, whether a play goes on
/// until the next one has sound, and whether plays are brought to the same loudness.
const CMPath &playerVolumePath();
const CMPath &playerMutePath();
const CMPath &playerSeamlessPath();
const CMPath &playerEvennessPath();
