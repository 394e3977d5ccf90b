// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { computed, signal } from "@preact/signals";

import { isRecord, RpcError } from "../rpc/Connection";
import { host } from "./host";
import { announce } from "./notices";
import { paramOf, type Path } from "./path";
import type { Row } from "./rows";
import { patience, shown } from "./Screen";

export const PlayState = { stopped: 0, transitioning: 1, playing: 2, paused: 3 } as const;

/** State of the host's player. Texts come from outside. */
export interface Player {
    readonly state: number;
    readonly playId: string;
    readonly title: string;
    readonly description: string;
    readonly icon: string;
    readonly bitRate: number;
    readonly streamTitle: string;
    readonly path: Path;
    readonly contextPath: Path;
    readonly error: string;
    /** What is wrong and what the player does about it, in words; empty without a fault. */
    readonly problem: string;
    readonly codec: string;
    /** The stream was audible before and is being reopened. */
    readonly isReconnecting: boolean;
    /** 0 to 100; null with a host that has none. */
    readonly volume: number | null;
    readonly isMuted: boolean;
    /** Seconds, at the time `toldAt`; null where there is no position. */
    readonly position: number | null;
    /** Seconds; null if it is not known, as of what is live. */
    readonly duration: number | null;
    readonly isSeekable: boolean;
    /** Seconds behind what is live; 0 if it is not. */
    readonly behind: number;
    /** Where the sound goes; empty with a host that does not say. */
    readonly output: string;
    /** What is wrong with it, in words; empty without a fault. */
    readonly outputProblem: string;
    /** Milliseconds, by performance.now(); 0 without a position. */
    readonly toldAt: number;
}

const clamp = (value: number, least: number, most: number) => Math.max(least, Math.min(most, value));

export const silence: Player = {
    state: PlayState.stopped,
    playId: "",
    title: "",
    description: "",
    icon: "",
    bitRate: 0,
    streamTitle: "",
    path: "",
    contextPath: "",
    error: "",
    problem: "",
    codec: "",
    isReconnecting: false,
    volume: null,
    isMuted: false,
    position: null,
    duration: null,
    isSeekable: false,
    behind: 0,
    output: "",
    outputProblem: "",
    toldAt: 0,
};

/** The state told by the host at \a time, which came after \a before. */
export function nextPlayer(before: Player, told: unknown, time = performance.now()): Player {
    const roles = isRecord(told) ? told : {};
    const text = (name: string) => (typeof roles[name] === "string" ? (roles[name] as string) : "");
    const number = (name: string) => (typeof roles[name] === "number" ? (roles[name] as number) : 0);
    const amount = (name: string) => (Number.isFinite(roles[name]) ? Math.max(0, roles[name] as number) : null);
    const playId = isRecord(roles.playId) ? JSON.stringify(roles.playId) : "";
    const state = number("state");
    const wasHeard = before.state === PlayState.playing || before.isReconnecting;
    return {
        state,
        playId,
        title: text("title"),
        description: text("description"),
        icon: text("icon"),
        bitRate: number("bitrate"),
        streamTitle: text("streamTitle"),
        path: text("path"),
        contextPath: text("contextPath"),
        error: text("error"),
        problem: text("problem"),
        codec: text("codec"),
        isReconnecting:
            state === PlayState.transitioning && playId === before.playId && wasHeard,
        volume: typeof roles.volume === "number" ? clamp(roles.volume, 0, 100) : null,
        isMuted: roles.mute === true,
        position: amount("position"),
        duration: amount("duration"),
        isSeekable: roles.seekable === true,
        behind: amount("behind") ?? 0,
        output: text("output"),
        outputProblem: text("outputProblem"),
        toldAt: amount("position") === null ? 0 : time,
    };
}

export const player = signal<Player>(silence);
export const isShown = computed(
    () => player.value.state !== PlayState.stopped || player.value.error !== "",
);

/** Parameter with the path of the row that plays, if that differs from the path of what plays. */
const matchingPath = "veskMatchingPath";

/** The path of the row that plays. */
export const playedPath = (now: Player): Path => paramOf(now.path, matchingPath) ?? now.path;

/** Whether the row is the one that plays. */
export function isPlayed(now: Player, row: Pick<Row, "path" | "title">): boolean {
    // A path with an empty parameter does not identify a row.
    if (row.path === "" || /=(&|$)/.test(row.path))
        return row.title !== "" && row.title === now.title;
    return row.path === now.path || row.path === paramOf(now.path, matchingPath);
}

/** The row that the reader asked to play. */
export interface Asked {
    readonly screen: Path;
    readonly row: number;
    /** Identifies the row after the list changed; empty if the row has no path of its own. */
    readonly path: Path;
}

/** The row of a pending player.play, and the error of the last one. */
export const asked = signal<Asked | null>(null);
export const failure = signal<RpcError | null>(null);
/** player.play has been pending for longer than `patience`. */
export const isAskSlow = signal(false);
/** How the last play was asked for, to be asked for again. */
interface Play {
    readonly method: string;
    readonly params: Record<string, unknown>;
    readonly now: Asked;
}

let last: Play | null = null;
let slowness: ReturnType<typeof setTimeout> | undefined;

async function ask(method: string, params: Record<string, unknown> = {}): Promise<RpcError | null> {
    failure.value = null;
    try {
        await host.call(method, params);
        return null;
    } catch (error) {
        if (!(error instanceof RpcError))
            throw error;
        if (error.code !== RpcError.lost)
            failure.value = error;
        else if (host.isOpen.value === false)
            announce({ kind: "lost", text: "" });
        return error;
    }
}

export function play(screen: Path, row: number, path: Path): Promise<void> {
    const now = { screen, row, path };
    return start({ method: "player.play", params: path === "" ? { screen, row } : { ...now }, now });
}

/** Plays what the host knows by a number. */
export function playPreset(number: number, path: Path): Promise<void> {
    return start({ method: "presets.play", params: { number }, now: { screen: "", row: number, path } });
}

async function start(wanted: Play): Promise<void> {
    const { method, params, now } = wanted;
    last = wanted;
    asked.value = now;
    clearTimeout(slowness);
    isAskSlow.value = false;
    slowness = setTimeout(() => (isAskSlow.value = asked.value === now), patience);
    const error = await ask(method, params);
    if (asked.value === now) {
        forget();
    } else if (!error && asked.value === null && last === null) {
        // Cancelled while the request was pending.
        await stop();
    }
    if (error?.code === RpcError.notInList) {
        announce({ kind: "stale", text: "" });
        for (const each of shown) {
            if (each.path === now.screen)
                each.changed();
        }
    }
}

function forget(): void {
    clearTimeout(slowness);
    isAskSlow.value = false;
    asked.value = null;
}

/** Cancels a pending play: if the host has already started it, it is stopped. */
export function cancelPlay(): void {
    last = null;
    forget();
}

/** Whether this page played something that repeat() can play again. */
export const canRepeat = () => last !== null;

export function repeat(): void {
    if (last)
        void start(last);
}

export const pause = () => ask("player.pause");
export const resume = () => ask("player.resume");
export const stop = () => ask("player.stop");

/** Pauses or resumes. */
export function toggle(): void {
    const { state } = player.peek();
    if (state === PlayState.paused)
        void resume();
    else if (state === PlayState.playing)
        void pause();
}

/** What the host answered to a change of its player, before it tells the whole state. */
export function amend(told: Partial<Player>): void {
    player.value = { ...player.peek(), ...told };
}

async function refresh(): Promise<void> {
    try {
        player.value = nextPlayer(player.peek(), await host.call("player.state"));
    } catch {
        // Read again when the connection is back.
    }
}

host.on("player.changed", (told) => {
    player.value = nextPlayer(player.peek(), told);
});
host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        void refresh();
});
