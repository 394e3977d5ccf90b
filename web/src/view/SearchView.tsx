// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useLayoutEffect, useRef, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { arrival, restore } from "../model/navigation";
import { withParam } from "../model/path";
import { loadSearches, searches, searchFor, services, type Query, type Searches } from "../model/services";
import { moveAmong } from "./focus";
import { GroupFrame, RowsGroup } from "./RowsGroup";
import { useHeading } from "./ScreenView";
import { ShareButton } from "./ShareButton";
import { errorText } from "./words";

/** The row that was in focus last, to go on there after coming back. */
let left = { text: "", group: "", row: -1 };

interface Group {
    readonly key: string;
    readonly searches: Searches;
    /** Null while the service's searches are being read, and when they cannot be. */
    readonly query: Query | null;
}

/** One group for each search of each service. */
function groupsOf(all: readonly Searches[]): Group[] {
    return all.flatMap((each): Group[] => (
        each.queries?.map((query) => ({ key: query.path, searches: each, query }))
        ?? [{ key: each.service.path, searches: each, query: null }]));
}

function titleOf({ searches: { service, queries }, query }: Group): string {
    return query && (queries?.length ?? 0) > 1 ? `${service.title}: ${query.title}` : service.title;
}

/**
 * What all services find, each in a group of its own. Groups stand in the order in which they came,
 * those that are awaited at the end, so that nothing that is there already moves.
 */
export function SearchView({ text }: { text: string }) {
    const list = useRef<HTMLDivElement>(null);
    const [come, setCome] = useState<readonly string[]>([]);
    const groups = groupsOf(searches.value);
    const title = t("Results for “%1”", text);
    const heading = useHeading(title);
    const { scroll } = restore.value;

    useLayoutEffect(() => {
        if (arrival.value !== "back")
            return;
        window.scrollTo(0, scroll);
        if (left.text !== text)
            return;
        const group = [...(list.current?.children ?? [])].find((each) => (each as HTMLElement).dataset.group === left.group);
        group?.querySelector<HTMLElement>(`[data-row="${left.row}"] [data-main]`)?.focus({ preventScroll: true });
    }, []);

    const place = (key: string) => (come.includes(key) ? come.indexOf(key) : come.length);
    const sorted = [...groups].sort((a, b) => place(a.key) - place(b.key));
    return (
        <>
            <div class="heading">
                <h1 ref={heading} tabIndex={-1} dir="auto">{title}</h1>
                <ShareButton path={searchFor(text)} title={title} />
            </div>
            {services.value !== null && groups.length === 0 && <p class="blank">{t("There is nothing to search.")}</p>}
            <div
                ref={list}
                onKeyDown={(event) => moveAmong(event.currentTarget, event)}
                onFocusCapture={(event) => {
                    const target = event.target as Element;
                    left = {
                        text,
                        group: target.closest<HTMLElement>("[data-group]")?.dataset.group ?? "",
                        row: Number(target.closest<HTMLElement>("[data-row]")?.dataset.row ?? -1),
                    };
                }}
            >
                {sorted.map((group) => (
                    <GroupView
                        key={group.key}
                        group={group}
                        text={text}
                        came={() => setCome((old) => (old.includes(group.key) ? old : [...old, group.key]))}
                    />
                ))}
            </div>
        </>
    );
}

interface Props {
    group: Group;
    text: string;
    /** Called once there are rows, or a reason why there are none. */
    came(): void;
}

function GroupView({ group, text, came }: Props) {
    const { searches: { service, error }, query } = group;
    useEffect(() => {
        if (error)
            came();
    }, [error]);
    if (query)
        return <RowsGroup groupKey={group.key} title={titleOf(group)} path={withParam(query.path, query.key, text)} came={came} />;
    return (
        <GroupFrame groupKey={group.key} title={titleOf(group)}>
            {error ? (
                <div class="blank" role="alert">
                    <p dir="auto">{errorText(error)}</p>
                    <button type="button" class="filled" onClick={() => void loadSearches(service)}>{t("Try again")}</button>
                </div>
            ) : <div class="rows skeleton" role="status" aria-label={t("Loading")} />}
        </GroupFrame>
    );
}
