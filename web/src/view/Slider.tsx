// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

interface Props {
    label: string;
    /** The value in words. */
    text: string;
    value: number;
    most: number;
    /** What an arrow key and what a page key change. */
    step: number;
    page: number;
    /** Called for each value while the thumb is dragged. */
    drag(value: number): void;
    /** Called with the value that was chosen at last, and for each key. */
    choose(value: number): void;
}

/** A slider from 0: the browser's own, with steps for keys that differ from those for pointers. */
export function Slider({ label, text, value, most, step, page, drag, choose }: Props) {
    const part = most > 0 ? Math.max(0, Math.min(1, value / most)) : 0;
    const key = (event: KeyboardEvent) => {
        if (event.ctrlKey || event.altKey || event.metaKey)
            return;
        const to = {
            ArrowRight: value + step, ArrowUp: value + step, ArrowLeft: value - step, ArrowDown: value - step,
            PageUp: value + page, PageDown: value - page, Home: 0, End: most,
        }[event.key];
        if (to === undefined)
            return;
        // Not to a list or a dialog around it either, whose keys these are as well.
        event.preventDefault();
        event.stopPropagation();
        choose(Math.max(0, Math.min(most, to)));
    };
    return (
        <input
            type="range"
            class="slider"
            aria-label={label}
            aria-valuetext={text}
            min={0}
            max={most}
            step={1}
            value={value}
            style={{ "--part": String(part) }}
            onInput={(event) => drag(Number(event.currentTarget.value))}
            onChange={(event) => choose(Number(event.currentTarget.value))}
            onKeyDown={key}
        />
    );
}
