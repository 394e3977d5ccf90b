// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "base/Result.h"
#include "host/alarm/AlarmBook.h"
#include "host/rpc/JsonRpcDispatcher.h"

#include <QObject>

#include <functional>
#include <optional>

class AddressGate;
class AlarmClock;
class Alarms;
class PlayLogic;

/// The methods of alarms: alarms.list, .set, .remove, .stop, .snooze and .dismissMissed; and the
/// notification alarms.changed. docs/rpc.md describes them for clients. Main thread; what it is
/// made with outlives it.
class AlarmMethods : public QObject {
    Q_OBJECT

public:
    /// Initial values of what alarms.set and alarms.snooze leave out.
    static constexpr int DefaultFade = 30;
    static constexpr int DefaultSnooze = 9;
    static constexpr int LongestSnooze = 120;

    /// Answers once, on the main thread, with what is kept under the number of a preset, or with
    /// the reason why there is nothing, in words.
    using PresetAnswer = std::function<void(const Result<VeskRoles, QString> &)>;
    using PresetRow = std::function<void(int number, const PresetAnswer &answer)>;
    using IconSeen = std::function<void(const QString &icon)>;

    AlarmMethods(JsonRpcDispatcher *dispatcher, Alarms *alarms, AlarmClock *clock, PlayLogic *logic,
        QObject *parent = nullptr);
    ~AlarmMethods() override;

    /// Which screens clients may take rows from; without one, all.
    void setGate(AddressGate *gate) { m_gate = gate; }
    /// Without it there are no presets.
    void setPresets(PresetRow row) { m_presetRow = std::move(row); }
    /// Called with the icon of each alarm that is sent to clients.
    void setIconSeen(IconSeen seen) { m_iconSeen = std::move(seen); }

Q_SIGNALS:
    /// alarms.changed, for every client with a WebSocket.
    void notification(const QString &method, const QVariant &params);

private:
    using Method = void (AlarmMethods::*)(const JsonRpcCallPtr &);

    void add(JsonRpcDispatcher *dispatcher, const char *name, Method method);
    void list(const JsonRpcCallPtr &call);
    void set(const JsonRpcCallPtr &call);
    void setRow(const JsonRpcCallPtr &call, const Alarm &alarm);
    void setPreset(const JsonRpcCallPtr &call, const Alarm &alarm);
    void setFromScreen(const JsonRpcCallPtr &call, const Alarm &alarm);
    void setAs(const JsonRpcCallPtr &call, const Alarm &alarm);
    void remove(const JsonRpcCallPtr &call);
    void stop(const JsonRpcCallPtr &call);
    void snooze(const JsonRpcCallPtr &call);
    void dismissMissed(const JsonRpcCallPtr &call);
    QVariantHash shown(const Alarm &alarm) const;
    QVariant shown(std::optional<Moment> moment) const;

    Alarms *const m_alarms;
    AlarmClock *const m_clock;
    PlayLogic *const m_logic;
    AddressGate *m_gate = nullptr;
    PresetRow m_presetRow;
    IconSeen m_iconSeen;
};
