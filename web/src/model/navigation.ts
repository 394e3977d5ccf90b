// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { computed, signal } from "@preact/signals";

import type { Path } from "./path";

export const servicesPath: Path = "host:services";
export const settingsPath: Path = "host:settings";
/** A screen of the page's own: what all services find. Its parameter is the text. */
export const searchPath: Path = "page:search";
/** Screens of the page's own: what this radio keeps, its alarms, the paired devices, and the view for a tablet on the wall. */
export const radioPath: Path = "page:radio";
export const alarmsPath: Path = "page:alarms";
export const devicesPath: Path = "page:devices";
export const quietPath: Path = "page:quiet";

export interface Crumb {
    readonly path: Path;
    readonly title: string;
}

/** The state kept in one entry of the browser's history. */
interface Entry {
    /** The breadcrumbs, from the first screen to this one. */
    readonly trail: readonly Crumb[];
    /** Position among this page's entries. */
    readonly index: number;
    readonly scroll: number;
    /** The row that was opened from here, -1 for none. */
    readonly row: number;
    /** Number of sheets open above the screen. Each sheet has an entry of its own, so that Back closes it. */
    readonly sheets?: number;
}

/** The path in the fragment of an address. It is not escaped: a path has only characters allowed in a fragment. */
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
/** Position of the current entry; `lastIndex` is that of the newest one, kept across reloads. */
let entryIndex = -1;
let lastIndex = Number(sessionStorage.getItem(indexKey) ?? -1);

/** How the current entry was reached, which decides what the view restores and where the focus goes. */
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

/** Saves the scroll position, and the row that is being opened, in the current entry. */
export function remember(row?: number): void {
    const here = { ...entry.peek(), scroll: window.scrollY, sheets: sheetsHere() };
    if (row !== undefined)
        Object.assign(here, { row });
    history.replaceState(here, "");
}

function sheetsHere(): number {
    return isEntry(history.state) ? history.state.sheets ?? 0 : 0;
}

/** Number of open sheets according to the history, after steps in either direction. */
export const openSheets = signal(0);

export function pushSheet(): void {
    remember();
    const here = entry.peek();
    history.pushState({ ...here, scroll: window.scrollY, sheets: sheetsHere() + 1 }, "");
    lastIndex = here.index;
    become({ ...here }, arrival.peek());
    openSheets.value = sheetsHere();
}

/** The number of sheets that a step back which is under way is to leave open; null without one. */
let goal: number | null = null;

/** Goes back by \a count sheets, or as many as there are. Steps are taken one after the other: two at once may lead out of the page. */
export function popSheets(count: number): void {
    const from = goal ?? sheetsHere();
    const to = Math.max(0, from - count);
    if (to === from)
        return;
    if (goal === null)
        history.go(to - from);
    goal = to;
}

let afterSheets: (() => void) | null = null;

/** Leaves the entries of open sheets before the step, so that Back does not lead to a closed sheet. */
function withoutSheets(step: () => void): void {
    const count = sheetsHere();
    if (count === 0)
        return step();
    afterSheets = step;
    popSheets(count);
}

export function open(path: Path, title: string, row = -1): void {
    withoutSheets(() => {
        remember(row);
        go(path, [...entry.peek().trail, { path, title }]);
    });
}

/** Like open(), but leaves the focus in place, for a search while typing. */
export function openQuietly(path: Path, title: string): void {
    remember();
    go(path, [...entry.peek().trail, { path, title }], "start");
}

/** Goes back to the previous screen, or to \a home if there is none. */
export function leave(home: Path): void {
    if (entry.peek().trail.length > 1 && entry.peek().index > 0)
        back();
    else
        replace(home, "");
}

/** Opens a screen of the breadcrumbs and drops those after it. */
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

/** Takes the path out of the address. An empty one is that of the home screen, whichever that turns out to be. */
export function emptyAddress(): void {
    history.replaceState(history.state, "", "#");
}

function go(path: Path, crumbs: readonly Crumb[], how: Arrival = "forward"): void {
    const next = { trail: crumbs, index: entry.peek().index + 1, scroll: 0, row: -1 };
    history.pushState(next, "", "#" + path);
    window.scrollTo(0, 0);
    lastIndex = next.index;
    become(next, how);
}

/** Replaces the current path; the focus stays in place. */
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
    const here = sheetsHere();
    if (goal !== null && here > goal) {
        history.go(goal - here);
        return;
    }
    goal = null;
    const next = entryHere();
    openSheets.value = next.sheets ?? 0;
    const step = afterSheets;
    afterSheets = null;
    // Only a sheet was opened or closed: the screen is the same.
    const isSame = next.trail[next.trail.length - 1]!.path === current.peek();
    if (isSame && next.index === entry.peek().index)
        return step?.();
    // An address that was typed has no state yet.
    const isNew = !isEntry(history.state);
    if (isNew) {
        // Typed, or set by another page: it must not profit from what lists offered to this page.
        // The host remembers that per connection, so a reload makes a new one.
        sessionStorage.setItem(indexKey, String(next.index));
        history.replaceState(next, "");
        location.reload();
        return;
    }
    become(next, "back");
});
