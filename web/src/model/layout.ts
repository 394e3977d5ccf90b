// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/** How a row is laid out: in a cell of a line, alone in a line, or not shown. */
export type Shape = "cell" | "line" | "none";

interface Place {
    readonly line: number;
    readonly column: number;
}

/** A run of rows, from the row \a index on, that fill cell after cell, beginning at the given place. */
interface Run extends Place {
    readonly index: number;
}

/**
 * Maps rows of a list to lines and columns, and back. Rows are cells unless their shape says
 * otherwise; rows not read yet count as cells. Immutable.
 */
export class Layout {
    readonly lines: number;
    /** Number of rows shown. */
    readonly shown: number;
    readonly #runs: Run[] = [{ index: 0, line: 0, column: 0 }];
    readonly #shapes: ReadonlyMap<number, Shape>;
    readonly #hidden: number[];

    constructor(readonly count: number, readonly columns: number, shapes: ReadonlyMap<number, Shape> = new Map()) {
        this.#shapes = shapes;
        const special = [...shapes]
            .filter(([index, shape]) => shape !== "cell" && index < count)
            .sort(([a], [b]) => a - b);
        this.#hidden = special.filter(([, shape]) => shape === "none").map(([index]) => index);
        for (const [index, shape] of special) {
            const { line, column } = this.#cell(index);
            if (shape === "none")
                this.#runs.push({ index: index + 1, line, column });
            else
                this.#runs.push(
                    { index, line: column > 0 ? line + 1 : line, column: 0 },
                    { index: index + 1, line: column > 0 ? line + 2 : line + 1, column: 0 });
        }
        const end = this.#cell(count);
        this.lines = end.column > 0 ? end.line + 1 : end.line;
        this.shown = count - this.#hidden.length;
    }

    isHidden(index: number): boolean {
        return this.#shapes.get(index) === "none";
    }

    isLine(index: number): boolean {
        return this.columns === 1 || this.#shapes.get(index) === "line";
    }

    place(index: number): Place {
        return this.#cell(index);
    }

    /** Number of rows shown before this one. */
    position(index: number): number {
        return index - lowerBound(this.#hidden, (hidden) => hidden < index);
    }

    /** The first row shown in the line or after it; `count` if there is none. */
    firstIn(line: number): number {
        if (line >= this.lines)
            return this.count;
        // The last run that begins at the line's start or before it.
        const after = lowerBound(this.#runs, (run) => run.line < line || (run.line === line && run.column === 0));
        const run = this.#runs[Math.max(0, after - 1)]!;
        let index = run.index + Math.max(0, (line - run.line) * this.columns - run.column);
        while (index < this.count && (this.isHidden(index) || this.place(index).line < line))
            ++index;
        return Math.min(index, this.count);
    }

    /** The row that is `lines` below another one (above it, if negative), in the same column if possible. */
    moved(index: number, lines: number): number {
        const { line, column } = this.place(index);
        const to = Math.max(0, Math.min(this.lines - 1, line + lines));
        const first = this.firstIn(to);
        let found = first;
        for (let next = first + 1; next < this.count && this.place(next).line === to; ++next) {
            if (!this.isHidden(next) && this.place(next).column <= column)
                found = next;
        }
        return Math.min(found, this.count - 1);
    }

    /** The next (previous) row shown; \a index itself if there is none. */
    stepped(index: number, step: 1 | -1): number {
        for (let next = index + step; next >= 0 && next < this.count; next += step) {
            if (!this.isHidden(next))
                return next;
        }
        return index;
    }

    #cell(index: number): Place {
        const after = lowerBound(this.#runs, (run) => run.index <= index);
        const run = this.#runs[Math.max(0, after - 1)]!;
        const cell = run.column + index - run.index;
        return { line: run.line + Math.floor(cell / this.columns), column: cell % this.columns };
    }
}

/** Length of the prefix that fulfils the condition; no element after it may. */
function lowerBound<T>(list: readonly T[], fulfils: (element: T) => boolean): number {
    let low = 0;
    let high = list.length;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (fulfils(list[middle]!))
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}
