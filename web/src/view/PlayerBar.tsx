// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { host } from "../model/host";
import { isMenu, openMenu, openSheet } from "../model/menu";
import {
    cancelPlay, canRepeat, failure, isAskSlow, isShown, pause, player, PlayState, repeat, resume, stop,
    type Player,
} from "../model/player";
import { clockText, isBehind } from "../model/position";
import { Artwork } from "./Artwork";
import { Heart } from "./Heart";
import { Icon } from "./icons";
import { Behind, Progress, SeekBar } from "./SeekBar";
import { Star } from "./Star";
import { VolumeControl } from "./VolumeControl";

/** What is wrong with what plays, or with where it is to be heard. */
const troubleOf = (now: Player) => now.problem || now.outputProblem;

export function stateText(now: Player): string {
    if (!host.isOpen.value)
        return t("Not connected");
    if (now.error !== "")
        return now.error;
    const trouble = troubleOf(now);
    if (trouble !== "")
        return trouble;
    switch (now.state) {
        case PlayState.transitioning:
            return now.isReconnecting ? t("Reconnecting …") : t("Connecting …");
        case PlayState.playing:
            return t("Playing");
        case PlayState.paused:
            return t("Paused");
        default:
            return t("Stopped");
    }
}

/** Codec and bit rate, as far as they are known. */
export function streamText(now: Player): string {
    const rate = now.bitRate > 0 ? t("%1 kbit/s", Math.round(now.bitRate / 1000)) : "";
    return [now.codec, rate].filter((text) => text !== "").join(" · ");
}

function MainButton({ now }: { now: Player }) {
    if (now.state === PlayState.stopped) {
        return canRepeat() ? (
            <button type="button" class="main" onClick={repeat} aria-label={t("Try again")}>
                <Icon shape="play" />
            </button>
        ) : null;
    }
    if (now.state === PlayState.paused) {
        return (
            <button type="button" class="main" onClick={resume} aria-label={t("Play")}>
                <Icon shape="play" />
            </button>
        );
    }
    const isWaiting = now.state === PlayState.transitioning && !now.isReconnecting;
    return (
        <button
            type="button"
            class={now.state === PlayState.transitioning ? "main waiting" : "main"}
            onClick={() => !isWaiting && void pause()}
            aria-disabled={isWaiting}
            aria-label={t("Pause")}
        >
            <Icon shape="pause" />
        </button>
    );
}

/** The player's buttons. */
export function Controls({ now }: { now: Player }) {
    return (
        <>
            <MainButton now={now} />
            <button
                type="button"
                class="round stop"
                aria-label={now.state === PlayState.stopped ? t("Close") : t("Stop")}
                onClick={stop}
            >
                <Icon shape={now.state === PlayState.stopped ? "close" : "stop"} />
            </button>
            <Heart menu={now.contextPath} title={now.title} />
            <Star />
        </>
    );
}

/** The player's state in one line; failures take precedence. */
export function StateLine({ now }: { now: Player }) {
    const failed = failure.value;
    const isBad = now.error !== "" || failed !== null;
    const figures = now.state === PlayState.playing && troubleOf(now) === "" && host.isOpen.value ? streamText(now) : "";
    const rest = isBehind(now) && host.isOpen.value ? t("%1 behind live", clockText(now.behind)) : figures;
    return (
        <span class={isBad ? "state bad" : troubleOf(now) ? "state problem" : "state"} dir="auto">
            {failed ? failed.message : stateText(now)}
            {!failed && rest && <span class="rate"> · {rest}</span>}
        </span>
    );
}

/** The player bar while nothing plays, after a play that takes long or failed. */
function Asking() {
    return (
        <section class="player" aria-label={t("Player")}>
            <p class="what" role="status">
                {failure.value?.message || t("The service takes long to answer.")}
            </p>
            <div class="controls">
                {failure.value && canRepeat() && (
                    <button type="button" class="main" onClick={repeat} aria-label={t("Try again")}>
                        <Icon shape="play" />
                    </button>
                )}
                <button
                    type="button"
                    class="round"
                    aria-label={failure.value ? t("Close") : t("Cancel")}
                    onClick={() => {
                        cancelPlay();
                        failure.value = null;
                    }}
                >
                    <Icon shape="close" />
                </button>
            </div>
        </section>
    );
}

export function PlayerBar() {
    const now = player.value;
    if (!isShown.value)
        return failure.value || isAskSlow.value ? <Asking /> : null;
    // A problem takes the place of the stream's title.
    const onAir = troubleOf(now) || now.error ? "" : now.streamTitle || now.description;
    return (
        <section class={host.isOpen.value ? "player" : "player stale"} aria-label={t("Player")}>
            <Progress now={now} />
            <button
                type="button"
                class="details"
                aria-haspopup="dialog"
                onClick={() => openSheet({ kind: "playing" })}
            >
                <Artwork icon={now.icon} fallback="radio" />
                <span class="what">
                    <span class="title" dir="auto">{now.title || t("Player")}</span>
                    {onAir && <span class="on-air" dir="auto">{onAir}</span>}
                    <StateLine now={now} />
                    <span class="unseen">{t("Details")}</span>
                </span>
            </button>
            <SeekBar now={now} />
            <Behind now={now} />
            <div class="controls">
                <Controls now={now} />
                {isMenu(now.contextPath) && (
                    <button
                        type="button"
                        class="round menu"
                        aria-haspopup="dialog"
                        aria-label={t("More for %1", now.title)}
                        onClick={() => openMenu(now.contextPath, now.title)}
                    >
                        <Icon shape="more" />
                    </button>
                )}
            </div>
            <VolumeControl />
        </section>
    );
}
