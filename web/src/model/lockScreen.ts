// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { effect, signal } from "@preact/signals";

import { artworkAddress, isPicture } from "./artwork";
import { pause, player, PlayState, repeat, resume, stop, type Player } from "./player";
import { hasSeekBar, positionAt, seekBy, seekStep, seekTo } from "./position";
import { presets, stepPreset } from "./presets";

const keptKey = "vesk.lockScreen";

/** Whether lock screens and media keys control the player; stored in this browser. */
export const isOnLockScreen = signal(localStorage.getItem(keptKey) !== "off");

const sampleRate = 8000;
/** Browsers show what plays for at least five seconds. */
const seconds = 10;

/** A WAVE file of silence: 8 bits, one channel. */
export function silenceFile(): Uint8Array<ArrayBuffer> {
    const count = sampleRate * seconds;
    const headerSize = 44;
    const bytes = new Uint8Array(headerSize + count).fill(0x80); // the middle of unsigned samples
    const view = new DataView(bytes.buffer);
    const text = (at: number, letters: string) => [...letters].forEach((letter, i) => view.setUint8(at + i, letter.charCodeAt(0)));
    text(0, "RIFF");
    view.setUint32(4, headerSize - 8 + count, true);
    text(8, "WAVEfmt ");
    view.setUint32(16, 16, true); // bytes of the format
    view.setUint16(20, 1, true); // PCM
    view.setUint16(22, 1, true); // channels
    view.setUint32(24, sampleRate, true);
    view.setUint32(28, sampleRate, true); // bytes per second
    view.setUint16(32, 1, true); // bytes per sample of all channels
    view.setUint16(34, 8, true); // bits per sample
    text(36, "data");
    view.setUint32(40, count, true);
    return bytes;
}

/** What the lock screen is to show; null for nothing. */
export interface Shown {
    readonly isPlaying: boolean;
    readonly title: string;
    readonly artist: string;
    readonly icon: string;
}

export function shownOf(now: Player, isOn: boolean): Shown | null {
    if (!isOn || now.state === PlayState.stopped)
        return null;
    return {
        isPlaying: now.state !== PlayState.paused,
        title: now.streamTitle || now.title,
        artist: now.streamTitle ? now.title : now.description,
        icon: now.icon,
    };
}

type Action = [MediaSessionAction, (details: MediaSessionActionDetails) => unknown];

const actions: readonly Action[] = [
    ["play", () => (player.peek().state === PlayState.paused ? resume() : repeat())],
    ["pause", pause],
    ["stop", stop],
];
const presetActions: readonly Action[] = [
    ["previoustrack", () => stepPreset(-1)],
    ["nexttrack", () => stepPreset(1)],
];
const seekActions: readonly Action[] = [
    ["seekbackward", ({ seekOffset }) => seekBy(-(seekOffset || seekStep))],
    ["seekforward", ({ seekOffset }) => seekBy(seekOffset || seekStep)],
    ["seekto", ({ seekTime }) => seekTime !== undefined && seekTo(seekTime)],
];

function handle(handled: readonly Action[], isWanted: boolean): void {
    for (const [name, run] of handled) {
        try {
            navigator.mediaSession.setActionHandler(name, isWanted ? (details) => void run(details) : null);
        } catch {
            // A browser that does not know this action.
        }
    }
}

/** What the lock screen draws its bar of: null for what has no place to choose. */
export function placeOf(now: Player, isOn: boolean, time = performance.now()): MediaPositionState | null {
    const position = positionAt(now, time);
    return isOn && hasSeekBar(now) && position !== null ? { duration: now.duration ?? 0, position, playbackRate: 1 } : null;
}

/** Browsers show a session only for sound of the page's own, and the sound comes from the host: the page plays silence. */
let silence: HTMLAudioElement | null = null;

function silenceElement(): HTMLAudioElement {
    if (!silence) {
        silence = new Audio(URL.createObjectURL(new Blob([silenceFile()], { type: "audio/wav" })));
        silence.loop = true;
    }
    return silence;
}

let isPlaying = false;

function sound(wanted: boolean): void {
    isPlaying = wanted;
    if (!wanted)
        return silence?.pause();
    // Never before the reader has touched the page; browsers that do not tell refuse it until then.
    if (navigator.userActivation?.hasBeenActive !== false)
        silenceElement().play().catch(() => {});
}

async function setMetadata({ title, artist, icon }: Shown): Promise<void> {
    const session = navigator.mediaSession;
    const set = (artwork: MediaImage[]) => (session.metadata = new MediaMetadata({ title, artist, album: "Vesk", artwork }));
    set([]);
    if (!isPicture(icon))
        return;
    const mine = session.metadata;
    const src = new URL(await artworkAddress(icon), location.href).href;
    if (session.metadata === mine)
        set([{ src }]);
}

function show(shown: Shown | null): void {
    const session = navigator.mediaSession;
    sound(shown?.isPlaying ?? false);
    session.playbackState = shown === null ? "none" : shown.isPlaying ? "playing" : "paused";
    handle(actions, shown !== null);
    if (shown === null)
        session.metadata = null;
    else
        setMetadata(shown).catch(() => {});
}

/** Shows what the host plays on the device's lock screen, where it can be paused and stopped. */
export function startLockScreen(): void {
    effect(() => localStorage.setItem(keptKey, isOnLockScreen.value ? "on" : "off"));
    if (!("mediaSession" in navigator))
        return;
    let last = "null";
    effect(() => {
        const shown = shownOf(player.value, isOnLockScreen.value);
        if (JSON.stringify(shown) === last)
            return;
        last = JSON.stringify(shown);
        show(shown);
    });
    effect(() => handle(presetActions, shownOf(player.value, isOnLockScreen.value) !== null && (presets.value?.size ?? 0) > 0));
    effect(() => {
        const place = placeOf(player.value, isOnLockScreen.value);
        handle(seekActions, place !== null);
        // Without an argument the bar goes.
        navigator.mediaSession.setPositionState?.(place ?? undefined);
    });
    for (const gesture of ["pointerup", "keydown"])
        addEventListener(gesture, () => isPlaying && (silence?.paused ?? true) && sound(true));
}
