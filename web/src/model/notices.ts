// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

/** Something short to be said, seen and heard. */
export interface Notice {
    /** What it says beside the text, which comes from outside; "lost" needs none. */
    readonly kind: "done" | "failed" | "added" | "removed" | "lost" | "stale";
    readonly text: string;
    /** Takes back what was done. */
    readonly undo?: () => void;
}

const showTime = 6000;
/** Somebody has to read it, and to reach the button. */
const undoTime = 12_000;

export const notice = signal<Notice | null>(null);
let timer: ReturnType<typeof setTimeout> | undefined;

export function announce(next: Notice): void {
    notice.value = next;
    clearTimeout(timer);
    timer = setTimeout(() => (notice.value = null), next.undo ? undoTime : showTime);
}

export function dismiss(): void {
    clearTimeout(timer);
    notice.value = null;
}
