// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { closeSheets } from "../model/menu";
import { presetNumbers, presets, savePreset, type Item } from "../model/presets";

/** Chooses a number for a row, or for what plays. */
export function PresetsSheet({ item }: { item: Item | null }) {
    const [isBusy, setBusy] = useState(false);
    const save = async (number: number) => {
        if (isBusy)
            return;
        setBusy(true);
        if (await savePreset(number, item))
            closeSheets();
        setBusy(false);
    };
    return (
        <ul class="menu-rows" role="list">
            {presetNumbers.map((number) => {
                const preset = presets.value?.get(number);
                return (
                    <li key={number}>
                        <div class="row">
                            <button type="button" class="body activate" data-main onClick={() => void save(number)}>
                                <span class="number">{number}</span>
                                <span class="texts">
                                    <span class={preset ? "title" : "title empty"} dir="auto">{preset ? preset.title || t("Untitled") : t("Empty")}</span>
                                    {preset && <span class="description">{t("Will be replaced")}</span>}
                                </span>
                            </button>
                        </div>
                    </li>
                );
            })}
        </ul>
    );
}
