// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { alarms, dismissMissed, ringing, snoozeAlarm, snoozeTime, stopAlarm } from "../model/alarms";
import { Icon } from "./icons";
import { dayAndTime, timeOfDay } from "./time";

/** The alarm that rings, with all that can be done about it. It takes the focus only where nobody can be busy with anything else. */
export function Ringing({ isFocused = false }: { isFocused?: boolean }) {
    const alarm = ringing.value;
    const snooze = useRef<HTMLButtonElement>(null);
    const id = alarm?.id;
    useEffect(() => {
        if (id !== undefined && isFocused)
            snooze.current?.focus();
    }, [id, isFocused]);
    return (
        <div role="alert">
            {alarm && (
                <div class="ringing">
                    <p>
                        <Icon shape="alarm" />
                        <span class="texts">
                            <strong>{alarm.time === "" ? t("Alarm") : t("Alarm: %1", timeOfDay(new Date(`2024-01-01T${alarm.time}`)))}</strong>
                            {alarm.title !== "" && <span dir="auto">{alarm.title}</span>}
                        </span>
                    </p>
                    <p class="buttons">
                        <button type="button" class="filled" ref={snooze} onClick={() => void snoozeAlarm()}>
                            {tn("Snooze for %n minute", "Snooze for %n minutes", snoozeTime)}
                        </button>
                        <button type="button" onClick={() => void stopAlarm()}>{t("Stop the alarm")}</button>
                    </p>
                </div>
            )}
        </div>
    );
}

/** Tells of alarms that did not go off, until somebody has read it. */
export function Missed() {
    const missed = alarms.value?.missed ?? [];
    const times = missed.map(({ at }) => (at ? dayAndTime(at) : "")).filter((each) => each !== "");
    return (
        <div class="missed" role="status">
            {missed.length > 0 && (
                <p>
                    <Icon shape="alarm" />
                    <span>
                        {tn("An alarm was missed while this radio was off.", "%n alarms were missed while this radio was off.", missed.length)}
                        {times.length > 0 && ` ${times.join(", ")}`}
                    </span>
                    <button type="button" onClick={() => void dismissMissed()}>{t("OK")}</button>
                </p>
            )}
        </div>
    );
}
