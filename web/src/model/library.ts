// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { isRecord } from "../rpc/Connection";
import { host } from "./host";

/** Bytes of a file that is read at most. */
export const maxLibrary = 4 * 1024 * 1024;
/** Bytes of JSON in one request; the host takes messages of 64 KiB. */
export const partSize = 40_000;

/** The stars and presets of a radio, as it told them; what is in them is the host's affair. */
export type Library = Readonly<Record<string, unknown>>;

/** Rejects with an RpcError. */
export async function exportLibrary(): Promise<Library> {
    const told = await host.call("library.export");
    return isRecord(told) && isRecord(told.library) ? told.library : {};
}

/** The library in a file's text; null if it is none. */
export function readLibrary(text: string): Library | null {
    try {
        const read: unknown = JSON.parse(text);
        const library = isRecord(read) && isRecord(read.library) ? read.library : read;
        return isRecord(library) && Array.isArray(library.favorites) && Array.isArray(library.presets) ? library : null;
    } catch {
        return null;
    }
}

const size = (value: unknown) => new TextEncoder().encode(JSON.stringify(value)).length;

/** Libraries that are small enough for a request, and the same together: the host adds what it does not have yet. */
export function partsOf(library: Library): Library[] {
    const parts: { favorites: unknown[]; presets: unknown[] }[] = [];
    let room = 0;
    for (const name of ["favorites", "presets"] as const) {
        for (const each of library[name] as unknown[]) {
            const needed = size(each) + 1;
            if (parts.length === 0 || needed > room) {
                parts.push({ favorites: [], presets: [] });
                room = partSize;
            }
            parts[parts.length - 1]![name].push(each);
            room -= needed;
        }
    }
    return (parts.length > 0 ? parts : [{ favorites: [], presets: [] }]).map((part) => ({ ...library, ...part }));
}

/** Adds a library to the radio's. Rejects with an RpcError. */
export async function importLibrary(library: Library): Promise<{ favorites: number; presets: number }> {
    const sum = { favorites: 0, presets: 0 };
    for (const part of partsOf(library)) {
        const told = await host.call("library.import", { library: part });
        const number = (name: string) => (isRecord(told) && typeof told[name] === "number" ? (told[name] as number) : 0);
        sum.favorites += number("favorites");
        sum.presets += number("presets");
    }
    return sum;
}
