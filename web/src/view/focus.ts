// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

const operable = "[data-main][tabindex='0'], button:not([disabled]), a[href], input, select";

/** The element to focus after the one in focus was removed: one in its nearest remaining ancestor, or the title. */
function nearest(chain: readonly Element[]): HTMLElement | null {
    for (const element of chain) {
        if (!element.isConnected || element.matches("main, #app, body, html"))
            continue;
        const dialog = element.closest("dialog");
        if (dialog && !dialog.open)
            continue;
        const found = element.matches("dialog")
            ? element.querySelector<HTMLElement>("h2")
            : element.querySelector<HTMLElement>(operable);
        if (found)
            return found;
    }
    return document.querySelector<HTMLElement>("dialog[open] h2") ?? document.querySelector<HTMLElement>("h1");
}

/** Moves the focus to the nearest operable element when the focused one is removed; browsers would focus the body. */
export function guardFocus(): void {
    let chain: Element[] = [];
    document.addEventListener("focusin", (event) => {
        chain = [];
        for (let element = event.target as Element | null; element; element = element.parentElement)
            chain.push(element);
    });
    const look = () => {
        const [last] = chain;
        const isLost = document.activeElement === null || document.activeElement === document.body;
        if (!isLost || last === undefined)
            return;
        const dialog = last.closest("dialog");
        if (!last.isConnected || (dialog && !dialog.open))
            nearest(chain.slice(1))?.focus({ preventScroll: true });
    };
    new MutationObserver(look).observe(document.body, { childList: true, subtree: true });
}

/** Enters the list, for example from the search field. */
export function focusFirstRow(): void {
    document.querySelector<HTMLElement>("main .rows [data-main]")?.focus();
}

/** Handles arrow keys, Home and End in a list whose rows are all elements. */
export function moveAmong(list: ParentNode, event: KeyboardEvent): void {
    const target = event.target as Element;
    if (event.ctrlKey || event.altKey || event.metaKey || target.matches("input:not([type=checkbox]), select"))
        return;
    const items = [...list.querySelectorAll<HTMLElement>("[data-main]")];
    const at = items.indexOf(target.closest<HTMLElement>("[data-main]")!);
    const to = { ArrowDown: at + 1, ArrowUp: at < 0 ? items.length - 1 : at - 1, Home: 0, End: items.length - 1 }[event.key];
    if (to === undefined || items.length === 0)
        return;
    event.preventDefault();
    items[Math.max(0, Math.min(items.length - 1, to))]!.focus();
}
