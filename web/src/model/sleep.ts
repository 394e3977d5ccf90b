// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { isRecord } from "../rpc/Connection";
import { attempt } from "./attempt";
import { host } from "./host";
import { HostState } from "./HostState";

export const maxSleep = 1440;

/** When the sleep timer ends, by the clock of this device, in milliseconds since the epoch; null if it does not run. */
export interface Sleep {
    readonly until: number | null;
}

/** The host tells how many seconds are left, so that its clock and this one need not agree. */
export function readSleep(told: unknown, now = Date.now()): Sleep {
    const { ends, left } = isRecord(told) ? told : { ends: null, left: 0 };
    const isRunning = typeof ends === "string" && ends !== "" && typeof left === "number" && left > 0;
    return { until: isRunning ? now + left * 1000 : null };
}

const known = new HostState<Sleep>("sleep.state", "sleep.changed", readSleep);
/** Null with a host that has no sleep timer. */
export const sleep = known.value;

export const minutesLeft = (until: number, now = Date.now()): number => Math.max(0, Math.ceil((until - now) / 60_000));

export const startSleep = (minutes: number) => attempt(() => host.call("sleep.start", { minutes }));
export const stopSleep = () => attempt(() => host.call("sleep.stop"));
