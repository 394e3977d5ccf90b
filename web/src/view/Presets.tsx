// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useId, useRef, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { player } from "../model/player";
import { clearPreset, isPresetPlayed, keepPlaying, presetNumbers, presets, pressPreset, type Preset } from "../model/presets";
import { Artwork } from "./Artwork";
import { Icon } from "./icons";

/** Milliseconds for which a preset is held down to save what plays. */
const holdTime = 700;

/** Tells a long press from a short one. The click that ends a long one is not one. */
function useHold(held: () => void) {
    const timer = useRef<ReturnType<typeof setTimeout> | undefined>(undefined);
    const wasHeld = useRef(false);
    const end = () => clearTimeout(timer.current);
    useEffect(() => end, []);
    return {
        wasHeld,
        handlers: {
            onPointerDown: (event: PointerEvent) => {
                end();
                wasHeld.current = false;
                if (event.button === 0) {
                    timer.current = setTimeout(() => {
                        wasHeld.current = true;
                        held();
                    }, holdTime);
                }
            },
            onPointerUp: end,
            onPointerLeave: end,
            onPointerCancel: end,
            // Long presses open the browser's own menu on some telephones.
            onContextMenu: (event: Event) => event.preventDefault(),
        },
    };
}

function Key({ number, preset, isEdited }: { number: number; preset: Preset | undefined; isEdited: boolean }) {
    const { wasHeld, handlers } = useHold(() => void keepPlaying(number));
    const isPlayed = preset !== undefined && isPresetPlayed(player.value, preset);
    const title = preset ? preset.title || t("Untitled") : t("Empty");
    return (
        <li class="preset">
            <button
                type="button"
                class={isPlayed ? "body current" : preset ? "body" : "body free"}
                data-main
                aria-current={isPlayed ? "true" : undefined}
                onClick={(event) => {
                    if (wasHeld.current)
                        wasHeld.current = false;
                    else if (event.shiftKey)
                        void keepPlaying(number);
                    else
                        pressPreset(number);
                }}
                {...handlers}
            >
                <span class="unseen">{t("Preset %1: %2", number, "")}</span>
                <span class="number" aria-hidden="true">{number}</span>
                {preset && <Artwork icon={preset.icon} fallback="radio" />}
                <span class="title" dir="auto">{title}</span>
            </button>
            {isEdited && preset && (
                <button type="button" class="round" aria-label={t("Clear preset %1", number)} onClick={() => void clearPreset(number)}>
                    <Icon shape="close" />
                </button>
            )}
        </li>
    );
}

/** The twelve presets, as the keys of a radio. */
export function Presets() {
    const id = useId();
    const [isEdited, setEdited] = useState(false);
    const known = presets.value;
    if (known === null)
        return null;
    return (
        <section class="found" aria-labelledby={id}>
            <div class="found-head">
                <h2 id={id}>{t("Presets")}</h2>
                <p class="count" />
                {known.size > 0 && (
                    <button type="button" class="plain-button" aria-pressed={isEdited} onClick={() => setEdited(!isEdited)}>
                        {t("Clear some")}
                    </button>
                )}
            </div>
            <ul class="presets" role="list">
                {presetNumbers.map((number) => (
                    <Key key={number} number={number} preset={known.get(number)} isEdited={isEdited} />
                ))}
            </ul>
            <p class="quiet-text">{t("Hold one down to save what plays. On a keyboard the numbers play, and with Shift they save.")}</p>
        </section>
    );
}
