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
    const here = { ...entry.peek(), scroll: window.scrollY };
    if (row !== undefined)
        Object.assign(here, { row });
    history.replaceState(here, "");
}

export function open(path: Path, title: string, row = -1): void {
    remember(row);
    go(path, [...entry.peek().trail, { path, title }]);
}

/** As open(), for somebody who types: focus stays where it is. */
export function openQuietly(path: Path, title: string): void {
    remember();
    go(path, [...entry.peek().trail, { path, title }], "start");
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
become(entry.peek(), "start");
history.replaceState(entry.peek(), "");
let settled: ReturnType<typeof setTimeout> | undefined;
window.addEventListener("scroll", () => {
    clearTimeout(settled);
    settled = setTimeout(() => remember(), 150);
}, { passive: true });
window.addEventListener("popstate", () => {
    clearTimeout(settled);
    const next = entryHere();
    // An address that was typed has no state of this page's yet.
    const isNew = !isEntry(history.state);
    if (isNew) {
        lastIndex = next.index;
        history.replaceState(next, "");
    }
    become(next, isNew ? "forward" : "back");
});
