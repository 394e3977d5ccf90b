// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { access, linkTo } from "../model/access";
import { announce } from "../model/notices";
import type { Path } from "../model/path";
import { Icon } from "./icons";

async function share(path: Path, title: string): Promise<void> {
    const url = linkTo(path, location, access.peek()?.urls ?? []);
    if (url === null)
        return announce({ kind: "failed", text: t("No other device can reach this host: it serves its own machine only.") });
    if (navigator.share) {
        try {
            return await navigator.share({ title, url });
        } catch (error) {
            // The reader thought better of it.
            if (error instanceof DOMException && error.name === "AbortError")
                return;
        }
    }
    try {
        await navigator.clipboard.writeText(url);
        announce({ kind: "told", text: t("The link is copied. It opens this on every paired device.") });
    } catch {
        // Without TLS there is no clipboard.
        announce({ kind: "told", text: url });
    }
}

/** Hands out a link to a screen that works on other paired devices. */
export function ShareButton({ path, title }: { path: Path; title: string }) {
    return (
        <button type="button" class="round share" aria-label={t("Share")} onClick={() => void share(path, title)}>
            <Icon shape="share" />
        </button>
    );
}
