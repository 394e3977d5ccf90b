// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import type { TestContext } from "node:test";

/** Time that passes when it is told to, for a test's own timers. */
export class Clock {
    #now = 0;
    #last = 0;
    readonly #timers = new Map<number, { at: number; run(): void }>();

    constructor(context: TestContext) {
        const { setTimeout, clearTimeout } = globalThis;
        Object.assign(globalThis, {
            setTimeout: (run: () => void, wait = 0) => {
                this.#timers.set(++this.#last, { at: this.#now + wait, run });
                return this.#last;
            },
            clearTimeout: (id: number) => this.#timers.delete(id),
        });
        context.after(() => Object.assign(globalThis, { setTimeout, clearTimeout }));
    }

    tick(time: number): void {
        this.#now += time;
        for (const [id, { at, run }] of [...this.#timers]) {
            if (at <= this.#now && this.#timers.delete(id))
                run();
        }
    }
}
