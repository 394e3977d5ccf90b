import { signal } from "@preact/signals";

/** Something short to be said, seen and heard. */
export interface Notice {
    readonly kind: "done" | "failed";
    readonly text: string;
}

const showTime = 6000;

export const notice = signal<Notice | null>(null);
let timer: ReturnType<typeof setTimeout> | undefined;

export function announce(next: Notice): void {
    notice.value = next;
    clearTimeout(timer);
    timer = setTimeout(() => (notice.value = null), showTime);
}
