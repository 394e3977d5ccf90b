// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { computed } from "@preact/signals";

import { t } from "../i18n/i18n";
import { isRecord } from "../rpc/Connection";
import { attempt } from "./attempt";
import { host } from "./host";
import { HostState } from "./HostState";
import { announce } from "./notices";
import type { Path } from "./path";
import { isPlayed, player, playPreset, PlayState, type Player } from "./player";
import { text } from "./rows";

/** Something to play that the host keeps under a number. Title and icon come from outside. */
export interface Preset {
    readonly number: number;
    readonly title: string;
    readonly icon: string;
    readonly path: Path;
}

/** A row that can be kept: where it is, and what it is called. */
export interface Item {
    readonly screen: Path;
    readonly row: number;
    readonly path: Path;
    readonly title: string;
}

/** The parameters by which the host finds the row; for none of them it takes what plays. */
export function itemParams(item: Item | null): Record<string, unknown> {
    if (item === null)
        return {};
    const { screen, row, path } = item;
    return path === "" ? { screen, row } : { screen, row, path };
}

export const presetCount = 12;
export const presetNumbers: readonly number[] = Array.from({ length: presetCount }, (_, index) => index + 1);

export function readPresets(told: unknown): ReadonlyMap<number, Preset> {
    const all: unknown[] = isRecord(told) && Array.isArray(told.presets) ? told.presets : [];
    const read = new Map<number, Preset>();
    for (const each of all.filter(isRecord)) {
        const { number } = each;
        if (typeof number === "number" && presetNumbers.includes(number))
            read.set(number, { number, title: text(each.title), icon: text(each.icon), path: text(each.path) });
    }
    return new Map([...read].sort(([a], [b]) => a - b));
}

const known = new HostState("presets.list", "presets.changed", readPresets);
/** The taken ones, by number and in its order; null with a host that has none. */
export const presets = known.value;
/** Whether the host keeps a library: presets, recents and what has a star. */
export const hasLibrary = computed(() => presets.value !== null);

export const isPresetPlayed = (now: Player, preset: Preset): boolean => now.state !== PlayState.stopped && isPlayed(now, preset);

/** The preset that is \a step after the one that plays; after none of them the first one, or the last. */
export function neighbour(all: ReadonlyMap<number, Preset>, now: Player, step: 1 | -1): Preset | null {
    const list = [...all.values()];
    const at = list.findIndex((preset) => isPresetPlayed(now, preset));
    const next = at < 0 ? (step > 0 ? 0 : list.length - 1) : (at + step + list.length) % list.length;
    return list[next] ?? null;
}

export function pressPreset(number: number): void {
    const preset = presets.peek()?.get(number);
    if (preset)
        void playPreset(number, preset.path);
    else if (presets.peek() !== null)
        announce({ kind: "told", text: t("Preset %1 is empty. Shift and the number save what plays.", number) });
}

/** Plays the next preset, or with -1 the previous one. */
export function stepPreset(step: 1 | -1): void {
    const next = neighbour(presets.peek() ?? new Map(), player.peek(), step);
    if (next)
        void playPreset(next.number, next.path);
}

/** Keeps a row, or what plays, under a number, whatever was there. Resolves to whether it is. */
export async function savePreset(number: number, item: Item | null): Promise<boolean> {
    const before = presets.peek()?.get(number);
    const title = item?.title ?? player.peek().title;
    const isSaved = await attempt(() => host.call("presets.save", { number, ...itemParams(item) }));
    if (isSaved) {
        announce({
            kind: "told",
            text: t("Preset %1 is %2 now.", number, title || t("Untitled")),
            ...(before ? {} : { undo: () => void clearPreset(number) }),
        });
    }
    return isSaved;
}

/** Keeps what plays under a number; one that is taken only after a question. */
export async function keepPlaying(number: number): Promise<void> {
    const now = player.peek();
    if (presets.peek() === null)
        return;
    if (now.state === PlayState.stopped)
        return announce({ kind: "failed", text: t("Nothing plays that could be saved.") });
    const before = presets.peek()?.get(number);
    if (!before)
        return void (await savePreset(number, null));
    if (isPresetPlayed(now, before))
        return announce({ kind: "told", text: t("Preset %1 is %2 now.", number, before.title || t("Untitled")) });
    announce({
        kind: "asked",
        text: t("Preset %1 is %2. Replace it by %3?", number, before.title || t("Untitled"), now.title || t("Untitled")),
        action: { label: t("Replace it"), run: () => void savePreset(number, null) },
    });
}

export async function clearPreset(number: number): Promise<void> {
    await attempt(() => host.call("presets.clear", { number }));
}
