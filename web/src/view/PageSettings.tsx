// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useId } from "preact/hooks";

import { t } from "../i18n/i18n";
import { openSheet } from "../model/menu";
import { theme, themes, type Theme } from "../model/theme";

/** The theme, which is kept in this browser, the keys and the licenses. */
export function PageSettings() {
    const id = useId();
    const names: Record<Theme, string> = {
        system: t("Like the system"), light: t("Light"), dark: t("Dark"),
    };
    return (
        <section aria-label={t("This page")}>
            <h2 class="group">{t("This page")}</h2>
            <div class="rows flow">
                <div class="row">
                    <div class="body value">
                        <label class="texts" for={id}>
                            <span class="title">{t("Appearance")}</span>
                            <span class="description">{t("Kept in this browser.")}</span>
                        </label>
                        <select
                            id={id}
                            value={theme.value}
                            onChange={(event) => (theme.value = event.currentTarget.value as Theme)}
                        >
                            {themes.map((each) => <option key={each} value={each}>{names[each]}</option>)}
                        </select>
                    </div>
                </div>
                <div class="row for-keyboard">
                    <div class="body value">
                        <span class="texts">
                            <span class="title">{t("Keys")}</span>
                            <span class="description">{t("What can be done with the keyboard alone.")}</span>
                        </span>
                        <button type="button" class="plain-button" aria-haspopup="dialog" onClick={() => openSheet({ kind: "keys" })}>
                            {t("Show these keys")}
                        </button>
                    </div>
                </div>
                <div class="row">
                    <div class="body value">
                        <span class="texts">
                            <span class="title">{t("Licenses")}</span>
                            <span class="description">{t("Of the libraries that are part of this page.")}</span>
                        </span>
                        <a class="plain-button" href="/notices.txt" target="_blank" rel="noopener">{t("Show the licenses")}</a>
                    </div>
                </div>
            </div>
        </section>
    );
}
