// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { player } from "../model/player";
import { changeVolume, setVolume, toggleMute, volume, volumeStep } from "../model/volume";
import { Icon } from "./icons";
import { Slider } from "./Slider";

export function volumeText(value: number, isMuted: boolean): string {
    return isMuted ? t("%1 %, muted", value) : t("%1 %", value);
}

/** Mute and a slider; nothing with a host that has no volume. A wheel above it changes the volume, too. */
export function VolumeControl() {
    const value = volume.value;
    const { isMuted } = player.value;
    if (value === null)
        return null;
    return (
        <div
            class={isMuted ? "volume muted" : "volume"}
            onWheel={(event) => {
                if (event.ctrlKey || event.deltaY === 0)
                    return;
                event.preventDefault();
                changeVolume(event.deltaY < 0 ? volumeStep : -volumeStep);
            }}
        >
            <button type="button" class="round" aria-label={t("Mute")} aria-pressed={isMuted} onClick={() => void toggleMute()}>
                <Icon shape={isMuted ? "muted" : "volume"} />
            </button>
            <Slider
                label={t("Volume")}
                text={volumeText(value, isMuted)}
                value={value}
                most={100}
                step={volumeStep}
                page={4 * volumeStep}
                drag={setVolume}
                choose={setVolume}
            />
        </div>
    );
}
