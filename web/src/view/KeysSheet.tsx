// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";

/** The list of keyboard shortcuts. */
export function KeysSheet() {
    const keys: [string[], string][] = [
        [["/"], t("Search")],
        [["↓"], t("From the search field to the results")],
        [["↑", "↓"], t("Move in a list or a menu")],
        [["Home", "End"], t("To the first or the last entry")],
        [["Enter"], t("Open or play the entry")],
        [[t("Space")], t("Pause what plays, or go on")],
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
