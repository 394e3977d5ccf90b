// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { changesFavorites, isFavorite, toldFavorite } from "../model/favorites";
import { activate, asRpcError, closeSheets, isMenu, openMenu, sheets } from "../model/menu";
import { announce } from "../model/notices";
import { open } from "../model/navigation";
import { patience, screenAt, type Screen } from "../model/Screen";
import { withParam } from "../model/path";
import { asked, isPlayed, play, player, PlayState } from "../model/player";
import { hasLibrary } from "../model/presets";
import { RowType, type Row } from "../model/rows";
import { Artwork } from "./Artwork";
import { Icon, type Shape } from "./icons";
import { ValueControl } from "./ValueControl";
import { errorText } from "./words";

interface Props {
    screen: Screen;
    index: number;
    row: Row | undefined;
    isActive: boolean;
    inMenu?: boolean;
}

function Texts({ row }: { row: Row }) {
    return (
        <span class="texts">
            <span class="title" dir="auto">{row.title || row.description || t("Untitled")}</span>
            {row.title && row.description && <span class="description" dir="auto">{row.description}</span>}
        </span>
    );
}

function fallbackOf(row: Row): Shape {
    if (row.type === RowType.audio)
        return "radio";
    return row.type === RowType.query ? "search" : "folder";
}

/** A row, drawn by its type: link, play button, action, value or text. */
export function RowView(props: Props) {
    const { row, screen, index, isActive, inMenu } = props;
    if (!row)
        return <div class="row skeleton"><span class="artwork" /><span class="lines"><i /><i /></span></div>;
    const canKeep = row.type === RowType.audio && !row.disabled && row.path !== "" && hasLibrary.value;
    const more = (isMenu(row.contextPath) || canKeep) && !inMenu;
    const item = canKeep ? { screen: screen.path, row: index, path: row.path, title: row.title } : undefined;
    return (
        <div class={more ? "row has-more" : "row"}>
            <Body {...props} row={row} />
            {more && (
                <button
                    type="button"
                    class="round more"
                    tabIndex={isActive ? 0 : -1}
                    aria-haspopup="dialog"
                    aria-label={t("More for %1", row.title)}
                    onClick={() => openMenu(isMenu(row.contextPath) ? row.contextPath : "", row.title, item)}
                >
                    <Icon shape="more" />
                </button>
            )}
        </div>
    );
}

function Body(props: Props & { row: Row }) {
    const { row } = props;
    if (row.disabled)
        return <Unavailable {...props} />;
    switch (row.type) {
        case RowType.container:
            return <Container {...props} />;
        case RowType.header:
            return <Header {...props} />;
        case RowType.audio:
            return <Audio {...props} />;
        case RowType.value:
            return <ValueControl {...props} />;
        case RowType.query:
            return <QueryForm {...props} />;
        case RowType.activate:
            return <Activate {...props} />;
        default:
            return <Unavailable {...props} />;
    }
}

function Container({ row, index, isActive, inMenu }: Props & { row: Row }) {
    return (
        <a
            class="body"
            data-main
            href={"#" + row.path}
            tabIndex={isActive ? 0 : -1}
            onClick={(event) => {
                if (event.ctrlKey || event.metaKey || event.shiftKey)
                    return;
                event.preventDefault();
                if (inMenu)
                    return openMenu(row.path, row.title);
                screenAt(row.path).expect();
                open(row.path, row.title, index);
            }}
        >
            {!inMenu && <Artwork icon={row.icon} fallback={fallbackOf(row)} />}
            <Texts row={row} />
            <Icon shape="chevron" />
        </a>
    );
}

function Header({ row, isActive }: Props & { row: Row }) {
    return <h2 class="body header" data-main tabIndex={isActive ? 0 : -1} dir="auto">{row.title}</h2>;
}

/** The row's mark: whether it was asked for, plays or is paused. */
function playMark(row: Row, screen: Screen, index: number): "asked" | "playing" | "paused" | null {
    const now = asked.value;
    if (now?.screen === screen.path && now.row === index)
        return "asked";
    const { state } = player.value;
    if (state === PlayState.stopped || !isPlayed(player.value, row))
        return null;
    if (state === PlayState.transitioning)
        return "asked";
    return state === PlayState.paused ? "paused" : "playing";
}

function Audio({ row, screen, index, isActive, inMenu }: Props & { row: Row }) {
    const mark = playMark(row, screen, index);
    return (
        <button
            type="button"
            class={mark ? "body audio current" : "body audio"}
            data-main
            tabIndex={isActive ? 0 : -1}
            aria-current={mark ? "true" : undefined}
            onClick={() => {
                void play(screen.path, index, row.path);
                if (inMenu)
                    closeSheets();
            }}
        >
            <Artwork icon={row.icon} fallback="radio" />
            <Texts row={row} />
            {mark === "paused" ? (
                <span class="mark" aria-hidden="true"><Icon shape="pause" /></span>
            ) : mark ? (
                <span class={`mark ${mark}`} aria-hidden="true"><i /><i /><i /></span>
            ) : (
                <span class="hint"><Icon shape="play" /></span>
            )}
            {row.preferred && <span class="badge">{t("Preferred")}</span>}
        </button>
    );
}

function Unavailable({ row, isActive }: Props & { row: Row }) {
    const isText = row.icon === "" && row.description === "" && !row.disabled;
    return (
        <div class={isText ? "body plain" : "body unavailable"} data-main tabIndex={isActive ? 0 : -1}>
            {!isText && <Artwork icon={row.icon} fallback="radio" />}
            <Texts row={row} />
            {!isText && <span class="badge">{t("Unavailable")}</span>}
        </div>
    );
}

function QueryForm({ row, index, isActive }: Props & { row: Row }) {
    const [text, setText] = useState("");
    return (
        <form
            class="body query"
            onSubmit={(event) => {
                event.preventDefault();
                if (text.trim() !== "" && row.queryPath !== "")
                    open(withParam(row.queryPath, row.query, text.trim()), row.title, index);
            }}
        >
            <Icon shape="search" />
            <input
                data-main
                type="search"
                enterkeyhint="search"
                autocomplete="off"
                maxLength={200}
                tabIndex={isActive ? 0 : -1}
                aria-label={row.title}
                placeholder={row.title}
                value={text}
                onInput={(event) => setText(event.currentTarget.value)}
            />
        </form>
    );
}

/** The title of the item that the open menu belongs to. */
function itemTitle(): string {
    const open = sheets.peek();
    const top = open[open.length - 1];
    return top?.kind === "menu" ? top.title : player.peek().title;
}

function Activate({ row, screen, index, isActive, inMenu }: Props & { row: Row }) {
    const [isBusy, setBusy] = useState(false);
    const [isSlow, setSlow] = useState(false);
    useEffect(() => {
        setSlow(false);
        const timer = isBusy ? setTimeout(() => setSlow(true), patience) : undefined;
        return () => clearTimeout(timer);
    }, [isBusy]);
    const was = changesFavorites(row) ? isFavorite(screen.path) : null;
    const run = async () => {
        if (isBusy)
            return;
        setBusy(true);
        const title = itemTitle();
        try {
            const isDone = await activate(screen.path, index, row);
            if (!isDone)
                return screen.reload();
            if (inMenu)
                closeSheets();
            if (was === null)
                announce({ kind: "done", text: row.title });
            else
                await toldFavorite(screen.path, title, !was);
        } catch (error) {
            announce({ kind: "failed", text: errorText(asRpcError(error)) });
        } finally {
            setBusy(false);
        }
    };
    return (
        <button
            type="button"
            class="body activate"
            data-main
            aria-busy={isBusy}
            tabIndex={isActive ? 0 : -1}
            onClick={() => void run()}
        >
            {was !== null && <span class={was ? "heart on" : "heart"}><Icon shape={was ? "hearted" : "heart"} /></span>}
            <Texts row={isSlow ? { ...row, description: t("The service takes long to answer.") } : row} />
        </button>
    );
}
