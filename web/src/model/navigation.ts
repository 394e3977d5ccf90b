// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { computed, signal } from "@preact/signals";

import type { Path } from "./path";

export const servicesPath: Path = "host:services";
export const settingsPath: Path = "host:settings";

export interface Crumb {
    readonly path: Path;
    readonly title: string;
}

/** One entry of the browser's history. */
interface Entry {
    /** How it was reached, itself last. */
    readonly trail: readonly Crumb[];
    /** Where it stands among this page's entries. */
    readonly index: number;
    readonly scroll: number;
    /** The row that was opened from here, -1 for none. */
    readonly row: number;
    /** How many sheets are open above the screen; each is an entry of its own, so that Back closes it. */
    readonly sheets?: number;
}

/** The address holds the path behind "#", as it is: it has no character that may not be there. */
export function pathOfAddress(hash: string): Path {
    const path = hash.replace(/^#/, "");
    return path === "" ? servicesPath : path;
}

function isEntry(state: unknown): state is Entry {
    const entry = state as Entry | null;
    return Array.isArray(entry?.trail) && typeof entry?.index === "number";
}

function entryHere(): Entry {
    const path = pathOfAddress(location.hash);
    const state: unknown = history.state;
    if (isEntry(state) && state.trail[state.trail.length - 1]?.path === path)
        return state;
    return { trail: [{ path, title: "" }], index: entryIndex + 1, scroll: 0, row: -1 };
}

const indexKey = "vesk.lastIndex";
/** Where the newest entry stands, and the current one. */
let entryIndex = -1;
let lastIndex = Number(sessionStorage.getItem(indexKey) ?? -1);

/** The way on which the current entry was reached: what the view restores and where focus goes. */
export type Arrival = "start" | "forward" | "back";

const entry = signal<Entry>(entryHere());
export const arrival = signal<Arrival>("start");
export const current = computed<Path>(() => entry.value.trail[entry.value.trail.length - 1]!.path);
export const trail = computed(() => entry.value.trail);
export const restore = computed(() => ({ scroll: entry.value.scroll, row: entry.value.row }));
export const canGoBack = computed(() => entry.value.index > 0);
export const canGoForward = computed(() => entry.value.index < lastIndex);

function become(next: Entry, how: Arrival): void {
    lastIndex = Math.max(lastIndex, next.index);
    entryIndex = next.index;
    sessionStorage.setItem(indexKey, String(lastIndex));
    arrival.value = how;
    entry.value = next;
}

/** Keeps where the reader is, for the way back. */
export function remember(row?: number): void {
    const here = { ...entry.peek(), scroll: window.scrollY, sheets: sheetsHere() };
    if (row !== undefined)
        Object.assign(here, { row });
    history.replaceState(here, "");
}

function sheetsHere(): number {
    return isEntry(history.state) ? history.state.sheets ?? 0 : 0;
}

/** How many sheets are open according to the history, whichever way it was moved. */
export const openSheets = signal(0);

export function pushSheet(): void {
    remember();
    const here = entry.peek();
    history.pushState({ ...here, scroll: window.scrollY, sheets: sheetsHere() + 1 }, "");
    lastIndex = here.index;
    become({ ...here }, arrival.peek());
    openSheets.value = sheetsHere();
}

/** Goes back so many sheets, or as many as there are. */
export function popSheets(count: number): void {
    const steps = Math.min(count, sheetsHere());
    if (steps > 0)
        history.go(-steps);
}

let afterSheets: (() => void) | null = null;

/** The step, once no sheet is open any more: it would be the way back to one that is closed. */
function withoutSheets(step: () => void): void {
    const count = sheetsHere();
    if (count === 0)
        return step();
    afterSheets = step;
    history.go(-count);
}

export function open(path: Path, title: string, row = -1): void {
    withoutSheets(() => {
        remember(row);
        go(path, [...entry.peek().trail, { path, title }]);
    });
}

/** As open(), for somebody who types: focus stays where it is. */
export function openQuietly(path: Path, title: string): void {
    remember();
    go(path, [...entry.peek().trail, { path, title }], "start");
}

/** Back to the screen before this one, which may be the only one there is: then to \a home. */
export function leave(home: Path): void {
    if (entry.peek().trail.length > 1 && entry.peek().index > 0)
        back();
    else
        replace(home, "");
}

/** Opens one of the crumbs, which takes the later ones away. */
export function openCrumb(path: Path, title: string): void {
    if (path === current.peek()) {
        window.scrollTo(0, 0);
        return;
    }
    remember();
    const known = entry.peek().trail;
    const at = known.findIndex((crumb) => crumb.path === path);
    go(path, at < 0 ? [{ path, title }] : known.slice(0, at + 1));
}

function go(path: Path, crumbs: readonly Crumb[], how: Arrival = "forward"): void {
    const next = { trail: crumbs, index: entry.peek().index + 1, scroll: 0, row: -1 };
    history.pushState(next, "", "#" + path);
    window.scrollTo(0, 0);
    lastIndex = next.index;
    become(next, how);
}

/** Another path in the place of the current one; focus stays where it is. */
export function replace(path: Path, title: string): void {
    const here = entry.peek();
    const next = { ...here, trail: [...here.trail.slice(0, -1), { path, title }], scroll: 0, row: -1 };
    history.replaceState(next, "", "#" + path);
    become(next, "start");
}

export function back(): void {
    remember();
    history.back();
}

export function forward(): void {
    remember();
    history.forward();
}

history.scrollRestoration = "manual";
become({ ...entry.peek(), sheets: 0 }, "start");
history.replaceState(entry.peek(), "");
let settled: ReturnType<typeof setTimeout> | undefined;
window.addEventListener("scroll", () => {
    clearTimeout(settled);
    settled = setTimeout(() => remember(), 150);
}, { passive: true });
window.addEventListener("popstate", () => {
    clearTimeout(settled);
    const next = entryHere();
    openSheets.value = next.sheets ?? 0;
    const step = afterSheets;
    afterSheets = null;
    // Only a sheet was opened or closed: the screen is as it was.
    const isSame = next.trail[next.trail.length - 1]!.path === current.peek();
    if (isSame && next.index === entry.peek().index)
        return step?.();
    // An address that was typed has no state of this page's yet.
    const isNew = !isEntry(history.state);
    if (isNew) {
        // Typed, or from a page elsewhere: what lists offered to this page does not count for it. The
        // host keeps that by connection, so the page begins anew.
        sessionStorage.setItem(indexKey, String(next.index));
        history.replaceState(next, "");
        location.reload();
        return;
    }
    become(next, "back");
});
