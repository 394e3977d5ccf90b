// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { computed, signal } from "@preact/signals";

import { isRecord, RpcError } from "../rpc/Connection";
import { host } from "./host";
import { text } from "./rows";

/** Who this page is to its host, and where other devices find it. See `access.info` in docs/rpc.md. */
export interface Access {
    readonly isOwner: boolean;
    /** Where other devices find the host's page; empty if only programs on its machine do. */
    readonly urls: readonly string[];
    /** SHA-256 of the host's certificate; empty without one. */
    readonly fingerprint: string;
}

/** The addresses in a list that are those of pages. */
export function pageUrls(value: unknown): string[] {
    const all: unknown[] = Array.isArray(value) ? value : [];
    return all.map(text).filter((url) => /^https?:\/\/[^\s#]+\/$/.test(url));
}

/** Whoever is not said to be an owner is a listener. */
export function readAccess(told: unknown): Access {
    const { role, urls, fingerprint } = isRecord(told) ? told : { role: "", urls: [], fingerprint: "" };
    return { isOwner: role === "owner", urls: pageUrls(urls), fingerprint: text(fingerprint) };
}

/** Null until it is known. */
export const access = signal<Access | null>(null);
/** Whether settings, accounts and devices are offered; the host decides about each call by itself. */
export const isOwner = computed(() => access.value?.isOwner ?? false);

async function refresh(): Promise<void> {
    try {
        access.value = readAccess(await host.call("access.info"));
    } catch (error) {
        // Read again when the connection is back. A host that knows of no roles serves its own machine alone.
        if (error instanceof RpcError && error.code !== RpcError.lost)
            access.value = readAccess({ role: error.code === RpcError.noMethod ? "owner" : "" });
    }
}

host.isOpen.subscribe((isOpen) => {
    if (isOpen)
        void refresh();
});

/** Whether a page at this name is one of the machine itself, which no other device finds there. */
export function isLoopback(hostname: string): boolean {
    return /^(localhost|.*\.localhost|127(\.\d+){3}|\[::1\])$/.test(hostname);
}

/** A link to a path that works on other devices; null if the host cannot be reached from them. */
export function linkTo(path: string, location: { href: string; hostname: string }, urls: readonly string[]): string | null {
    const base = isLoopback(location.hostname) ? urls[0] : new URL("./", location.href).href;
    return base === undefined ? null : `${base}#${path}`;
}
