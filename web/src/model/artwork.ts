// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { sha256 } from "./sha256";

const maxKept = 5000;
const kept = new Map<string, string>();

async function digest(bytes: Uint8Array<ArrayBuffer>): Promise<string> {
    // There is none on a page without TLS that is not the machine's own.
    if (!crypto.subtle)
        return sha256(bytes);
    const found = await crypto.subtle.digest("SHA-256", bytes);
    return Array.from(new Uint8Array(found), (byte) => byte.toString(16).padStart(2, "0")).join("");
}

/** The host's address for the picture at \a url, if it is known by now. */
export const knownArtwork = (url: string): string | undefined => kept.get(url);

/** The host's address for the picture at \a url, relative to the page. Only the host requests the URL itself. */
export async function artworkAddress(url: string): Promise<string> {
    let address = kept.get(url);
    if (address === undefined) {
        address = "./artwork/" + (await digest(new TextEncoder().encode(url)));
        if (kept.size >= maxKept)
            kept.clear();
        kept.set(url, address);
    }
    return address;
}

/** Whether the picture of a row is one that the host can fetch. */
export const isPicture = (icon: string): boolean => /^https?:/i.test(icon);
