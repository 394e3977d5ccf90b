// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";
import type { RefObject } from "preact";
import { useEffect, useLayoutEffect, useMemo, useRef } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { isOwner } from "../model/access";
import { host } from "../model/host";
import { Layout } from "../model/layout";
import { arrival, restore, settingsPath, trail } from "../model/navigation";
import type { Path } from "../model/path";
import { RowType } from "../model/rows";
import { Screen, screenAt, shown } from "../model/Screen";
import { activeSearch, homePath, serviceOf } from "../model/services";
import { recentsPath, starsPath } from "../model/stars";
import { RpcError } from "../rpc/Connection";
import { Accounts } from "./Accounts";
import { FileTools } from "./Files";
import { FlowList, isFlow } from "./FlowList";
import { Icon } from "./icons";
import { PageSettings } from "./PageSettings";
import { Problem, Slow } from "./Problem";
import { RowList } from "./RowList";
import { ShareButton } from "./ShareButton";

/** Title of the current screen; empty until it is known. */
export const screenTitle = signal("");

/** The heading of a screen with this title; who comes by going forward finds the focus there before anything is painted. */
export function useHeading(title: string): RefObject<HTMLHeadingElement | null> {
    const heading = useRef<HTMLHeadingElement>(null);
    useEffect(() => {
        screenTitle.value = title;
    }, [title]);
    useLayoutEffect(() => {
        if (arrival.value === "forward")
            heading.current?.focus({ preventScroll: true });
    }, []);
    return heading;
}

/** The screen at \a path, entered while the component is mounted. */
export function useScreen(path: Path): Screen {
    const screen = useMemo(() => screenAt(path), [path]);
    // Not once the empty screen was painted, so that its rows are asked for a frame earlier.
    useLayoutEffect(() => {
        shown.add(screen);
        screen.enter();
        return () => {
            shown.delete(screen);
            screen.leave();
        };
    }, [screen]);
    return screen;
}

/** The text of a screen whose only row is a text: the service's message for an empty list. */
function emptyText(screen: Screen, rows: number): string | null {
    if (rows === 0)
        return screen.error.value ? null : t("There is nothing here.");
    const only = screen.count.value === 1 ? screen.row(0) : undefined;
    return only && only.type === RowType.text && only.icon === "" && only.path === "" ? only.title : null;
}

/** Placeholders for rows that are being read, or a notice while there is no connection to the host. */
export function Skeleton({ screen, rows = 8 }: { screen: Screen; rows?: number }) {
    if (screen.isCancelled.value)
        return null;
    if (host.isOpen.value === false) {
        return (
            <div class="blank">
                <Icon shape="alert" /><p>{t("This is shown once the host can be reached again.")}</p>
            </div>
        );
    }
    return (
        <div class="rows skeleton" role="status" aria-label={t("Loading")}>
            {Array.from({ length: rows }, (_, index) => (
                <div key={index} class="row"><span class="artwork" /><span class="lines"><i /><i /></span></div>
            ))}
        </div>
    );
}

/** The page's own words for screens of the host whose titles could be those of a service's. */
function ownTitle(path: Path): string {
    if (path === starsPath)
        return t("With a star on this radio");
    return path === recentsPath ? t("Heard lately") : "";
}

/** Empty until it is known. */
function titleOf(screen: Screen): string {
    const searched = activeSearch.value;
    if (searched)
        return t("Results for “%1”", searched.text);
    if (screen.error.value?.code === RpcError.notOffered)
        return t("Not opened");
    const crumbs = trail.value;
    const known = ownTitle(screen.path) || screen.title || crumbs[crumbs.length - 1]!.title;
    if (known !== "" || screen.count.value !== null)
        return known || serviceOf(screen.path)?.title || t("Untitled");
    return screen.error.value ? screen.error.value.title || t("Untitled") : "";
}

export function ScreenView({ path }: { path: Path }) {
    const screen = useScreen(path);
    screen.version.value;
    const count = screen.count.value;
    const rows = count === null ? 0 : new Layout(count, 1, screen.shapes).shown;
    const title = titleOf(screen);
    const empty = count === null ? null : emptyText(screen, rows);
    const service = serviceOf(path);
    const isSettings = path === settingsPath;
    const isCounted = rows > 0 && empty === null && path !== homePath.value && !isFlow(screen);
    const { scroll, row } = restore.value;
    const heading = useHeading(title);

    const isThere = count !== null;
    useLayoutEffect(() => {
        if (isThere && arrival.value === "back")
            window.scrollTo(0, scroll);
    }, [isThere]);

    return (
        <>
            <div class="heading">
                <h1 ref={heading} tabIndex={-1} dir="auto">
                    {title || <span class="pending"><span class="unseen">{t("Loading")}</span></span>}
                </h1>
                <p class="count" role="status">
                    {isCounted && tn("%n entry", "%n entries", rows)}
                </p>
                {!isSettings && title !== "" && <ShareButton path={path} title={title} />}
            </div>
            {service?.path === path && ((service.importPath && isOwner.value) || service.exportPath) && <FileTools service={service} />}
            {isSettings && <Accounts />}
            <Problem screen={screen} />
            <Slow screen={screen} />
            {count === null && !screen.error.value && <Skeleton screen={screen} />}
            {empty !== null && (
                <div class="blank"><Icon shape="radio" /><p dir="auto">{empty}</p></div>
            )}
            {rows > 0 && empty === null && (isFlow(screen)
                ? <FlowList screen={screen} label={title} />
                : <RowList screen={screen} start={arrival.value === "back" ? row : -1} label={title} />)}
            {isSettings && <PageSettings />}
        </>
    );
}
