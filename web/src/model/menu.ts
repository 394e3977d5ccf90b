import { signal } from "@preact/signals";

import { RpcError } from "../rpc/Connection";
import { getRows, setData } from "./host";
import type { Path } from "./path";
import type { Row } from "./rows";
import { announce } from "./notices";

/** The menu that is open: screens one above the other, the last one shown. */
export const menu = signal<{ title: string; path: Path }[] | null>(null);

export function openMenu(path: Path, title: string): void {
    menu.value = [{ path, title }];
}

export function deeper(path: Path, title: string): void {
    menu.value = [...(menu.value ?? []), { path, title }];
}

export function closeMenu(): void {
    menu.value = null;
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
    announce({ kind: "done", text: row.title });
    return true;
}

export function asRpcError(error: unknown): RpcError {
    return error instanceof RpcError ? error : new RpcError(0, String(error));
}
