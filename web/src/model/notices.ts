// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

/** A short message, shown and announced to screen readers. */
export interface Notice {
    /** Selects the message. `text` is inserted into it and comes from outside; it is the message itself for "told" and "asked", and "lost" has none. */
    readonly kind: "done" | "told" | "asked" | "failed" | "added" | "removed" | "lost" | "stale";
    readonly text: string;
    /** Reverts the change. */
    readonly undo?: () => void;
    /** What may be done about it. */
    readonly action?: { readonly label: string; readonly run: () => void };
}

const showTime = 6000;
/** Longer than `showTime`, so that a button can be reached. */
const buttonTime = 12_000;

export const notice = signal<Notice | null>(null);
let timer: ReturnType<typeof setTimeout> | undefined;

export function announce(next: Notice): void {
    notice.value = next;
    clearTimeout(timer);
    timer = setTimeout(() => (notice.value = null), next.undo || next.action ? buttonTime : showTime);
}

export function dismiss(): void {
    clearTimeout(timer);
    notice.value = null;
}
