// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { speak } from "../i18n/i18n";
import { getData, host, watch } from "./host";
import { reloadShown } from "./Screen";
import { loadServices } from "./services";

export const languagePath = "settings:ui/language";

async function follow(): Promise<void> {
    try {
        const [value] = await getData(languagePath, ["value"]);
        const tag = (value as { string_?: unknown } | null)?.string_;
        if (typeof tag === "string")
            await speak(tag);
    } catch {
        // Read again when the connection is back.
    }
}

/** Follows the host's language setting from now on. */
export function followLanguage(): void {
    watch(languagePath, () => {
        void follow();
        // What was read from services so far is in the old language.
        void loadServices();
        reloadShown();
    });
    host.isOpen.subscribe((isOpen) => {
        if (isOpen)
            void follow();
    });
}
