// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useState } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { maxSleep, minutesLeft, sleep, startSleep, stopSleep } from "../model/sleep";
import { timeOfDay, useMinutes } from "./time";

const offered = [15, 30, 45, 60, 90];

/** Starts the sleep timer, changes it and stops it. */
export function SleepSheet() {
    useMinutes();
    const [minutes, setMinutes] = useState("20");
    const until = sleep.value?.until ?? null;
    return (
        <div class="sheet-body">
            <p role="status">
                {until === null
                    ? t("After that time the sound fades out and stops.")
                    : <><strong>{tn("%n minute left", "%n minutes left", minutesLeft(until))}</strong> · {t("until %1", timeOfDay(new Date(until)))}</>}
            </p>
            <p class="buttons">
                {offered.map((each) => (
                    <button key={each} type="button" data-main onClick={() => void startSleep(each)}>{t("%1 min", each)}</button>
                ))}
            </p>
            <form
                class="inline-form"
                onSubmit={(event) => {
                    event.preventDefault();
                    void startSleep(Number(minutes));
                }}
            >
                <label>
                    {t("Minutes")}
                    <input
                        type="number"
                        class="text"
                        inputmode="numeric"
                        required
                        min={1}
                        max={maxSleep}
                        step={1}
                        value={minutes}
                        onInput={(event) => setMinutes(event.currentTarget.value)}
                    />
                </label>
                <span class="buttons">
                    <button type="submit" class="filled">{t("Start")}</button>
                    {until !== null && <button type="button" onClick={() => void stopSleep()}>{t("Stop the timer")}</button>}
                </span>
            </form>
        </div>
    );
}
