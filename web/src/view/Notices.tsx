import { useEffect, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { host } from "../model/host";
import { notice } from "../model/notices";
import { player, PlayState } from "../model/player";
import { Icon } from "./icons";
import { stateText } from "./PlayerBar";

const patience = 800;

/** Says that the host does not answer; not for a moment's interruption. */
export function ConnectionNotice() {
    const isLost = host.isOpen.value === false;
    const [isSaid, setSaid] = useState(false);
    useEffect(() => {
        if (!isLost)
            return setSaid(false);
        const timer = setTimeout(() => setSaid(true), patience);
        return () => clearTimeout(timer);
    }, [isLost]);
    return (
        <div class="lost" role="status">
            {isSaid && (
                <p>
                    <Icon shape="alert" />
                    <span>{t("The connection to the host is lost. Trying again …")}</span>
                    <button type="button" onClick={() => host.hurry()}>{t("Try again")}</button>
                </p>
            )}
        </div>
    );
}

export function NoticeBar() {
    const now = notice.value;
    return (
        <div class="notice" role="status">
            {now && (
                <p class={now.kind}>
                    <Icon shape={now.kind === "done" ? "check" : "alert"} />
                    <span>{now.kind === "done" ? t("%1: done", now.text) : now.text}</span>
                </p>
            )}
        </div>
    );
}

/** What the player does, for those who do not see it. */
export function Spoken() {
    const now = player.value;
    const isSilent = now.state === PlayState.stopped && now.error === "";
    return (
        <div class="unseen" role="status">
            {!isSilent && `${now.title}: ${stateText(now)}`}
        </div>
    );
}
