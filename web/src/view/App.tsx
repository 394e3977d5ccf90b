// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useSignalEffect } from "@preact/signals";
import { useEffect } from "preact/hooks";

import { t } from "../i18n/i18n";
import { host } from "../model/host";
import { sheets } from "../model/menu";
import { current } from "../model/navigation";
import { failure, isAskSlow, isShown, player } from "../model/player";
import { searchedText } from "../model/services";
import { Breadcrumbs } from "./Breadcrumbs";
import { DropZone } from "./Files";
import { Header } from "./Header";
import { listenToKeys } from "./keys";
import { NoticeBar, Spoken } from "./Notices";
import { PlayerBar } from "./PlayerBar";
import { screenTitle, ScreenView } from "./ScreenView";
import { SearchView } from "./SearchView";
import { Sheets } from "./Sheets";

function skip(event: Event): void {
    event.preventDefault();
    document.querySelector("h1")?.focus();
}

/** The window title: what plays, and the screen's title. */
function documentTitle(): string {
    const { state, title } = player.value;
    const heard = state > 0 && title !== "" ? [`${state === 3 ? "⏸" : "▶"} ${title}`] : [];
    return [...heard, ...(screenTitle.value === "" ? [] : [screenTitle.value]), "Vesk"].join(" – ");
}

export function App() {
    useSignalEffect(() => {
        const root = document.documentElement;
        root.classList.toggle("has-player", isShown.value || failure.value !== null || isAskSlow.value);
        root.classList.toggle("is-lost", host.isOpen.value === false);
        root.dataset.state = String(player.value.state);
    });
    useSignalEffect(() => {
        document.title = documentTitle();
    });
    useEffect(listenToKeys, []);
    const searched = searchedText(current.value);
    return (
        <>
            <a class="skip" href="#content" onClick={skip}>{t("Skip to the content")}</a>
            <Header />
            <main id="content">
                <Breadcrumbs />
                {searched === null
                    ? <ScreenView key={current.value} path={current.value} />
                    : <SearchView key={current.value} text={searched} />}
            </main>
            <PlayerBar />
            {sheets.value.length === 0 && <NoticeBar />}
            <Spoken />
            <DropZone />
            <Sheets />
        </>
    );
}
