// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

import { getRows, host, setData, watch } from "./host";
import { announce } from "./notices";
import { paramsOf, type Path } from "./path";
import { RowType, type Row } from "./rows";
import { serviceOf } from "./services";

/** The drawings that mean favorites, and the last words of the paths that change them. */
const words = ["presets", "favorites"];
const lastWord = (text: string) => text.split("?", 1)[0]!.replace(/^.*[/:]/, "");

/** Favorites that are looked through for their ids, and the folders among them. */
const maxRows = 500;
const maxFolders = 20;
const retryTime = 30_000;

/** Whether the row of a menu makes its item a favorite, or no favorite any more. */
export function changesFavorites(row: Row): boolean {
    return row.type === RowType.activate && words.includes(lastWord(row.path));
}

/** What a menu is about: its parameters that are ids. */
export function idsOf(menu: Path): string[] {
    return paramsOf(menu).filter(([key, value]) => /id$/i.test(key) && value !== "").map(([, value]) => value);
}

/** The favorites of one service, as far as they have menus: which items are among them. */
class Favorites {
    /** Null until they are known, and where there are none to know. */
    readonly ids = signal<ReadonlySet<string> | null>(null);
    #path: Path | null = null;
    #run = 0;
    #later: ReturnType<typeof setTimeout> | undefined;

    constructor(private readonly service: Path) {}

    /** Reads them by and by: a service that does not answer is asked again later. */
    refresh(): void {
        clearTimeout(this.#later);
        this.read().catch(() => {
            this.#later = setTimeout(() => this.refresh(), retryTime);
        });
    }

    /** Reads them, and follows their changes from the first time on. */
    async read(): Promise<ReadonlySet<string> | null> {
        const run = ++this.#run;
        if (this.#path === null) {
            const { rows } = await getRows(this.service, 0, 99, ["icon", "path"]);
            const path = rows.find((row) => words.includes(lastWord(row.icon)))?.path ?? "";
            if (this.#path === null && path !== "")
                watch(path, () => this.refresh());
            this.#path = path;
        }
        if (this.#path === "")
            return null;
        const ids = await readIds(this.#path);
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
    // One after the other: a service answers one question at a time.
    for (const folder of folders.slice(0, maxFolders))
        await take(folder, false);
    return ids;
}

const known = new Map<Path, Favorites>();

function favoritesFor(menu: Path): Favorites | null {
    const service = serviceOf(menu)?.path;
    if (service === undefined || service === "")
        return null;
    let favorites = known.get(service);
    if (!favorites) {
        favorites = new Favorites(service);
        known.set(service, favorites);
        favorites.refresh();
    }
    return favorites;
}

/** Whether the item of the menu is a favorite; null as long as nobody knows. */
export function isFavorite(menu: Path): boolean | null {
    const ids = menu === "" ? null : favoritesFor(menu)?.ids.value ?? null;
    return ids && idsOf(menu).some((id) => ids.has(id));
}

/**
 * Makes the item of a menu a favorite or takes it away, through the menu's own row, and says what
 * came of it. That row does the one or the other, so the favorites are read just before.
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

/** As setFavorite(), after the menu's row was run. */
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

// What was read over another connection may be old.
host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        known.forEach((favorites) => favorites.refresh());
});
