// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useId } from "preact/hooks";

import { t } from "../i18n/i18n";
import { isOwner } from "../model/access";
import { isOnLockScreen } from "../model/lockScreen";
import { openSheet } from "../model/menu";
import { devicesPath, open } from "../model/navigation";
import { openQuiet } from "../model/quiet";
import { theme, themes, type Theme } from "../model/theme";

/** The way to the devices that are paired with the host. */
function Devices() {
    return (
        <section aria-labelledby="other-devices">
            <h2 class="group" id="other-devices">{t("Other devices")}</h2>
            <div class="rows flow">
                <div class="row">
                    <div class="body value">
                        <span class="texts">
                            <span class="title">{t("Devices")}</span>
                            <span class="description">{t("Who else may use this host, and what they may do.")}</span>
                        </span>
                        <a
                            class="plain-button"
                            href={"#" + devicesPath}
                            onClick={(event) => {
                                event.preventDefault();
                                open(devicesPath, t("Devices"));
                            }}
                        >
                            {t("Show the devices")}
                        </a>
                    </div>
                </div>
            </div>
        </section>
    );
}

/** The theme, which is kept in this browser, the keys and the licenses. */
export function PageSettings() {
    const id = useId();
    const lockId = useId();
    const names: Record<Theme, string> = {
        system: t("Like the system"), light: t("Light"), dark: t("Dark"),
    };
    return (
        <>
            {isOwner.value && <Devices />}
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
                    <div class="row">
                        <div class="body value">
                            <span class="texts">
                                <span class="title">{t("Quiet view")}</span>
                                <span class="description">{t("The time and what plays, for a tablet on the wall. The screen stays on, and dims.")}</span>
                            </span>
                            <button type="button" class="plain-button" onClick={openQuiet}>{t("Show the quiet view")}</button>
                        </div>
                    </div>
                    <div class="row">
                        <div class="body value">
                            <label class="texts" for={lockId}>
                                <span class="title">{t("On the lock screen")}</span>
                                <span class="description">{t("Lock screen and media keys of this device show and control what the host plays.")}</span>
                            </label>
                            <input
                                id={lockId}
                                class="switch"
                                type="checkbox"
                                role="switch"
                                checked={isOnLockScreen.value}
                                onChange={(event) => (isOnLockScreen.value = event.currentTarget.checked)}
                            />
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
                            <a class="plain-button" href="./notices.txt" target="_blank" rel="noopener">{t("Show the licenses")}</a>
                        </div>
                    </div>
                </div>
            </section>
        </>
    );
}
