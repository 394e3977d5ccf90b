// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { current, open, quietPath } from "./navigation";
import { leaveForHome } from "./services";

/** Milliseconds without a touch after which the quiet view dims. */
export const dimTime = 60_000;
/** The farthest that the view moves, in hundredths of the window's smaller side. */
export const driftLimit = 4;

/** Where the view stands in a minute: each minute elsewhere, so that no picture burns in, and the whole range in an hour. */
export function driftAt(minute: number): { x: number; y: number } {
    const turn = (2 * Math.PI * minute) / 60;
    // Two figures whose periods have no common divisor, so that the way does not close soon.
    return { x: driftLimit * Math.sin(7 * turn), y: driftLimit * Math.cos(11 * turn) };
}

export function openQuiet(): void {
    if (current.peek() !== quietPath)
        open(quietPath, t("Quiet view"));
}

export function leaveQuiet(): void {
    if (current.peek() === quietPath)
        leaveForHome();
}

/**
 * Keeps the screen on until the returned function is called. Browsers release it with a hidden tab, so it is asked for again
 * when the tab is back, and refuse it at will (low battery, no TLS), which \a told is told.
 */
export function keepScreenOn(told: (isOn: boolean) => void): () => void {
    let lock: WakeLockSentinel | null = null;
    let isOver = false;
    const request = async () => {
        if (document.visibilityState !== "visible" || isOver)
            return;
        try {
            if (lock && !lock.released)
                return;
            const granted = await navigator.wakeLock.request("screen");
            if (isOver)
                return void granted.release();
            lock = granted;
            told(true);
        } catch {
            told(false);
        }
    };
    const ask = () => void request();
    document.addEventListener("visibilitychange", ask);
    ask();
    return () => {
        isOver = true;
        document.removeEventListener("visibilitychange", ask);
        void lock?.release();
    };
}
