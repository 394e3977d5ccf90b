// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { isRecord } from "../rpc/Connection";
import { getData, setData } from "./host";
import { withParam } from "./path";
import { text } from "./rows";
import type { Service } from "./services";

/** Limits of what a service takes: bytes per part, and of a file. */
export const partSize = 45_000;
export const maxSize = 1024 * 1024;

export const formats = ["m3u", "pls", "xspf", "opml"] as const;

/** What became of a file's entries; `message` is the service's own, empty for none. */
export interface Imported {
    readonly added: number;
    readonly known: number;
    readonly skipped: number;
    readonly message: string;
}

/** The bytes in parts of Base64; one, if there are none. */
export function partsOf(bytes: Uint8Array): string[] {
    const parts: string[] = [];
    for (let at = 0; at === 0 || at < bytes.length; at += partSize) {
        const part = bytes.subarray(at, at + partSize);
        parts.push(btoa(Array.from(part, (byte) => String.fromCharCode(byte)).join("")));
    }
    return parts;
}

export function readImported(value: unknown): Imported {
    const told = isRecord(value) ? value : {};
    const number = (name: string) => (typeof told[name] === "number" ? (told[name] as number) : 0);
    return { added: number("added"), known: number("known"), skipped: number("skipped"), message: text(told.message) };
}

/** Sends a file of at most `maxSize` bytes to a service. Rejects with an RpcError. */
export async function importFile(service: Service, file: File): Promise<Imported> {
    const parts = partsOf(new Uint8Array(await file.arrayBuffer()));
    // crypto.randomUUID() is only there for pages that came over TLS or from this machine.
    const id = [...crypto.getRandomValues(new Uint8Array(16))].map((byte) => byte.toString(16).padStart(2, "0")).join("");
    let told: unknown = null;
    for (const [part, data] of parts.entries())
        told = await setData(service.importPath, "value", { name: file.name, id, part, parts: parts.length, data });
    return readImported(told);
}

/** Reads a service's stations in one of the `formats`. Rejects with an RpcError. */
export async function exported(service: Service, format: string): Promise<{ name: string; data: string }> {
    const [value] = await getData(withParam(service.exportPath, "format", format), ["value"]);
    const file = isRecord(value) ? value : {};
    return { name: text(file.name) || `stations.${format}`, data: text(file.data) };
}
