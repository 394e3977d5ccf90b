// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { alarms } from "../model/alarms";
import {
    back, canGoBack, canGoForward, current, forward, open, openQuietly, replace,
    radioPath, settingsPath,
} from "../model/navigation";
import { withParam } from "../model/path";
import { presets } from "../model/presets";
import { openQuiet } from "../model/quiet";
import { activeSearch, homePath, leaveForHome, openHome, queries, searches, searchFor, type Query } from "../model/services";
import { focusFirstRow } from "./focus";
import { Icon } from "./icons";
import { ConnectionNotice } from "./Notices";

const typingPause = 350;
const shortest = 2;

/** The value of the option that searches everywhere. */
const everywhere = -1;

function SearchField() {
    const active = activeSearch.value;
    const [text, setText] = useState(active?.text ?? "");
    /** Null for the search of this screen, or else for all. */
    const [chosen, setChosen] = useState<number | null>(null);
    const timer = useRef<ReturnType<typeof setTimeout> | undefined>(undefined);
    /** Path of the results that the field's text led to. */
    const results = useRef<string | null>(null);
    const all = queries.value;
    const shown = chosen ?? (active?.query ? all.indexOf(active.query) : everywhere);
    /** The search that is used, null for all of them. */
    const query = all.length === 1 && searches.value.length === 1 ? all[0]! : all[shown] ?? null;

    // A new screen sets the field's text, unless the field opened that screen.
    useEffect(() => {
        if (results.current === current.value)
            return;
        results.current = null;
        clearTimeout(timer.current);
        setText(active?.text ?? "");
        setChosen(null);
    }, [current.value, active?.text]);

    const search = (wanted: string, where: Query | null) => {
        clearTimeout(timer.current);
        const trimmed = wanted.trim();
        if (trimmed === "")
            return;
        const path = where ? withParam(where.path, where.key, trimmed) : searchFor(trimmed);
        const title = where?.title ?? "";
        results.current = path;
        if (path === current.peek())
            return;
        if (activeSearch.peek())
            replace(path, title);
        else
            openQuietly(path, title);
    };
    const typed = (wanted: string) => {
        setText(wanted);
        clearTimeout(timer.current);
        if (wanted.trim().length >= shortest)
            timer.current = setTimeout(() => search(wanted, query), typingPause);
        else if (wanted.trim() === "" && activeSearch.peek())
            leaveForHome();
    };
    if (searches.value.length === 0)
        return <div class="search" />;
    const label = query?.title || (searches.value.length > 1 ? t("Search all services") : t("Search"));
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
                    aria-label={label}
                    placeholder={label}
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
                {(all.length > 1 || searches.value.length > 1) && (
                    <select
                        aria-label={t("Where to search")}
                        value={shown}
                        onChange={(event) => {
                            const index = Number(event.currentTarget.value);
                            setChosen(index);
                            search(text, all[index] ?? null);
                        }}
                    >
                        <option value={everywhere}>{t("All services")}</option>
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
                        openHome();
                    }}
                >
                    <Icon shape="radio" />
                    <span>Vesk</span>
                </a>
                <SearchField />
                <button type="button" class="round quietly" aria-label={t("Quiet view")} onClick={openQuiet}>
                    <Icon shape="clock" />
                </button>
                {(presets.value ?? alarms.value) && (
                    <a
                        class="round"
                        href={"#" + radioPath}
                        aria-label={t("This radio")}
                        title={t("This radio")}
                        aria-current={current.value === radioPath ? "page" : undefined}
                        onClick={(event) => {
                            event.preventDefault();
                            if (current.value !== radioPath)
                                open(radioPath, t("This radio"));
                        }}
                    >
                        <Icon shape="set" />
                    </a>
                )}
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
