// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { openSheet, sheets } from "../model/menu";
import { announce } from "../model/notices";
import { NumberKeys } from "../model/NumberKeys";
import { player, PlayState, toggle } from "../model/player";
import { seekBy, seekStep } from "../model/position";
import { keepPlaying, presets, pressPreset } from "../model/presets";
import { openQuiet } from "../model/quiet";
import { changeVolume, toggleMute, volume, volumeStep } from "../model/volume";
import { volumeText } from "./VolumeControl";

/** Elements that handle keys themselves. */
const fields = "input, textarea, select";
/** Elements that the space bar operates. */
const operated = "button, a[href], summary, " + fields;

/** Elements that letters and digits are written into, or that they choose in. */
const written = "input:not([type=range], [type=checkbox]), textarea, select";

const numbers = new NumberKeys(
    // Saving may mean a number that is free.
    (isShift) => isShift || [...(presets.peek()?.keys() ?? [])].some((number) => number >= 10),
    (number, isShift) => (isShift ? void keepPlaying(number) : pressPreset(number)));

/** The digit of a key by its place, because what Shift makes of it depends on the keyboard; null for other keys. */
function digitOf(event: KeyboardEvent): number | null {
    const found = /^(?:Digit|Numpad)(\d)$/.exec(event.code);
    // Without Num Lock the keys at the right are arrows.
    return found && !(event.code.startsWith("Numpad") && !/^\d$/.test(event.key)) ? Number(found[1]) : null;
}

/** Keys of the volume, the place and the presets, which are the same in the quiet view. */
const radioKeys = new Map<string, () => void>([
    ["+", () => sayVolume(volumeStep)],
    ["=", () => sayVolume(volumeStep)], // that is + without Shift
    ["-", () => sayVolume(-volumeStep)],
    ["m", () => void toggleMute()],
    ["j", () => seekBy(-seekStep)],
    ["l", () => seekBy(seekStep)],
]);

function sayVolume(change: number): void {
    changeVolume(change);
    const now = volume.peek();
    if (now !== null)
        announce({ kind: "told", text: t("Volume: %1", volumeText(now, false)) });
}

export function isForRadio(event: KeyboardEvent): boolean {
    return radioKeys.has(event.key) || digitOf(event) !== null;
}

/** Whether the key was one of those; they do nothing where something is written. */
function runRadioKey(event: KeyboardEvent, target: Element): boolean {
    if (target.closest(written))
        return false;
    const digit = digitOf(event);
    if (digit !== null && !target.closest("dialog")) {
        if (!event.repeat)
            numbers.press(digit, event.shiftKey);
        return true;
    }
    const run = radioKeys.get(event.key);
    const isHeld = event.repeat && event.key === "m";
    if (run && !isHeld)
        run();
    return run !== undefined;
}

function key(event: KeyboardEvent): void {
    if (event.ctrlKey || event.metaKey || event.altKey || event.defaultPrevented)
        return;
    const target = event.target as Element;
    if (event.key === "/" && !target.closest(`${fields}, dialog`)) {
        event.preventDefault();
        document.querySelector<HTMLInputElement>("header input[type=search]")?.select();
    } else if (event.key === "?" && !target.closest(fields)) {
        event.preventDefault();
        if (sheets.peek().every((sheet) => sheet.kind !== "keys"))
            openSheet({ kind: "keys" });
    } else if (event.key === "q" && !target.closest(`${fields}, dialog`)) {
        event.preventDefault();
        openQuiet();
    } else if (runRadioKey(event, target)) {
        event.preventDefault();
    } else if (event.key === " " && (isPlayedRow(target) || !target.closest(operated))) {
        const { state } = player.peek();
        if (state !== PlayState.playing && state !== PlayState.paused)
            return;
        event.preventDefault();
        if (!event.repeat)
            toggle();
    }
}

/** Whether the target is the row that plays, where the space bar should pause instead of playing it again. */
function isPlayedRow(target: Element): boolean {
    return target.matches("button.audio[aria-current=true]");
}

export function listenToKeys(): () => void {
    document.addEventListener("keydown", key);
    return () => document.removeEventListener("keydown", key);
}
