// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import {
    back, canGoBack, canGoForward, current, forward, leave, open, openCrumb, openQuietly, replace,
    settingsPath,
} from "../model/navigation";
import { prefixOf, withParam } from "../model/path";
import { activeQuery, homePath, queries, type Query } from "../model/services";
import { focusFirstRow } from "./focus";
import { Icon } from "./icons";
import { ConnectionNotice } from "./Notices";

const typingPause = 350;
const shortest = 2;

/** The query that the search field uses on this screen, unless another one was chosen. */
function defaultQuery(): Query | undefined {
    const here = prefixOf(current.value);
    return queries.value.find((query) => prefixOf(query.path) === here) ?? queries.value[0];
}

function SearchField() {
    const active = activeQuery.value;
    const [text, setText] = useState(active?.text ?? "");
    const [chosen, setChosen] = useState(-1);
    const timer = useRef<ReturnType<typeof setTimeout> | undefined>(undefined);
    /** Path of the results that the field's text led to. */
    const results = useRef<string | null>(null);
    const all = queries.value;
    const query = all[chosen] ?? active?.query ?? defaultQuery();

    // A new screen sets the field's text, unless the field opened that screen.
    useEffect(() => {
        if (results.current === current.value)
            return;
        results.current = null;
        clearTimeout(timer.current);
        setText(active?.text ?? "");
    }, [current.value, active?.text]);

    const search = (wanted: string, where: Query | undefined) => {
        clearTimeout(timer.current);
        const trimmed = wanted.trim();
        if (!where || trimmed === "")
            return;
        const path = withParam(where.path, where.key, trimmed);
        results.current = path;
        if (path === current.peek())
            return;
        if (activeQuery.peek())
            replace(path, where.title);
        else
            openQuietly(path, where.title);
    };
    const typed = (wanted: string) => {
        setText(wanted);
        clearTimeout(timer.current);
        if (wanted.trim().length >= shortest)
            timer.current = setTimeout(() => search(wanted, query), typingPause);
        else if (wanted.trim() === "" && activeQuery.peek())
            leave(homePath.peek());
    };
    if (!query)
        return <div class="search" />;
    return (
        <search class="search" role="search">
            <form
                onSubmit={(event) => {
                    event.preventDefault();
                    search(text, query);
                    document.querySelector<HTMLElement>("h1")?.focus();
                }}
            >
                <Icon shape="search" />
                <input
                    type="search"
                    enterkeyhint="search"
                    autocomplete="off"
                    spellcheck={false}
                    maxLength={200}
                    aria-label={query.title || t("Search")}
                    placeholder={query.title || t("Search")}
                    dir="auto"
                    value={text}
                    onInput={(event) => typed(event.currentTarget.value)}
                    onKeyDown={(event) => {
                        if (event.key === "Escape") {
                            event.preventDefault();
                            typed("");
                        } else if (event.key === "ArrowDown") {
                            event.preventDefault();
                            focusFirstRow();
                        }
                    }}
                />
                {all.length > 1 && (
                    <select
                        aria-label={t("Where to search")}
                        value={all.indexOf(query)}
                        onChange={(event) => {
                            const index = Number(event.currentTarget.value);
                            setChosen(index);
                            search(text, all[index]);
                        }}
                    >
                        {all.map((other, index) => (
                            <option key={index} value={index}>{other.serviceTitle || other.title}</option>
                        ))}
                    </select>
                )}
            </form>
        </search>
    );
}

/** Uses aria-disabled when there is no step to take: a button that becomes disabled loses the focus. */
function Step({ shape, label, can, step }: { shape: "back" | "forward"; label: string; can: boolean; step(): void }) {
    return (
        <button
            type="button"
            class={`round ${shape}`}
            aria-disabled={!can}
            onClick={() => can && step()}
            aria-label={label}
        >
            <Icon shape={shape} />
        </button>
    );
}

export function Header() {
    return (
        <header>
            <div class="bar">
                <nav class="steps" aria-label={t("History")}>
                    <Step shape="back" label={t("Back")} can={canGoBack.value} step={back} />
                    <Step shape="forward" label={t("Forward")} can={canGoForward.value} step={forward} />
                </nav>
                <a
                    class="brand"
                    href={"#" + homePath.value}
                    aria-label={`Vesk – ${t("Start page")}`}
                    onClick={(event) => {
                        event.preventDefault();
                        openCrumb(homePath.value, "");
                    }}
                >
                    <Icon shape="radio" />
                    <span>Vesk</span>
                </a>
                <SearchField />
                <a
                    class="round"
                    href={"#" + settingsPath}
                    aria-label={t("Settings")}
                    aria-current={current.value === settingsPath ? "page" : undefined}
                    onClick={(event) => {
                        event.preventDefault();
                        if (current.value !== settingsPath)
                            open(settingsPath, t("Settings"));
                    }}
                >
                    <Icon shape="settings" />
                </a>
            </div>
            <ConnectionNotice />
        </header>
    );
}
