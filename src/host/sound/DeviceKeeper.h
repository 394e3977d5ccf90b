// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/sound/SoundMixer.h"
#include "host/sound/SoundOutput.h"

#include <QObject>
#include <QTimer>

#include <memory>

class SoundDevice;

/// Opens, starts, halts and releases the device of a SoundOutput, as its voices need it. Lives on
/// the sound thread, which it may block.
class DeviceKeeper : public QObject {
    Q_OBJECT

public:
    /// The longest wait for another output to open.
    static constexpr std::chrono::milliseconds OpenTime {10000};

    DeviceKeeper(
        std::shared_ptr<SoundMixer> mixer, AudioOutputSpec spec, SoundOutput::MakeSink makeSink);
    ~DeviceKeeper() override;

    /// A voice has come: the device is opened while it has no audio yet.
    void prepare(const SoundMixer::Voice &voice);
    /// A voice that is wanted begins.
    void begin(const SoundMixer::Voice &voice);
    /// A voice was removed; its file is complete when this returns.
    void leave(const SoundMixer::Voice &voice);
    /// Halts the device when it has played everything; releases it when it is not needed.
    void settle();
    /// Looks after a voice that has little audio left.
    void watchSupply();
    void setVolume(int volume, bool muted);
    void setOutput(const AudioOutputSpec &spec, const SoundOutput::Chosen &done);
    void release();

Q_SIGNALS:
    void volumeFollowed(int volume, bool muted);
    void outputChanged(const AudioOutputSpec &spec);
    void failed(const TrString &problem);
    void healthChanged(const TrString &problem);

private:
    class Mailbox;
    struct Opening;

    Result<std::shared_ptr<SoundDevice>, TrString> make(const AudioOutputSpec &spec, int number);
    void open();
    void use(std::shared_ptr<SoundDevice> device);
    void closeDevice();
    void onFailed(int number, const TrString &problem);
    void onOpened(const std::shared_ptr<Opening> &opening);
    void give(const std::shared_ptr<Opening> &opening, const Result<void, TrString> &result);
    void applyVolume();
    void followVolume();

    const std::shared_ptr<SoundMixer> m_mixer;
    const SoundOutput::MakeSink m_makeSink;
    const std::shared_ptr<Mailbox> m_mailbox;
    AudioOutputSpec m_spec;
    std::shared_ptr<SoundDevice> m_device;
    int m_deviceNumber = 0; ///< of m_device, to drop what earlier ones have to say
    int m_lastNumber = 0;
    SoundMixer::Voice m_owner; ///< whose file m_device is
    std::shared_ptr<Opening> m_opening; ///< of the latest setOutput(), while it lasts
    QTimer m_settleLater;
    QTimer m_releaseLater;
    QTimer m_lookLater;
    QTimer m_followLater;
    int m_volume = 100;
    bool m_muted = false;
};
