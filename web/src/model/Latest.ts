// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";

/** Sends values that come faster than they are taken: one at a time, some are left out, but never the last one. */
export class Latest<T> {
    /** What the reader wants; null once it was sent and taken, or refused. */
    readonly wanted = signal<T | null>(null);
    #isBusy = false;
    #timer: ReturnType<typeof setTimeout> | undefined;

    /** \a send must not reject. */
    constructor(private readonly send: (value: T) => Promise<unknown>) {}

    /** Sends the value after \a wait milliseconds, unless another one comes before that. */
    set(value: T, wait = 0): void {
        this.wanted.value = value;
        clearTimeout(this.#timer);
        this.#timer = undefined;
        if (wait > 0)
            this.#timer = setTimeout(() => this.#go(), wait);
        else
            this.#go();
    }

    #go(): void {
        this.#timer = undefined;
        if (!this.#isBusy)
            void this.#run();
    }

    async #run(): Promise<void> {
        this.#isBusy = true;
        for (;;) {
            const value = this.wanted.peek();
            if (value === null || this.#timer !== undefined)
                break;
            await this.send(value);
            if (this.wanted.peek() === value && this.#timer === undefined)
                this.wanted.value = null;
        }
        this.#isBusy = false;
    }
}
