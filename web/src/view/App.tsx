// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useSignalEffect } from "@preact/signals";
import { useEffect } from "preact/hooks";

import { t } from "../i18n/i18n";
import { access, isOwner } from "../model/access";
import { host } from "../model/host";
import { sheets } from "../model/menu";
import { alarmsPath, current, devicesPath, quietPath, radioPath, settingsPath } from "../model/navigation";
import type { Path } from "../model/path";
import { failure, isAskSlow, isShown, player } from "../model/player";
import { searchedText } from "../model/services";
import { AlarmsView } from "./Alarms";
import { Breadcrumbs } from "./Breadcrumbs";
import { DevicesView } from "./Devices";
import { DropZone } from "./Files";
import { Header } from "./Header";
import { listenToKeys } from "./keys";
import { NoticeBar, Spoken } from "./Notices";
import { OwnScreen } from "./OwnScreen";
import { PageSettings } from "./PageSettings";
import { PlayerBar } from "./PlayerBar";
import { QuietView } from "./QuietView";
import { RadioView } from "./Radio";
import { Missed, Ringing } from "./Ringing";
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

function Content({ path }: { path: Path }) {
    const searched = searchedText(path);
    if (searched !== null)
        return <SearchView text={searched} />;
    if (path === radioPath)
        return <RadioView />;
    if (path === alarmsPath)
        return <AlarmsView />;
    if (path === devicesPath)
        return <DevicesView />;
    // The host's settings are its owners'; what is kept in this browser is everybody's.
    if ((path === settingsPath || path.startsWith(settingsPath + "/")) && !isOwner.value)
        return <OwnScreen title={t("Settings")}>{access.value && <PageSettings />}</OwnScreen>;
    return <ScreenView path={path} />;
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
    if (current.value === quietPath)
        return <><QuietView /><Spoken /></>;
    return (
        <>
            <a class="skip" href="#content" onClick={skip}>{t("Skip to the content")}</a>
            <Header />
            {sheets.value.length === 0 && <Ringing />}
            <main id="content">
                <Missed />
                <Breadcrumbs />
                <Content key={current.value} path={current.value} />
            </main>
            <PlayerBar />
            {sheets.value.length === 0 && <NoticeBar />}
            <Spoken />
            <DropZone />
            <Sheets />
        </>
    );
}
