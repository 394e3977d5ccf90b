// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import type { Screen } from "../model/Screen";
import { RowType } from "../model/rows";
import { moveAmong } from "./focus";
import { RowView } from "./RowView";

/** Longer lists are virtual (RowList). */
const maxRows = 60;

/** Whether the screen is short and has values: then rows are as high as their texts and errors need. */
export function isFlow(screen: Screen): boolean {
    const count = screen.count.value ?? 0;
    if (count === 0 || count > maxRows)
        return false;
    const rows = Array.from({ length: count }, (_, index) => screen.row(index));
    return rows.every((row) => row !== undefined) && rows.some((row) => row!.type === RowType.value);
}

export function FlowList({ screen, label }: { screen: Screen; label: string }) {
    screen.version.value;
    const indices = Array.from({ length: screen.count.value ?? 0 }, (_, index) => index);
    return (
        <ul class="rows flow" role="list" aria-label={label} onKeyDown={(event) => moveAmong(event.currentTarget, event)}>
            {indices.filter((index) => !screen.row(index)?.isEmpty).map((index) => (
                <li key={index} data-row={index}>
                    <RowView screen={screen} index={index} row={screen.row(index)} isActive />
                </li>
            ))}
        </ul>
    );
}
