// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useLayoutEffect, useState } from "preact/hooks";

import { language, t } from "../i18n/i18n";
import { nextAlarm, ringing } from "../model/alarms";
import { host } from "../model/host";
import { isShown, player, PlayState } from "../model/player";
import { dimTime, driftAt, keepScreenOn, leaveQuiet } from "../model/quiet";
import { minutesLeft, sleep } from "../model/sleep";
import { volume } from "../model/volume";
import { Artwork } from "./Artwork";
import { Icon } from "./icons";
import { isForRadio } from "./keys";
import { stateText } from "./PlayerBar";
import { Ringing } from "./Ringing";
import { screenTitle } from "./ScreenView";
import { dayAndTime, useMinute } from "./time";
import { volumeText } from "./VolumeControl";

/** Whether nobody has moved anything for `dimTime`. */
function useDim(): boolean {
    const [isDim, setDim] = useState(false);
    useEffect(() => {
        let timer: ReturnType<typeof setTimeout>;
        const begin = () => {
            setDim(false);
            clearTimeout(timer);
            timer = setTimeout(() => setDim(true), dimTime);
        };
        begin();
        addEventListener("pointermove", begin);
        return () => {
            clearTimeout(timer);
            removeEventListener("pointermove", begin);
        };
    }, []);
    return isDim;
}

/** Keys that do something by themselves, which is not to leave. */
const otherKeys = /^(Shift|Control|Alt|AltGraph|Meta|CapsLock|Tab|Media.*|Audio.*)$/;

function leaveByKey(event: KeyboardEvent): void {
    if (event.ctrlKey || event.altKey || event.metaKey || otherKeys.test(event.key) || isForRadio(event))
        return;
    // The keys that stop an alarm do not leave as well.
    if (ringing.peek() && event.key !== "Escape")
        return;
    event.preventDefault();
    event.stopPropagation();
    leaveQuiet();
}

function Playing() {
    const now = player.value;
    if (!isShown.value)
        return host.isOpen.value === false ? <p class="quiet-title">{t("Not connected")}</p> : null;
    const isQuiet = now.state === PlayState.playing && now.problem === "" && host.isOpen.value !== false;
    return (
        <div class="quiet-playing">
            <Artwork icon={now.icon} fallback="radio" />
            <div class="quiet-words">
                <p class="quiet-station" dir="auto">{now.title}</p>
                <p class="quiet-title" dir="auto">{isQuiet ? now.streamTitle || now.description : stateText(now)}</p>
            </div>
        </div>
    );
}

/** What there is to know before one falls asleep. */
function Facts() {
    const until = sleep.value?.until ?? null;
    const next = nextAlarm.value;
    const level = volume.value;
    return (
        <ul class="quiet-facts" role="list">
            {next && <li><Icon shape="alarm" /><span class="unseen">{t("Next alarm")}: </span>{dayAndTime(next.next!)}</li>}
            {until !== null && (
                <li><Icon shape="moon" /><span class="unseen">{t("Sleep timer")}: </span>{t("%1 min", minutesLeft(until))}</li>
            )}
            {level !== null && isShown.value && (
                <li>
                    <Icon shape={player.value.isMuted ? "muted" : "volume"} />
                    <span class="unseen">{t("Volume")}: </span>{volumeText(level, player.value.isMuted)}
                </li>
            )}
        </ul>
    );
}

/** What a tablet on the wall shows: the time and what plays. A touch or a key leaves it. */
export function QuietView() {
    const now = useMinute();
    const isDim = useDim();
    const [isKeptOn, setKeptOn] = useState(true);
    useEffect(() => keepScreenOn(setKeptOn), []);
    useLayoutEffect(() => {
        document.addEventListener("keydown", leaveByKey, { capture: true });
        return () => document.removeEventListener("keydown", leaveByKey, { capture: true });
    }, []);
    const title = t("Quiet view");
    useEffect(() => {
        screenTitle.value = title;
    }, [title]);
    const tag = language();
    const drift = driftAt(Math.floor(now.getTime() / 60_000));
    return (
        <main id="content" class={isDim ? "quiet-view dim" : "quiet-view"}>
            <h1 class="unseen" tabIndex={-1}>{title}</h1>
            <div class="quiet-content" style={{ transform: `translate(${drift.x}vmin, ${drift.y}vmin)` }}>
                <div class="quiet-clock">
                    <time dateTime={now.toISOString()}>
                        {new Intl.DateTimeFormat(tag, { hour: "numeric", minute: "2-digit" }).formatToParts(now).map(
                            ({ type, value }) => (type === "dayPeriod" ? <small key={type}>{value}</small> : value))}
                    </time>
                    <p>{new Intl.DateTimeFormat(tag, { weekday: "long", day: "numeric", month: "long" }).format(now)}</p>
                </div>
                <Playing />
                <Facts />
                {!isKeptOn && !isDim && <p class="quiet-hint">{t("This browser lets the screen go off here.")}</p>}
            </div>
            <button type="button" class="quiet-leave" autofocus aria-label={t("Leave the quiet view")} onClick={leaveQuiet} />
            {ringing.value && <Ringing isFocused />}
        </main>
    );
}
