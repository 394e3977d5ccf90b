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

/** Menus that their service did not survive: they are not offered again. */
export const deadMenus = signal<ReadonlySet<Path>>(new Set());
const maxDead = 200;

export function buryMenu(path: Path): void {
    if (deadMenus.peek().size < maxDead)
        deadMenus.value = new Set([...deadMenus.peek(), path]);
}

/** A menu is that of an item: one whose parameter for an id is empty is that of nothing. */
export function isMenu(path: Path): boolean {
    return path !== "" && !/[?&]\w*id=(&|$)/i.test(path) && !deadMenus.value.has(path);
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
