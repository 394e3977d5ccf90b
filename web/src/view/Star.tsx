// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { playedPath, player, PlayState } from "../model/player";
import { hasStar, setStar } from "../model/stars";
import { Icon } from "./icons";

/** A toggle for the star of what plays. It is kept by this radio, beside what a service keeps among its favorites. */
export function Star() {
    const now = player.value;
    const [isBusy, setBusy] = useState(false);
    const path = playedPath(now);
    const is = now.state === PlayState.stopped ? null : hasStar(path);
    if (is === null)
        return null;
    const change = async () => {
        if (isBusy)
            return;
        setBusy(true);
        await setStar(path, now.title, null, !is);
        setBusy(false);
    };
    const label = t("Star on this radio");
    return (
        <button
            type="button"
            class={is ? "round star on" : "round star"}
            aria-pressed={is}
            aria-busy={isBusy}
            aria-label={label}
            title={label}
            onClick={() => void change()}
        >
            <Icon shape={is ? "starred" : "star"} />
        </button>
    );
}
