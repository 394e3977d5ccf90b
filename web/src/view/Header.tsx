import { useEffect, useRef, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import {
    back, canGoBack, canGoForward, current, forward, open, openCrumb, openQuietly, replace,
    settingsPath,
} from "../model/navigation";
import { prefixOf, withParam } from "../model/path";
import { activeQuery, homePath, queries, type Query } from "../model/services";
import { Icon } from "./icons";

const typingPause = 350;
const shortest = 2;

/** What is searched where the reader is, unless another was chosen. */
function defaultQuery(): Query | undefined {
    const here = prefixOf(current.value);
    return queries.value.find((query) => prefixOf(query.path) === here) ?? queries.value[0];
}

function SearchField() {
    const active = activeQuery.value;
    const [text, setText] = useState(active?.text ?? "");
    const [chosen, setChosen] = useState(-1);
    const timer = useRef<ReturnType<typeof setTimeout> | undefined>(undefined);
    const field = useRef<HTMLInputElement>(null);
    const all = queries.value;
    const query = all[chosen] ?? active?.query ?? defaultQuery();

    // The address wins over what stands in the field, unless somebody types in it.
    useEffect(() => {
        if (document.activeElement !== field.current)
            setText(active?.text ?? "");
    }, [active?.text]);
    useEffect(() => {
        const focus = (event: KeyboardEvent) => {
            const target = event.target as Element;
            if (event.key !== "/" || event.ctrlKey || event.metaKey || event.altKey
                || target.closest("input, textarea, select, dialog"))
                return;
            event.preventDefault();
            field.current?.select();
        };
        document.addEventListener("keydown", focus);
        return () => document.removeEventListener("keydown", focus);
    }, []);

    const search = (wanted: string, where: Query | undefined) => {
        clearTimeout(timer.current);
        const trimmed = wanted.trim();
        if (!where || trimmed === "")
            return;
        const path = withParam(where.path, where.key, trimmed);
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
                    ref={field}
                    type="search"
                    enterkeyhint="search"
                    autocomplete="off"
                    spellcheck={false}
                    maxLength={200}
                    aria-label={query.title || t("Search")}
                    placeholder={query.title || t("Search")}
                    value={text}
                    onInput={(event) => typed(event.currentTarget.value)}
                    onKeyDown={(event) => {
                        if (event.key === "Escape")
                            typed("");
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

export function Header() {
    return (
        <header>
            <nav class="steps" aria-label={t("History")}>
                <button type="button" class="round" disabled={!canGoBack.value} onClick={back} aria-label={t("Back")}>
                    <Icon shape="back" />
                </button>
                <button type="button" class="round forward" disabled={!canGoForward.value} onClick={forward} aria-label={t("Forward")}>
                    <Icon shape="forward" />
                </button>
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
        </header>
    );
}
