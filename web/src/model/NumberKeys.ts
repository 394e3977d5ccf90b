// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/** Milliseconds in which a second digit belongs to the first one. */
export const digitTime = 700;

/**
 * Makes numbers from 1 to 12 of digits: 0 alone is 10, as on the keys of a radio, and 1 waits for a second digit if one may come.
 */
export class NumberKeys {
    #waiting: { shift: boolean; timer: ReturnType<typeof setTimeout> } | null = null;

    /** \a mayWait says whether any of 10 to 12 could be meant. */
    constructor(
        private readonly mayWait: (shift: boolean) => boolean, private readonly pressed: (number: number, shift: boolean) => void,
    ) {}

    press(digit: number, shift: boolean): void {
        const first = this.#waiting;
        this.#end();
        if (first && first.shift === shift && digit <= 2)
            return this.pressed(10 + digit, shift);
        // The second digit began something else.
        if (first)
            this.pressed(1, first.shift);
        if (digit !== 1 || !this.mayWait(shift))
            return this.pressed(digit === 0 ? 10 : digit, shift);
        const timer = setTimeout(() => {
            this.#end();
            this.pressed(1, shift);
        }, digitTime);
        this.#waiting = { shift, timer };
    }

    #end(): void {
        clearTimeout(this.#waiting?.timer);
        this.#waiting = null;
    }
}
