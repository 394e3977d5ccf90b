// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { host } from "../model/host";
import { dismiss, notice, type Notice } from "../model/notices";
import { player, PlayState } from "../model/player";
import { Icon } from "./icons";
import { stateText } from "./PlayerBar";

const patience = 800;

/** Shown while there is no connection to the host, except during a short interruption. */
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

function noticeText({ kind, text }: Notice): string {
    switch (kind) {
        case "done":
            return t("%1: done", text);
        case "added":
            return t("%1 is a favorite now", text);
        case "removed":
            return t("%1 is no favorite any more", text);
        case "lost":
            return t("There is no connection to the host, so nothing happens.");
        case "stale":
            return t("That entry is no longer in the list, which is read again.");
        default:
            return text || t("Something went wrong.");
    }
}

export function NoticeBar() {
    const now = notice.value;
    const isGood = now !== null && ["done", "told", "asked", "added", "removed"].includes(now.kind);
    return (
        <div class="notice" role="status">
            {now && (
                <p class={isGood ? "done" : "failed"}>
                    <Icon shape={isGood ? "check" : "alert"} />
                    <span dir="auto">{noticeText(now)}</span>
                    {now.undo && (
                        <button
                            type="button"
                            onClick={() => {
                                dismiss();
                                now.undo?.();
                            }}
                        >
                            {t("Undo")}
                        </button>
                    )}
                    {now.action && (
                        <button
                            type="button"
                            onClick={() => {
                                dismiss();
                                now.action?.run();
                            }}
                        >
                            {now.action.label}
                        </button>
                    )}
                </p>
            )}
        </div>
    );
}

/** Announces the player's state to screen readers. */
export function Spoken() {
    const now = player.value;
    const isSilent = now.state === PlayState.stopped && now.error === "";
    const text = isSilent ? "" : `${now.title}: ${stateText(now)}`;
    // A countdown in seconds is not announced second by second.
    const said = useRef("");
    const plain = (words: string) => words.replace(/\d+/g, "");
    if (plain(said.current) !== plain(text))
        said.current = text;
    return <div class="unseen" role="status">{said.current}</div>;
}
