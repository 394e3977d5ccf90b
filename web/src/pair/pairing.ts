// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { isRecord } from "../rpc/Connection";

export const codeLength = 6;
/** Characters of a device's name that the host takes. */
export const maxName = 64;

/** The digits of what was typed or pasted, at most as many as a code has: "123 456" is a code. */
export function digitsIn(text: string): string {
    return text.replace(/\D/g, "").slice(0, codeLength);
}

/** The code that a QR code's address brought along, in its fragment; empty without one. */
export function codeInFragment(hash: string): string {
    return new RegExp(`^#(\\d{${codeLength}})$`).exec(hash)?.[1] ?? "";
}

/** The first name whose pattern is in the text. */
function firstOf(names: readonly (readonly [string, RegExp])[], text: string): string {
    return names.find(([, pattern]) => pattern.test(text))?.[0] ?? "";
}

/** A name that tells this device from others: browser and system, as far as the user agent's text names them. */
export function deviceName(userAgent: string, touchPoints: number): string {
    // An iPad pretends to be a Mac, but no Mac has a touch screen.
    const isIpad = /Macintosh/.test(userAgent) && touchPoints > 1;
    const system = isIpad ? "iPad" : firstOf([
        ["iPad", /iPad/], ["iPhone", /iPhone/], ["Android", /Android/], ["Windows", /Windows/], ["Mac", /Macintosh/],
        ["ChromeOS", /CrOS/], ["Linux", /Linux/],
    ], userAgent);
    // Most browsers name others, too; the ones that do stand first.
    const browser = firstOf([
        ["Edge", /Edg/], ["Opera", /OPR\//], ["Samsung Internet", /SamsungBrowser/], ["Firefox", /Firefox|FxiOS/],
        ["Chrome", /Chrome|CriOS/], ["Safari", /Safari/],
    ], userAgent);
    return [browser, system].filter((name) => name !== "").join(", ");
}

/** What became of a code. */
export type Outcome =
    | { is: "paired" }
    | { is: "wrongCode"; left: number }
    | { is: "ended" } ///< after too many wrong codes
    | { is: "closed" } ///< no pairing is open, or its time is over
    | { is: "invalid" }
    | { is: "notSaved" }
    | { is: "unreachable" }
    | { is: "other"; status: number };

export function outcomeOf(status: number, body: unknown): Outcome {
    if (status === 200)
        return { is: "paired" };
    const { error, left } = isRecord(body) ? body : { error: "", left: 0 };
    switch (error) {
        case "wrongCode":
            return { is: "wrongCode", left: typeof left === "number" ? left : 0 };
        case "ended":
        case "closed":
        case "invalid":
        case "notSaved":
            return { is: error };
        default:
            return { is: "other", status };
    }
}

/** Enters the code at the host, whose page lies at \a base. The host's response sets a cookie, which scripts cannot read. */
export async function pair(base: URL, code: string, name: string): Promise<Outcome> {
    try {
        const answer = await fetch(new URL("pair", base), {
            method: "POST",
            headers: { "Content-Type": "application/json" },
            body: JSON.stringify({ code, name, bearer: false }),
        });
        return outcomeOf(answer.status, await answer.json().catch(() => null));
    } catch {
        return { is: "unreachable" };
    }
}
