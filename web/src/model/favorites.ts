// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

import { getRows, host, setData, watch } from "./host";
import { announce } from "./notices";
import { paramOf, type Path } from "./path";
import { RowType, type Row } from "./rows";
import { serviceOf } from "./services";

/** Limits on the favorites read, and on the folders among them. */
const maxRows = 500;
const maxFolders = 20;
const retryTime = 30_000;

/** Whether a row of a menu adds the item to the favorites or removes it. */
export function changesFavorites(row: Row): boolean {
    const entries = serviceOf(row.path)?.favorites?.toggle ?? [];
    return row.type === RowType.activate && entries.includes(row.path.split("?", 1)[0]!);
}

/** The ids of the item that a menu belongs to, from the parameters that its service names. */
export function idsOf(menu: Path): string[] {
    const names = serviceOf(menu)?.favorites?.ids ?? [];
    return names.map((name) => paramOf(menu, name) ?? "").filter((id) => id !== "");
}

/** The ids of one service's favorites; those without a menu have no ids and are left out. */
class Favorites {
    /** Null until they are read. */
    readonly ids = signal<ReadonlySet<string> | null>(null);
    #run = 0;
    #later: ReturnType<typeof setTimeout> | undefined;

    constructor(private readonly path: Path) {
        watch(path, () => this.refresh());
    }

    /** Reads the favorites, and again later after an error. */
    refresh(): void {
        clearTimeout(this.#later);
        this.read().catch(() => {
            this.#later = setTimeout(() => this.refresh(), retryTime);
        });
    }

    async read(): Promise<ReadonlySet<string>> {
        const run = ++this.#run;
        const ids = await readIds(this.path);
        if (run === this.#run)
            this.ids.value = ids;
        return ids;
    }
}

async function readIds(path: Path): Promise<Set<string>> {
    const ids = new Set<string>();
    const folders: Path[] = [];
    const take = async (screen: Path, isTop: boolean) => {
        const { rows } = await getRows(screen, 0, maxRows - 1, ["type", "path", "context"]);
        for (const row of rows) {
            idsOf(row.contextPath).forEach((id) => ids.add(id));
            if (isTop && row.type === RowType.container && row.contextPath === "" && row.path !== "")
                folders.push(row.path);
        }
    };
    await take(path, true);
    // One after the other: a plug-in handles one request at a time.
    for (const folder of folders.slice(0, maxFolders))
        await take(folder, false);
    return ids;
}

const known = new Map<Path, Favorites>();

function favoritesFor(menu: Path): Favorites | null {
    const path = serviceOf(menu)?.favorites?.path;
    if (path === undefined)
        return null;
    let favorites = known.get(path);
    if (!favorites) {
        favorites = new Favorites(path);
        known.set(path, favorites);
        favorites.refresh();
    }
    return favorites;
}

/** Whether the item of the menu is a favorite; null while that is unknown. */
export function isFavorite(menu: Path): boolean | null {
    const ids = menu === "" ? null : favoritesFor(menu)?.ids.value ?? null;
    return ids && idsOf(menu).some((id) => ids.has(id));
}

/**
 * Adds the item of a menu to the favorites or removes it, through the menu's own row, and announces
 * the outcome. That row toggles, so the favorites are read just before it is run.
 */
export async function setFavorite(menu: Path, title: string, wanted: boolean): Promise<void> {
    const has = (ids: ReadonlySet<string> | null | undefined) =>
        ids ? idsOf(menu).some((id) => ids.has(id)) : null;
    const favorites = favoritesFor(menu);
    if (has(await favorites?.read()) !== wanted) {
        const { rows } = await getRows(menu, 0, 99);
        const row = rows.find(changesFavorites);
        if (row)
            await setData(row.path, "activate", true);
    }
    tellFavorite(menu, title, has(await favorites?.read()), wanted);
}

/** Announces the outcome as setFavorite() does, after the menu's row was run elsewhere. */
export async function toldFavorite(menu: Path, title: string, wanted: boolean): Promise<void> {
    const ids = await favoritesFor(menu)?.read();
    tellFavorite(menu, title, ids ? idsOf(menu).some((id) => ids.has(id)) : null, wanted);
}

function tellFavorite(menu: Path, title: string, is: boolean | null, wanted: boolean): void {
    if (is !== wanted)
        return announce({ kind: "failed", text: "" });
    announce({
        kind: is ? "added" : "removed",
        text: title,
        undo: () => void setFavorite(menu, title, !wanted).catch(() => announce({ kind: "failed", text: "" })),
    });
}

// Changes made while there was no connection were not notified.
host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        known.forEach((favorites) => favorites.refresh());
});
