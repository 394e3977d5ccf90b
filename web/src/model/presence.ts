// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { host } from "./host";

/** What became of the page while there was no connection. */
export type Presence =
    | "there"
    | "away" ///< the host does not respond
    | "forgotten" ///< the host no longer takes this device's token
    | "replaced"; ///< the host serves another build of the page

/** The script of a page's document; empty if the document is another one's. */
export function scriptOf(html: string): string {
    return /"(?:\.\/)?(assets\/main-[^"/]+\.js)"/.exec(html)?.[1] ?? "";
}

/** Judges the response to a request for the page, which runs \a script. */
export function judge(answer: { type: string; status: number }, html: string, script: string): Presence {
    // A redirect that was not followed has no status.
    if (answer.type === "opaqueredirect" || answer.status === 401)
        return "forgotten";
    if (answer.status !== 200)
        return "away";
    const served = scriptOf(html);
    return served === "" || served === script ? "there" : "replaced";
}

async function look(script: string): Promise<Presence> {
    try {
        const answer = await fetch("./", { redirect: "manual", cache: "no-store" });
        return judge(answer, answer.status === 200 ? await answer.text() : "", script);
    } catch {
        return "away";
    }
}

const replacedKey = "vesk.replaced";

/**
 * Looks at the page's own address whenever the connection fails or is back: leaves for the pairing page when the host no
 * longer knows this device, which a refused WebSocket does not say, and reloads when the host has another build of the page.
 */
export function startPresence(): void {
    const script = scriptOf(document.documentElement.outerHTML);
    const act = async () => {
        switch (await look(script)) {
            case "forgotten":
                return location.replace("pair#forgotten");
            case "replaced":
                // Once, in case something between the two keeps an old document.
                if (sessionStorage.getItem(replacedKey) === script)
                    return;
                sessionStorage.setItem(replacedKey, script);
                return location.reload();
        }
    };
    let wasLost = false;
    host.failures.subscribe((failures) => {
        if (failures > 0 || wasLost)
            void act();
        wasLost = failures > 0;
    });
}
