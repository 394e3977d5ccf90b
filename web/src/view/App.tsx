import { useSignalEffect } from "@preact/signals";

import { t } from "../i18n/i18n";
import { current } from "../model/navigation";
import { isShown, player } from "../model/player";
import { Breadcrumbs } from "./Breadcrumbs";
import { Header } from "./Header";
import { MenuDialog } from "./MenuDialog";
import { ConnectionNotice, NoticeBar, Spoken } from "./Notices";
import { PlayerBar } from "./PlayerBar";
import { ScreenView } from "./ScreenView";

function skip(event: Event): void {
    event.preventDefault();
    document.querySelector("h1")?.focus();
}

export function App() {
    useSignalEffect(() => {
        document.documentElement.classList.toggle("has-player", isShown.value);
        document.documentElement.dataset.state = String(player.value.state);
    });
    return (
        <>
            <a class="skip" href="#content" onClick={skip}>{t("Skip to the content")}</a>
            <Header />
            <ConnectionNotice />
            <main id="content">
                <Breadcrumbs />
                <ScreenView key={current.value} path={current.value} />
            </main>
            <PlayerBar />
            <NoticeBar />
            <Spoken />
            <MenuDialog />
        </>
    );
}
