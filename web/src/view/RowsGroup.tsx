// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import type { ComponentChildren } from "preact";
import { useEffect, useId } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { Layout } from "../model/layout";
import { open } from "../model/navigation";
import type { Path } from "../model/path";
import { RpcError } from "../rpc/Connection";
import { Problem, Slow } from "./Problem";
import { RowView } from "./RowView";
import { Skeleton, useScreen } from "./ScreenView";

/** Rows of a group; the others are shown on a screen of their own. */
const maxRows = 5;

interface FrameProps {
    groupKey: string;
    title: string;
    head?: ComponentChildren;
    children: ComponentChildren;
}

/** A group of rows on a screen with several: its title, and what stands beside that. */
export function GroupFrame({ groupKey, title, head, children }: FrameProps) {
    const id = useId();
    return (
        <section class="found" data-group={groupKey} aria-labelledby={id}>
            <div class="found-head">
                <h2 id={id} dir="auto">{title}</h2>
                {head}
            </div>
            {children}
        </section>
    );
}

interface Props {
    groupKey: string;
    title: string;
    path: Path;
    /** Called once there are rows, or a reason why there are none. */
    came?(): void;
    /** What is said when there is nothing. */
    empty?: string;
    /** Further controls, shown when there is something. */
    tools?: ComponentChildren;
}

/** The first rows of a screen, and a way to all of them. */
export function RowsGroup({ groupKey, title, path, came, empty, tools }: Props) {
    const screen = useScreen(path);
    screen.version.value;
    const count = screen.count.value;
    const error = screen.error.value;
    useEffect(() => screen.show(0, maxRows - 1), [screen]);
    const isThere = count !== null || error !== null;
    useEffect(() => {
        if (isThere)
            came?.();
    }, [isThere]);
    const total = count === null ? 0 : new Layout(count, 1, screen.shapes).shown;
    const rows = Array.from({ length: count ?? 0 }, (_, index) => index)
        .filter((index) => screen.row(index) && !screen.row(index)!.isEmpty)
        .slice(0, maxRows);
    const head = (
        <>
            <p class="count" role="status">{total > 0 && tn("%n entry", "%n entries", total)}</p>
            {total > rows.length && (
                <a
                    class="plain-button"
                    href={"#" + path}
                    aria-label={t("Show all of %1", title)}
                    onClick={(event) => {
                        if (event.ctrlKey || event.metaKey || event.shiftKey)
                            return;
                        event.preventDefault();
                        open(path, title);
                    }}
                >
                    {t("Show all")}
                </a>
            )}
            {total > 0 && tools}
        </>
    );
    // A lost connection and a service that was left have been told elsewhere.
    const isCancelled = error?.code === RpcError.cancelled;
    return (
        <GroupFrame groupKey={groupKey} title={title} head={head}>
            {!isCancelled && <Problem screen={screen} />}
            <Slow screen={screen} />
            {count === null && !error && <Skeleton screen={screen} rows={2} />}
            {count !== null && total === 0 && !error && <p class="nothing">{empty ?? t("There is nothing here.")}</p>}
            {rows.length > 0 && (
                <ul class="rows flow" role="list" aria-label={title}>
                    {rows.map((index) => (
                        <li key={index} data-row={index}>
                            <RowView screen={screen} index={index} row={screen.row(index)} isActive />
                        </li>
                    ))}
                </ul>
            )}
        </GroupFrame>
    );
}
