// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { computed, signal } from "@preact/signals";

import { isRecord } from "../rpc/Connection";
import { attempt } from "./attempt";
import { host } from "./host";
import { HostState } from "./HostState";
import type { Path } from "./path";
import { itemParams, type Item } from "./presets";
import { text } from "./rows";

/** An alarm. Title and icon are those of what it plays, and come from outside. */
export interface Alarm {
    readonly id: string;
    /** Hours and minutes of the host's clock, "07:30". */
    readonly time: string;
    /** 1 for Monday to 7 for Sunday; none for an alarm that goes off once. */
    readonly days: readonly number[];
    readonly isEnabled: boolean;
    /** 0 to 100; null for the volume that is set. */
    readonly volume: number | null;
    /** Seconds in which it becomes as loud as that. */
    readonly fade: number;
    readonly title: string;
    readonly icon: string;
    readonly path: Path;
    /** When it goes off next, as the host's clock will show it; null if it does not. */
    readonly next: Date | null;
}

export interface Alarms {
    readonly all: readonly Alarm[];
    /** Those that did not go off when they should have. */
    readonly missed: readonly { readonly id: string; readonly at: Date | null }[];
    /** The id of the one that rings; empty for none. */
    readonly ringing: string;
}

/** What the clock of the host shows at a time that it told, as the time of this device's clock that looks the same. */
export function wallTime(told: unknown): Date | null {
    const date = new Date(text(told).replace(/(Z|[+-]\d\d:?\d\d)$/, ""));
    return Number.isNaN(date.getTime()) ? null : date;
}

const isTime = (value: string) => /^([01]\d|2[0-3]):[0-5]\d$/.test(value);

function readAlarm(told: Record<string, unknown>): Alarm {
    const days: unknown[] = Array.isArray(told.days) ? told.days : [];
    const isDay = (day: unknown): day is number => typeof day === "number" && Number.isInteger(day) && day >= 1 && day <= 7;
    return {
        id: text(told.id),
        time: isTime(text(told.time)) ? text(told.time) : "00:00",
        days: [...new Set(days.filter(isDay))].sort(),
        isEnabled: told.enabled === true,
        volume: typeof told.volume === "number" ? told.volume : null,
        fade: typeof told.fade === "number" ? told.fade : 0,
        title: text(told.title),
        icon: text(told.icon),
        path: text(told.path),
        next: wallTime(told.next),
    };
}

const listIn = (told: unknown): Record<string, unknown>[] => (Array.isArray(told) ? (told as unknown[]) : []).filter(isRecord);

export function readAlarms(told: unknown): Alarms {
    const { alarms, missed, ringing } = isRecord(told) ? told : { alarms: [], missed: [], ringing: "" };
    return {
        all: listIn(alarms).map(readAlarm).filter(({ id }) => id !== "").sort((a, b) => a.time.localeCompare(b.time)),
        missed: listIn(missed).map(({ id, at }) => ({ id: text(id), at: wallTime(at) })),
        ringing: text(ringing),
    };
}

const known = new HostState("alarms.list", "alarms.changed", readAlarms);
/** Null with a host that has none. */
export const alarms = known.value;

/** The alarm that goes off next. */
export const nextAlarm = computed<Alarm | null>(() => {
    const coming = (alarms.value?.all ?? []).filter(({ next }) => next !== null);
    return coming.sort((a, b) => a.next!.getTime() - b.next!.getTime())[0] ?? null;
});

/** The alarm that rings; one that is not in the list has no name. */
export const ringing = computed(() => {
    const { ringing: id = "", all = [] } = alarms.value ?? {};
    return id === "" ? null : all.find((alarm) => alarm.id === id) ?? { id, time: "", title: "" };
});

/** What an alarm plays: what it had or what plays now, a preset, or a row. */
export type Source = { readonly is: "kept" } | { readonly is: "preset"; readonly number: number } | { readonly is: "row"; readonly item: Item };

export interface Wanted {
    /** Empty for a new one. */
    readonly id: string;
    readonly time: string;
    readonly days: readonly number[];
    readonly isEnabled: boolean;
    readonly volume: number | null;
    readonly fade: number;
    readonly source: Source;
}

/** The parameters of alarms.set. */
export function wantedParams(wanted: Wanted): Record<string, unknown> {
    const { id, time, days, isEnabled, volume, fade, source } = wanted;
    return {
        ...(id === "" ? {} : { id }),
        time, days, enabled: isEnabled, volume, fade,
        ...(source.is === "preset" ? { preset: source.number } : source.is === "row" ? itemParams(source.item) : {}),
    };
}

/** Rejects with an RpcError. */
export async function setAlarm(wanted: Wanted): Promise<void> {
    await host.call("alarms.set", wantedParams(wanted));
}

export function wantedOf(alarm: Alarm): Wanted {
    const { id, time, days, isEnabled, volume, fade } = alarm;
    return { id, time, days, isEnabled, volume, fade, source: { is: "kept" } };
}

export const enableAlarm = (alarm: Alarm, isEnabled: boolean) => attempt(() => setAlarm({ ...wantedOf(alarm), isEnabled }));
export const removeAlarm = ({ id }: Alarm) => attempt(() => host.call("alarms.remove", { id }));
export const stopAlarm = () => attempt(() => host.call("alarms.stop"));
export const snoozeTime = 9;
export const snoozeAlarm = () => attempt(() => host.call("alarms.snooze", { minutes: snoozeTime }));
export const dismissMissed = () => attempt(() => host.call("alarms.dismissMissed"));

/** The alarm that is being made: with what it is to play, null for what plays. */
export const draft = signal<{ readonly item: Item | null } | null>(null);
