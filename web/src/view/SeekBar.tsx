// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import type { ComponentChildren } from "preact";
import { useEffect, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import type { Player } from "../model/player";
import { chosen, clockText, goLive, hasSeekBar, isBehind, positionAt, seekBy, seekStep, seekTo, untilNextSecond } from "../model/position";
import { Icon } from "./icons";
import { Slider } from "./Slider";

/** The position in seconds, counted on from what the host told; null where there is none. */
function usePosition(now: Player): number | null {
    const [, tick] = useState(0);
    useEffect(() => {
        let timer: ReturnType<typeof setTimeout> | undefined;
        const next = () => {
            const wait = untilNextSecond(now);
            timer = wait === null ? undefined : setTimeout(() => {
                tick((count) => count + 1);
                next();
            }, wait);
        };
        next();
        return () => clearTimeout(timer);
    }, [now]);
    return positionAt(now);
}

/** Where in an episode or a file it plays, and a slider that leads elsewhere; what is live has none. */
export function SeekBar({ now }: { now: Player }) {
    const position = usePosition(now);
    const [dragged, setDragged] = useState<number | null>(null);
    if (!hasSeekBar(now) || position === null)
        return null;
    const duration = now.duration ?? 0;
    const shown = dragged ?? chosen.value ?? position;
    return (
        <div class="seek">
            <span class="time" aria-hidden="true">{clockText(shown)}</span>
            <Slider
                label={t("Position")}
                text={t("%1 of %2", clockText(shown), clockText(duration))}
                value={Math.floor(shown)}
                most={Math.floor(duration)}
                step={seekStep / 3}
                page={2 * seekStep}
                drag={setDragged}
                choose={(value) => {
                    // A key chooses without dragging: further ones are waited for.
                    seekTo(value, dragged === null ? 300 : 0);
                    setDragged(null);
                }}
            />
            <span class="time" aria-hidden="true">{clockText(duration)}</span>
        </div>
    );
}

/** How much has been played, as a line on bars that have no room for a slider. */
export function Progress({ now }: { now: Player }) {
    const position = usePosition(now);
    if (!hasSeekBar(now) || position === null)
        return null;
    return <span class="progress" style={{ "--part": String((chosen.value ?? position) / (now.duration ?? 1)) }} />;
}

/** Steps back and forward, where a place can be chosen, at both sides of its bar. */
export function SeekSteps({ now, children }: { now: Player; children: ComponentChildren }) {
    if (!hasSeekBar(now))
        return null;
    return (
        <div class="seek-steps">
            <button type="button" class="round" aria-label={t("Back %1 seconds", seekStep)} onClick={() => seekBy(-seekStep)}>
                <Icon shape="rewind" />
            </button>
            {children}
            <button type="button" class="round" aria-label={t("Forward %1 seconds", seekStep)} onClick={() => seekBy(seekStep)}>
                <Icon shape="skip" />
            </button>
        </div>
    );
}

/** The way back from the buffer, after a pause, to what is live. */
export function Behind({ now }: { now: Player }) {
    if (!isBehind(now))
        return null;
    return (
        <p class="behind">
            <button type="button" class="plain-button" onClick={() => void goLive()}>{t("Back to live")}</button>
        </p>
    );
}
