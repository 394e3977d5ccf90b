import { useEffect, useLayoutEffect, useMemo, useRef } from "preact/hooks";

import { t, tn } from "../i18n/i18n";
import { arrival, restore, settingsPath, trail } from "../model/navigation";
import type { Path } from "../model/path";
import { RowType } from "../model/rows";
import { Screen, screenAt, shown } from "../model/Screen";
import { activeQuery, homePath, serviceOf } from "../model/services";
import { Accounts } from "./Accounts";
import { Icon } from "./icons";
import { RowList } from "./RowList";

/** Shows a screen as long as it is mounted. */
export function useScreen(path: Path): Screen {
    const screen = useMemo(() => screenAt(path), [path]);
    useEffect(() => {
        shown.add(screen);
        screen.enter();
        return () => {
            shown.delete(screen);
            screen.leave();
        };
    }, [screen]);
    return screen;
}

export function Problem({ screen }: { screen: Screen }) {
    const error = screen.error.value;
    if (!error)
        return null;
    return (
        <div class="blank" role="alert">
            <Icon shape="alert" />
            <p>{error.message || t("Something went wrong.")}</p>
            <button type="button" class="filled" onClick={() => screen.retry()}>{t("Try again")}</button>
        </div>
    );
}

/** A screen whose only row is a text says that there is nothing. */
function emptyText(screen: Screen): string | null {
    if (screen.count.value === 0)
        return t("There is nothing here.");
    const only = screen.count.value === 1 ? screen.row(0) : undefined;
    return only && only.type === RowType.text && only.icon === "" && only.path === "" ? only.title : null;
}

export function Skeleton({ rows = 8 }: { rows?: number }) {
    return (
        <div class="rows skeleton" role="status" aria-label={t("Loading")}>
            {Array.from({ length: rows }, (_, index) => (
                <div key={index} class="row"><span class="artwork" /><span class="lines"><i /><i /></span></div>
            ))}
        </div>
    );
}

function titleOf(screen: Screen): string {
    const searched = activeQuery.value;
    if (searched)
        return t("Results for “%1”", searched.text);
    const crumbs = trail.value;
    const known = screen.title || crumbs[crumbs.length - 1]!.title;
    if (known !== "" || screen.count.value !== null)
        return known || serviceOf(screen.path)?.title || t("Untitled");
    return screen.error.value?.title || "…";
}

export function ScreenView({ path }: { path: Path }) {
    const screen = useScreen(path);
    const heading = useRef<HTMLHeadingElement>(null);
    screen.version.value;
    const count = screen.count.value;
    const title = titleOf(screen);
    const empty = emptyText(screen);
    const isCounted = count !== null && count > 0 && empty === null
        && path !== homePath.value && path !== settingsPath;
    const { scroll, row } = restore.value;

    useEffect(() => {
        document.title = `${title} – Vesk`;
    }, [title]);
    useEffect(() => {
        if (arrival.value === "forward")
            heading.current?.focus({ preventScroll: true });
    }, []);
    const isThere = count !== null;
    useLayoutEffect(() => {
        if (isThere && arrival.value === "back")
            window.scrollTo(0, scroll);
    }, [isThere]);

    return (
        <>
            <div class="heading">
                <h1 ref={heading} tabIndex={-1}>{title}</h1>
                <p class="count" role="status">
                    {isCounted && tn("%n entry", "%n entries", count ?? 0)}
                </p>
            </div>
            {path === settingsPath && <Accounts />}
            <Problem screen={screen} />
            {count === null && !screen.error.value && <Skeleton />}
            {empty !== null && (
                <div class="blank"><Icon shape="radio" /><p>{empty}</p></div>
            )}
            {count !== null && count > 0 && empty === null && (
                <RowList screen={screen} start={arrival.value === "back" ? row : -1} label={title} />
            )}
        </>
    );
}
