// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect } from "preact/hooks";

import { t } from "../i18n/i18n";
import { blameMenu, closeSheets } from "../model/menu";
import type { Path } from "../model/path";
import { readRow, type Row } from "../model/rows";
import type { Screen } from "../model/Screen";
import { isRecord, RpcError } from "../rpc/Connection";
import { Problem, Slow } from "./Problem";
import { RowView } from "./RowView";
import { Skeleton, useScreen } from "./ScreenView";

/** Rows of a menu that are shown at most. */
const maxRows = 100;

/** The rows of a menu to show, with their index. */
function rowsOf(screen: Screen, isShown: (row: Row) => boolean): [number, Row | undefined][] {
    const all = Array.from(
        { length: Math.min(screen.count.value ?? 0, maxRows) },
        (_, index): [number, Row | undefined] => [index, screen.row(index)]);
    return all.filter(([, row]) => !row || (!row.isEmpty && isShown(row)));
}

const everyRow = () => true;

/** The rows of a menu's screen, and a button that closes the menu, named by the screen's role `cancel`. */
export function MenuSheet({ path, isShown = everyRow }: { path: Path; isShown?(row: Row): boolean }) {
    const screen = useScreen(path);
    screen.version.value;
    const count = screen.count.value;
    const error = screen.error.value;
    useEffect(() => screen.show(0, maxRows - 1), [screen]);
    useEffect(() => {
        if (error?.name === RpcError.interrupted)
            blameMenu(path);
    }, [error, path]);
    const leave = readRow(isRecord(screen.roles.value.cancel) ? screen.roles.value.cancel : {}).title;
    const rows = rowsOf(screen, isShown);
    return (
        <>
            <Problem screen={screen} />
            <Slow screen={screen} />
            {count === null && !error && <Skeleton screen={screen} rows={2} />}
            {count !== null && rows.length === 0 && !error && isShown === everyRow && (
                <p class="blank">{t("There is nothing here.")}</p>
            )}
            {rows.length > 0 && (
                <ul class="menu-rows" role="list">
                    {rows.map(([index, row]) => (
                        <li key={index}>
                            <RowView screen={screen} index={index} row={row} isActive inMenu />
                        </li>
                    ))}
                </ul>
            )}
            {leave !== "" && (
                <p class="buttons"><button type="button" onClick={closeSheets}>{leave}</button></p>
            )}
        </>
    );
}
