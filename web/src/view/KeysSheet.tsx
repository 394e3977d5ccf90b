// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { seekStep } from "../model/position";
import { hasLibrary } from "../model/presets";
import { volume } from "../model/volume";

type Entry = [string[], string];

/** The list of keyboard shortcuts. */
export function KeysSheet() {
    const keys: Entry[] = [
        [["/"], t("Search")],
        [["↓"], t("From the search field to the results")],
        [["↑", "↓"], t("Move in a list or a menu")],
        [["Home", "End"], t("To the first or the last entry")],
        [["Enter"], t("Open or play the entry")],
        [[t("Space")], t("Pause what plays, or go on")],
        ...(volume.value === null ? [] : [
            [["+", "-"], t("Louder, quieter")],
            [["m"], t("Mute")],
        ] as Entry[]),
        [["j", "l"], t("Back and forward %1 seconds in an episode", seekStep)],
        ...(hasLibrary.value ? [
            [["1", "2", "…", "0"], t("Play a preset; 0 is 10")],
            [["1 1", "1 2"], t("Presets 11 and 12")],
            [[t("Shift"), "1"], t("Save what plays as a preset")],
        ] as Entry[] : []),
        [["q"], t("Quiet view")],
        [["Esc"], t("One menu up, or clear the search")],
        [["?"], t("Show these keys")],
    ];
    return (
        <dl class="key-list">
            {keys.map(([names, text]) => (
                <div key={text}>
                    <dt>{names.map((name) => <kbd key={name}>{name}</kbd>)}</dt>
                    <dd>{text}</dd>
                </div>
            ))}
        </dl>
    );
}
