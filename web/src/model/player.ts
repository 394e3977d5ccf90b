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
}

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
};

/** The state told by the host, which came after \a before. */
export function nextPlayer(before: Player, told: unknown): Player {
    const roles = isRecord(told) ? told : {};
    const text = (name: string) => (typeof roles[name] === "string" ? (roles[name] as string) : "");
    const number = (name: string) => (typeof roles[name] === "number" ? (roles[name] as number) : 0);
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
    };
}

export const player = signal<Player>(silence);
export const isShown = computed(
    () => player.value.state !== PlayState.stopped || player.value.error !== "",
);

/** Parameter with the path of the row that plays, if that differs from the path of what plays. */
const matchingPath = "veskMatchingPath";

/** Whether the row is the one that plays. */
export function isPlayed(now: Player, row: Row): boolean {
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
let last: Asked | null = null;
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

export async function play(screen: Path, row: number, path: Path): Promise<void> {
    const now = { screen, row, path };
    last = now;
    asked.value = now;
    clearTimeout(slowness);
    isAskSlow.value = false;
    slowness = setTimeout(() => (isAskSlow.value = asked.value === now), patience);
    const error = await ask("player.play", path === "" ? { screen, row } : { ...now });
    if (asked.value === now) {
        forget();
    } else if (!error && asked.value === null && last === null) {
        // Cancelled while the request was pending.
        await stop();
    }
    if (error?.code === RpcError.notInList) {
        announce({ kind: "stale", text: "" });
        for (const each of shown) {
            if (each.path === screen)
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
        void play(last.screen, last.row, last.path);
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
