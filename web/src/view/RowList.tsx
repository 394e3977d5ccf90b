// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useLayoutEffect, useMemo, useRef, useState } from "preact/hooks";

import { Layout } from "../model/layout";
import type { Screen } from "../model/Screen";
import { RowView } from "./RowView";
import { rowsInSight } from "./window";

/** Rows drawn before and after the visible ones. */
const spare = 8;

/** Height of a row in pixels. All rows have the same, so that a scroll position determines a row without reading it. */
function rowHeight(): number {
    const style = getComputedStyle(document.documentElement);
    return parseFloat(style.fontSize) * parseFloat(style.getPropertyValue("--row-rem"));
}

const wide = matchMedia("(min-width: 87.5rem)");

const steps: Readonly<Record<string, (layout: Layout, from: number) => number>> = {
    ArrowDown: (layout, from) => layout.moved(from, 1),
    ArrowUp: (layout, from) => layout.moved(from, -1),
    ArrowRight: (layout, from) => layout.stepped(from, 1),
    ArrowLeft: (layout, from) => layout.stepped(from, -1),
    PageDown: (layout, from) => layout.moved(from, 8),
    PageUp: (layout, from) => layout.moved(from, -8),
    Home: (layout) => layout.firstIn(0),
    End: (layout) => layout.stepped(layout.count, -1),
};

function styleOf(layout: Layout, index: number, height: number) {
    const { line, column } = layout.place(index);
    return {
        width: `${layout.isLine(index) ? 100 : 100 / layout.columns}%`,
        transform: `translate(${column * 100}%, ${line * height}px)`,
    };
}

const mainOf = (index: number) => `[data-row="${index}"] [data-main]`;

/**
 * A virtual list that scrolls with the document, in two columns where there is room. Only visible
 * rows are elements; one of them is in the tab order, and the arrow keys move to others (roving
 * tabindex).
 */
export function RowList({ screen, start, label }: { screen: Screen; start: number; label: string }) {
    const list = useRef<HTMLUListElement>(null);
    const count = screen.count.value ?? 0;
    const version = screen.version.value;
    const [columns, setColumns] = useState(wide.matches ? 2 : 1);
    const layout = useMemo(() => new Layout(count, columns, screen.shapes), [screen, count, columns, version]);
    const [height, setHeight] = useState(rowHeight);
    const [sight, setSight] = useState({ first: 0, last: 15 });
    const [active, setActive] = useState(Math.max(0, start));
    const focusNext = useRef(start >= 0);
    const here = layout.isHidden(active) ? layout.stepped(active, 1) : Math.min(active, count - 1);

    useLayoutEffect(() => {
        let frame = 0;
        const look = () => {
            frame = 0;
            const size = rowHeight();
            const top = list.current?.getBoundingClientRect().top ?? 0;
            const lines = rowsInSight(-top, window.innerHeight, size, layout.lines, spare);
            const next = { first: layout.firstIn(lines.first), last: layout.firstIn(lines.last + 1) - 1 };
            setHeight(size);
            setSight((old) => (old.first === next.first && old.last === next.last ? old : next));
        };
        const later = () => {
            frame ||= requestAnimationFrame(look);
        };
        look();
        window.addEventListener("scroll", later, { passive: true });
        window.addEventListener("resize", later);
        const widen = () => setColumns(wide.matches ? 2 : 1);
        wide.addEventListener("change", widen);
        return () => {
            wide.removeEventListener("change", widen);
            cancelAnimationFrame(frame);
            window.removeEventListener("scroll", later);
            window.removeEventListener("resize", later);
        };
    }, [layout]);
    useEffect(() => screen.show(sight.first, sight.last), [screen, sight]);
    useEffect(() => {
        if (!focusNext.current)
            return;
        const control = list.current?.querySelector<HTMLElement>(mainOf(here));
        if (!control)
            return;
        focusNext.current = false;
        control.focus({ preventScroll: true });
    });

    const move = (event: KeyboardEvent) => {
        const step = steps[event.key];
        const target = event.target as Element;
        if (step === undefined || event.ctrlKey || event.altKey || event.metaKey
            || (columns === 1 && /Left|Right/.test(event.key)) || target.matches("input, select"))
            return;
        event.preventDefault();
        // From the element in focus: with key repeat, `here` may be older than that.
        const from = Number(target.closest<HTMLElement>("[data-row]")?.dataset.row ?? here);
        const next = Math.max(0, Math.min(count - 1, step(layout, from)));
        const top = (list.current?.getBoundingClientRect().top ?? 0) + layout.place(next).line * height;
        const upper = 140;
        const lower = window.innerHeight - 160;
        if (top < upper)
            window.scrollBy(0, top - upper);
        else if (top + height > lower)
            window.scrollBy(0, top + height - lower);
        const control = list.current?.querySelector<HTMLElement>(mainOf(next));
        if (control)
            return control.focus({ preventScroll: true });
        focusNext.current = true;
        setActive(next);
    };

    const indices = new Set<number>();
    for (let index = sight.first; index <= Math.min(sight.last, count - 1); ++index) {
        if (!layout.isHidden(index))
            indices.add(index);
    }
    // The row in focus remains an element when it is scrolled out of view.
    if (here >= 0)
        indices.add(here);
    return (
        <ul
            ref={list}
            class={columns > 1 ? "rows columns" : "rows"}
            role="list"
            aria-label={label}
            style={{ height: `${layout.lines * height}px` }}
            onKeyDown={move}
        >
            {[...indices].sort((a, b) => a - b).map((index) => (
                <li
                    key={index}
                    data-row={index}
                    aria-setsize={layout.shown}
                    aria-posinset={layout.position(index) + 1}
                    style={styleOf(layout, index, height)}
                    onFocusCapture={() => setActive(index)}
                >
                    <RowView
                        screen={screen}
                        index={index}
                        row={screen.row(index)}
                        isActive={index === here}
                    />
                </li>
            ))}
        </ul>
    );
}
