// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useState } from "preact/hooks";

import { language, t } from "../i18n/i18n";

const minuteTime = 60_000;

/** The time, anew when each minute begins. */
export function useMinute(): Date {
    const [now, setNow] = useState(() => new Date());
    useEffect(() => {
        let timer: ReturnType<typeof setTimeout>;
        const next = () => {
            timer = setTimeout(() => {
                setNow(new Date());
                next();
            }, minuteTime - (Date.now() % minuteTime));
        };
        next();
        return () => clearTimeout(timer);
    }, []);
    return now;
}

/** Draws the component again every few seconds, so that minutes that are left are right to that. */
export function useMinutes(): void {
    const [, tick] = useState(0);
    useEffect(() => {
        const timer = setInterval(() => tick((count) => count + 1), 5000);
        return () => clearInterval(timer);
    }, []);
}

export function timeOfDay(date: Date): string {
    return new Intl.DateTimeFormat(language(), { hour: "numeric", minute: "2-digit" }).format(date);
}

/** A day of the week, 1 for Monday to 7. */
export function dayName(day: number, weekday: "long" | "short"): string {
    return new Intl.DateTimeFormat(language(), { weekday }).format(new Date(2024, 0, day)); // the first of 2024 was a Monday
}

export function dayAndTime(date: Date): string {
    return new Intl.DateTimeFormat(language(), { weekday: "long", hour: "numeric", minute: "2-digit" }).format(date);
}

export function daysText(days: readonly number[]): string {
    const all = days.join("");
    if (all === "")
        return t("Once");
    if (all === "1234567")
        return t("Every day");
    if (all === "12345")
        return t("Monday to Friday");
    if (all === "67")
        return t("Saturday and Sunday");
    return days.map((day) => dayName(day, days.length > 2 ? "short" : "long")).join(", ");
}
