// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { computed } from "@preact/signals";

import { isRecord } from "../rpc/Connection";
import { attempt } from "./attempt";
import { host } from "./host";
import { Latest } from "./Latest";
import { amend, player } from "./player";

/** What a key or a notch of a wheel changes. */
export const volumeStep = 5;

async function send(params: Record<string, unknown>): Promise<void> {
    await attempt(async () => {
        const told = await host.call("player.volume", params);
        if (!isRecord(told))
            return;
        if (typeof told.volume === "number")
            amend({ volume: told.volume });
        if (typeof told.mute === "boolean")
            amend({ isMuted: told.mute });
    });
}

const latest = new Latest<number>((volume) => send({ volume, mute: false }));

/** 0 to 100, what the reader wants before what the host has; null with a host that has none. */
export const volume = computed(() => (
    player.value.volume === null ? null : latest.wanted.value ?? Math.round(player.value.volume)));

/** Whoever chooses a volume wants to hear it: it ends the silence of mute. */
export function setVolume(wanted: number): void {
    if (volume.peek() !== null)
        latest.set(Math.max(0, Math.min(100, Math.round(wanted))));
}

export function changeVolume(change: number): void {
    setVolume((volume.peek() ?? 0) + change);
}

export async function toggleMute(): Promise<void> {
    if (volume.peek() !== null)
        await send({ mute: !player.peek().isMuted });
}
