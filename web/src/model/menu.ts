// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { effect, signal } from "@preact/signals";

import { RpcError } from "../rpc/Connection";
import { getRows, setData } from "./host";
import { openSheets, popSheets, pushSheet } from "./navigation";
import type { Path } from "./path";
import type { Row } from "./rows";

/** What is shown above the screen: a menu, which is a screen itself, or one of the page's own. */
export type Sheet =
    | { readonly kind: "menu"; readonly path: Path; readonly title: string }
    | { readonly kind: "playing" }
    | { readonly kind: "keys" };

/** The open sheets, one above the other, the last one shown. */
export const sheets = signal<readonly Sheet[]>([]);

export function openSheet(sheet: Sheet): void {
    sheets.value = [...sheets.value, sheet];
    pushSheet();
}

export function openMenu(path: Path, title: string): void {
    openSheet({ kind: "menu", path, title });
}

/** One level up; the first one closes. */
export function closeSheet(): void {
    leaveSheets(1);
}

export function closeSheets(): void {
    leaveSheets(sheets.peek().length);
}

function leaveSheets(count: number): void {
    if (count === 0)
        return;
    sheets.value = sheets.peek().slice(0, -count);
    popSheets(count);
}

// The browser's own Back closes sheets, too; its Forward leads to none that is closed.
effect(() => {
    const count = openSheets.value;
    const open = sheets.peek();
    if (count < open.length)
        sheets.value = open.slice(0, count);
    else if (count > open.length)
        popSheets(count - open.length);
});

/** How often a service was interrupted over a menu. Twice is no chance: it is not offered again. */
const interrupted = signal<ReadonlyMap<Path, number>>(new Map());
const maxInterruptions = 2;
const maxKnown = 200;

export function blameMenu(path: Path): void {
    const known = interrupted.peek();
    if (known.size < maxKnown || known.has(path))
        interrupted.value = new Map(known).set(path, (known.get(path) ?? 0) + 1);
}

/** A menu is that of an item: one whose parameter for an id is empty is that of nothing. */
export function isMenu(path: Path): boolean {
    return path !== "" && !/[?&]\w*id=(&|$)/i.test(path)
        && (interrupted.value.get(path) ?? 0) < maxInterruptions;
}

/**
 * Runs the row at the index of a screen. It means what its title says, which may have changed since
 * it was read, here or in another page: then it is not run, and false comes back.
 */
export async function activate(screen: Path, index: number, row: Row): Promise<boolean> {
    const { rows } = await getRows(screen, index, index);
    if (rows[0]?.path !== row.path || rows[0].title !== row.title)
        return false;
    await setData(row.path, "activate", true);
    return true;
}

export function asRpcError(error: unknown): RpcError {
    return error instanceof RpcError ? error : new RpcError(0, String(error));
}
