// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>

#include <chrono>
#include <functional>

class PlayLogic;

/// The player's volume as alarms and the sleep timer use it; see PlayerVolume, which is behind it.
/// Main thread.
struct VolumeControl {
    std::function<int()> volume;
    std::function<bool()> isMuted;
    std::function<void(int)> setVolume;
    std::function<void(bool)> setMuted;
};

/// The fade of alarms and of the sleep timer, of which there is one at a time: a factor beside the
/// volume. Main thread.
class PlayerFade : public QObject {
    Q_OBJECT

public:
    using Fade = std::function<void(double from, double to, std::chrono::milliseconds time)>;

    /// \a logic must outlive it.
    PlayerFade(const PlayLogic *logic, Fade fade, QObject *parent = nullptr);

    /// Replaces the present one. It stays at \a to.
    void start(double from, double to, std::chrono::milliseconds time);
    void end();
    /// When the player, which is being stopped or paused, sounds again; so that its last moments do
    /// not become louder.
    void endLater() { m_isToEnd = true; }

private:
    void look();

    const PlayLogic *const m_logic;
    const Fade m_fade;
    bool m_isToEnd = false;
};
