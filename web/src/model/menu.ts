// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { effect, signal } from "@preact/signals";

import { RpcError } from "../rpc/Connection";
import { getRows, setData } from "./host";
import { openSheets, popSheets, pushSheet } from "./navigation";
import { paramOf, type Path } from "./path";
import type { Row } from "./rows";
import type { Item } from "./presets";
import { serviceOf } from "./services";

/** What is shown in the dialog above the screen: a menu, which is a screen too, or a sheet of the page's own. */
export type Sheet =
    | { readonly kind: "menu"; readonly path: Path; readonly title: string; /** The row that it belongs to. */ readonly item?: Item }
    | { readonly kind: "import"; readonly files: readonly File[] }
    | { readonly kind: "playing" | "sleep" | "outputs" }
    /** A number is chosen for a row, or for what plays. */
    | { readonly kind: "presets"; readonly item: Item | null }
    | { readonly kind: "keys" };

/** The stack of open sheets; only the last one is shown. */
export const sheets = signal<readonly Sheet[]>([]);

export function openSheet(sheet: Sheet): void {
    sheets.value = [...sheets.value, sheet];
    pushSheet();
}

/** \a path may be empty, for the menu of a row without one of its own. */
export function openMenu(path: Path, title: string, item?: Item): void {
    openSheet(item ? { kind: "menu", path, title, item } : { kind: "menu", path, title });
}

/** Closes the topmost sheet. */
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

// The browser's Back closes sheets too. Its Forward would lead to a closed sheet, so that step is undone.
effect(() => {
    const count = openSheets.value;
    const open = sheets.peek();
    if (count < open.length)
        sheets.value = open.slice(0, count);
    else if (count > open.length)
        popSheets(count - open.length);
});

/** How often opening a menu interrupted its service. After `maxInterruptions` the menu is no longer offered. */
const interrupted = signal<ReadonlyMap<Path, number>>(new Map());
const maxInterruptions = 2;
const maxKnown = 200;

export function blameMenu(path: Path): void {
    const known = interrupted.peek();
    if (known.size < maxKnown || known.has(path))
        interrupted.value = new Map(known).set(path, (known.get(path) ?? 0) + 1);
}

/** Whether the path is a menu that can be offered. One in which a parameter that is to identify its item is empty belongs to none. */
export function isMenu(path: Path): boolean {
    const ids = serviceOf(path)?.favorites?.ids ?? [];
    return path !== "" && ids.every((name) => paramOf(path, name) !== "")
        && (interrupted.value.get(path) ?? 0) < maxInterruptions;
}

/**
 * Runs a row of a screen. The row is read again first, because it may do something else by now
 * ("Remove" where it said "Add"); if its path or title changed, it is not run, and the result is
 * false.
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
