import { useEffect, useLayoutEffect, useRef, useState } from "preact/hooks";

import type { Screen } from "../model/Screen";
import { RowView } from "./RowView";
import { rowsInSight } from "./window";

/** Rows that are drawn before and after those in sight. */
const spare = 8;

/** All rows are of one height, so that a place in the list is a row without having it read. */
function rowHeight(): number {
    const style = getComputedStyle(document.documentElement);
    return parseFloat(style.fontSize) * parseFloat(style.getPropertyValue("--row-rem"));
}

const steps: Readonly<Record<string, number>> = {
    ArrowDown: 1, ArrowUp: -1, PageDown: 8, PageUp: -8, Home: -Infinity, End: Infinity,
};

const mainOf = (index: number) => `[data-row="${index}"] [data-main]`;

/**
 * The rows of a screen in the page's own scrolling. Only those in sight are elements; one of them is
 * in the tab order, and the arrow keys move to others.
 */
export function RowList({ screen, start, label }: { screen: Screen; start: number; label: string }) {
    const list = useRef<HTMLUListElement>(null);
    const count = screen.count.value ?? 0;
    screen.version.value;
    const [height, setHeight] = useState(rowHeight);
    const [sight, setSight] = useState({ first: 0, last: 15 });
    const [active, setActive] = useState(Math.max(0, start));
    const focusNext = useRef(start >= 0);
    const here = Math.min(active, count - 1);

    useLayoutEffect(() => {
        let frame = 0;
        const look = () => {
            frame = 0;
            const size = rowHeight();
            const top = list.current?.getBoundingClientRect().top ?? 0;
            const next = rowsInSight(-top, window.innerHeight, size, count, spare);
            setHeight(size);
            setSight((old) => (old.first === next.first && old.last === next.last ? old : next));
        };
        const later = () => {
            frame ||= requestAnimationFrame(look);
        };
        look();
        window.addEventListener("scroll", later, { passive: true });
        window.addEventListener("resize", later);
        return () => {
            cancelAnimationFrame(frame);
            window.removeEventListener("scroll", later);
            window.removeEventListener("resize", later);
        };
    }, [count]);
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
            || target.matches("input, select"))
            return;
        event.preventDefault();
        // The row in focus, not the one last drawn as such: keys come faster than drawing.
        const from = Number(target.closest<HTMLElement>("[data-row]")?.dataset.row ?? here);
        const next = Math.max(0, Math.min(count - 1, from + step));
        const top = (list.current?.getBoundingClientRect().top ?? 0) + next * height;
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
    for (let index = sight.first; index <= Math.min(sight.last, count - 1); ++index)
        indices.add(index);
    // What has the focus stays, wherever the reader scrolls.
    if (here >= 0)
        indices.add(here);
    return (
        <ul
            ref={list}
            class="rows"
            role="list"
            aria-label={label}
            style={{ height: `${count * height}px` }}
            onKeyDown={move}
        >
            {[...indices].sort((a, b) => a - b).map((index) => (
                <li
                    key={index}
                    data-row={index}
                    aria-setsize={count}
                    aria-posinset={index + 1}
                    style={{ transform: `translateY(${index * height}px)` }}
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
