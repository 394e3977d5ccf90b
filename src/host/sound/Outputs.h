// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/values/CMPath.h"
#include "base/Result.h"
#include "host/sound/OutputDevices.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class CMValuesWorker;
class SoundOutput;

/// Of the text that says where sound goes.
const CMPath &playerOutputPath();

/// One entry of the list of outputs.
struct ListedOutput {
    AudioOutputSpec spec;
    TrString name;
    bool isCurrent = false;
    bool isAvailable = true;
};

/// Where sound can go, where it goes, and what is wrong there. Main thread, which waits for no
/// sound system: they are asked on a thread of its own, which is left behind if one hangs.
class Outputs : public QObject {
    Q_OBJECT

public:
    /// The longest wait for the sound systems; then the devices that were known before are listed.
    static constexpr std::chrono::milliseconds AskTime {3000};
    /// How often a device that has gone is looked for.
    static constexpr std::chrono::milliseconds LookTime {2000};

    using Probe = std::function<QVector<OutputDevice>()>;
    using Listed = std::function<void(const QVector<ListedOutput> &)>;
    using Chosen = std::function<void(const Result<void, TrString> &)>;

    /// \a given is what the host was started with, if anything: it is always listed, and wins over
    /// the setting at first. \a values has playerOutputPath().
    Outputs(std::shared_ptr<SoundOutput> sound, CMValuesWorker *values,
        const std::optional<AudioOutputSpec> &given, Probe probe = outputDevices,
        QObject *parent = nullptr);
    ~Outputs() override;

    /// What is in use, and in words what is wrong with it; empty: nothing.
    AudioOutputSpec current() const;
    const TrString &problem() const { return m_problem; }

    /// Calls \a listed within AskTime.
    void list(Listed listed);
    /// Calls \a chosen once the sound goes there and the setting is changed. Refused is what is
    /// neither listed nor may come from a client, and a device that is not there.
    void choose(const QString &output, Chosen chosen);

Q_SIGNALS:
    /// The list, what is in use, or its problem is another one.
    void changed();
    /// A device that had failed is there again.
    void deviceIsBack();

private:
    struct Mailbox;

    void ask();
    void answer();
    void take(const QVector<OutputDevice> &devices);
    void use(const AudioOutputSpec &spec, Chosen chosen);
    void keep(const AudioOutputSpec &spec);
    void follow(const CMPath &path);
    void onFailed(const TrString &problem);
    QVector<ListedOutput> listed() const;
    bool isThere(const AudioOutputSpec &spec) const;

    const std::shared_ptr<SoundOutput> m_sound;
    CMValuesWorker *const m_values;
    const std::optional<AudioOutputSpec> m_given;
    const Probe m_probe;
    const std::shared_ptr<Mailbox> m_mailbox;
    bool m_isAsking = false; ///< a thread asks
    QVector<OutputDevice> m_devices; ///< that were found last
    std::vector<Listed> m_waiting;
    QTimer m_giveUp;
    QTimer m_look;
    TrString m_problem;
    bool m_isLost = false; ///< the device has failed, and is looked for
    bool m_isWriting = false; ///< the setting is changed by this object
};
