// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { openSheet, sheets } from "../model/menu";
import { player, PlayState, toggle } from "../model/player";

/** Elements that handle keys themselves. */
const fields = "input, textarea, select";
/** Elements that the space bar operates. */
const operated = "button, a[href], summary, " + fields;

function key(event: KeyboardEvent): void {
    if (event.ctrlKey || event.metaKey || event.altKey || event.defaultPrevented)
        return;
    const target = event.target as Element;
    if (event.key === "/" && !target.closest(`${fields}, dialog`)) {
        event.preventDefault();
        document.querySelector<HTMLInputElement>("header input[type=search]")?.select();
    } else if (event.key === "?" && !target.closest(fields)) {
        event.preventDefault();
        if (sheets.peek().every((sheet) => sheet.kind !== "keys"))
            openSheet({ kind: "keys" });
    } else if (event.key === " " && (isPlayedRow(target) || !target.closest(operated))) {
        const { state } = player.peek();
        if (state !== PlayState.playing && state !== PlayState.paused)
            return;
        event.preventDefault();
        if (!event.repeat)
            toggle();
    }
}

/** Whether the target is the row that plays, where the space bar should pause instead of playing it again. */
function isPlayedRow(target: Element): boolean {
    return target.matches("button.audio[aria-current=true]");
}

export function listenToKeys(): () => void {
    document.addEventListener("keydown", key);
    return () => document.removeEventListener("keydown", key);
}
