// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal, type Signal } from "@preact/signals";

import { t } from "../i18n/i18n";
import { isRecord } from "../rpc/Connection";
import { attempt } from "./attempt";
import { host, watch } from "./host";
import { announce } from "./notices";
import type { Path } from "./path";
import { hasLibrary, itemParams, type Item } from "./presets";

/** The host's own screens: what was heard lately, and what has a star. */
export const recentsPath: Path = "host:recents";
export const starsPath: Path = "host:favorites";
/** Leads to both, and says what is wrong with the file that they are kept in. */
export const libraryPath: Path = "host:library";

/** Paths whose stars are remembered at most. */
const maxKnown = 500;
const known = new Map<Path, Signal<boolean | null>>();
let isWatched = false;

async function read(path: Path, star: Signal<boolean | null>): Promise<void> {
    try {
        const told = await host.call("favorites.state", { path });
        star.value = isRecord(told) ? told.favorite === true : null;
    } catch {
        // Unknown, until it is read again.
    }
}

function readAll(): void {
    for (const [path, star] of known)
        void read(path, star);
}

/** Whether the row at a path has a star on this radio, which is none of a service's favorites; null while that is unknown. */
export function hasStar(path: Path): boolean | null {
    if (path === "" || !hasLibrary.value)
        return null;
    if (!isWatched) {
        isWatched = true;
        watch(starsPath, readAll);
        host.isOpen.subscribe((isOpen) => {
            if (isOpen)
                readAll();
        });
    }
    let star = known.get(path);
    if (!star) {
        if (known.size >= maxKnown)
            known.clear();
        star = signal<boolean | null>(null);
        known.set(path, star);
        void read(path, star);
    }
    return star.value;
}

/** Gives a row its star or takes it away: \a item, or what plays for null. Its path is \a path. */
export async function setStar(path: Path, title: string, item: Item | null, wanted: boolean): Promise<void> {
    const isDone = await attempt(() => (wanted
        ? host.call("favorites.add", itemParams(item))
        : host.call("favorites.remove", { path })));
    if (!isDone)
        return;
    const star = known.get(path);
    if (star)
        star.value = wanted;
    announce({
        kind: "told",
        text: wanted ? t("%1 has a star on this radio.", title || t("Untitled")) : t("%1 has no star on this radio any more.", title || t("Untitled")),
    });
}

export const clearRecents = () => attempt(() => host.call("recents.clear"));
