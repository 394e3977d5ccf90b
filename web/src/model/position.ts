// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { isRecord } from "../rpc/Connection";
import { attempt } from "./attempt";
import { host } from "./host";
import { Latest } from "./Latest";
import { announce } from "./notices";
import { amend, player, PlayState, type Player } from "./player";

/** Seconds of a step back or forward. */
export const seekStep = 30;
/** Milliseconds in which further steps are added to the first one. */
const gatherTime = 300;
/** Seconds that are not worth a word: what is live is heard that much later anyway. */
const noDelay = 2;

/** Seconds at a time, in milliseconds: the host tells a position once, and what plays goes on from there. */
export function positionAt(now: Player, time = performance.now()): number | null {
    if (now.position === null)
        return null;
    const gone = now.state === PlayState.playing ? Math.max(0, time - now.toldAt) / 1000 : 0;
    return Math.min(now.position + gone, now.duration ?? Infinity);
}

/** Milliseconds until the whole seconds of the position change; null if they do not. */
export function untilNextSecond(now: Player, time = performance.now()): number | null {
    const at = positionAt(now, time);
    if (at === null || now.state !== PlayState.playing || at === now.duration)
        return null;
    return Math.ceil((Math.floor(at) + 1 - at) * 1000);
}

/** Hours, minutes and seconds as they are written on players: 1:02:03, 2:03. */
export function clockText(seconds: number): string {
    const all = Math.floor(Math.max(0, seconds));
    const [hours, minutes] = [Math.floor(all / 3600), Math.floor(all / 60) % 60];
    const two = (value: number) => String(value).padStart(2, "0");
    return hours > 0 ? `${hours}:${two(minutes)}:${two(all % 60)}` : `${minutes}:${two(all % 60)}`;
}

/** Whether there is a bar on which a place can be chosen. */
export const hasSeekBar = (now: Player): boolean => (
    now.isSeekable && now.position !== null && (now.duration ?? 0) > 0 && now.state !== PlayState.stopped);

export const isBehind = (now: Player): boolean => now.behind >= noDelay && now.state !== PlayState.stopped;

async function send(params: Record<string, unknown>): Promise<void> {
    const { playId } = player.peek();
    await attempt(async () => {
        const told = await host.call("player.seek", params);
        // By now something else may play.
        if (!isRecord(told) || player.peek().playId !== playId)
            return;
        const { position, behind } = told;
        amend({
            ...(typeof position === "number" ? { position, toldAt: performance.now() } : {}),
            ...(typeof behind === "number" ? { behind } : {}),
        });
    });
}

const latest = new Latest<number>((position) => send({ position }));
/** The place that the reader has chosen, in seconds, until the host is there. */
export const chosen = latest.wanted;

export function seekTo(position: number, wait = 0): void {
    const { duration } = player.peek();
    latest.set(Math.max(0, Math.min(position, duration ?? Infinity)), wait);
}

/** A step back or forward; steps in quick succession are one. */
export function seekBy(offset: number): void {
    const now = player.peek();
    if (!now.isSeekable || now.state === PlayState.stopped)
        return;
    const from = chosen.peek() ?? positionAt(now);
    if (from === null)
        void send({ offset });
    else
        seekTo(from + offset, gatherTime);
}

/** Seconds at which a play that has just begun did not begin at its beginning. */
const goesOnFrom = 15;

/** Says where an episode goes on that was left before its end, and offers its beginning. */
export function startGoesOn(): void {
    let awaited = "";
    let begun: number | null = null;
    player.subscribe((now) => {
        if (now.state === PlayState.transitioning && !now.isReconnecting) {
            awaited = now.playId;
            begun = null;
        }
        if (now.state !== PlayState.playing || now.playId !== awaited)
            return;
        begun ??= performance.now();
        // Its length may be found later.
        if (!hasSeekBar(now) || now.position === null)
            return;
        awaited = "";
        if (now.position - (now.toldAt - begun) / 1000 >= goesOnFrom) {
            announce({
                kind: "told",
                text: t("Goes on at %1, where it was left.", clockText(now.position)),
                action: { label: t("From the beginning"), run: () => seekTo(0) },
            });
        }
    });
}

/** Leads from the buffer back to what is live. */
export const goLive = () => send({ live: true });
