import { computed, signal } from "@preact/signals";

import { isRecord, RpcError } from "../rpc/Connection";
import { host } from "./host";
import { paramOf, type Path } from "./path";
import type { Row } from "./rows";

export const PlayState = { stopped: 0, transitioning: 1, playing: 2, paused: 3 } as const;

/** What the host's player tells of itself. Texts come from outside. */
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
    /** What plays was heard already, and is to be heard again. */
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
    isReconnecting: false,
};

/** What the host says now, after what it said before. */
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
        isReconnecting:
            state === PlayState.transitioning && playId === before.playId && wasHeard,
    };
}

export const player = signal<Player>(silence);
export const isShown = computed(
    () => player.value.state !== PlayState.stopped || player.value.error !== "",
);

/** What plays names the row that it came from so, when its own path is another one. */
const matchingPath = "veskMatchingPath";

/** Whether the row is what plays. */
export function isPlayed(now: Player, row: Row): boolean {
    // A path with an empty parameter names nothing in particular.
    if (row.path === "" || /=(&|$)/.test(row.path))
        return row.title !== "" && row.title === now.title;
    return row.path === now.path || row.path === paramOf(now.path, matchingPath);
}

/** A row that is asked for but not yet confirmed, and why it was not played. */
export const asked = signal<{ screen: Path; row: number } | null>(null);
export const failure = signal<RpcError | null>(null);
let last: { screen: Path; row: number } | null = null;

async function ask(method: string, params: Record<string, unknown> = {}): Promise<void> {
    failure.value = null;
    try {
        await host.call(method, params);
    } catch (error) {
        if (error instanceof RpcError && error.code !== RpcError.lost)
            failure.value = error;
    }
}

export async function play(screen: Path, row: number): Promise<void> {
    const now = { screen, row };
    last = now;
    asked.value = now;
    await ask("player.play", now);
    if (asked.value === now)
        asked.value = null;
}

/** Whether this page knows how to play again what it played last. */
export const canRepeat = () => last !== null;

export function repeat(): void {
    if (last)
        void play(last.screen, last.row);
}

export const pause = () => ask("player.pause");
export const resume = () => ask("player.resume");
export const stop = () => ask("player.stop");

async function refresh(): Promise<void> {
    try {
        player.value = nextPlayer(player.peek(), await host.call("player.state"));
    } catch {
        // The next connection asks again.
    }
}

host.on("player.changed", (told) => {
    player.value = nextPlayer(player.peek(), told);
});
host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        void refresh();
});
