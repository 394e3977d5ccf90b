// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { isRecord } from "../rpc/Connection";
import type { Path } from "./path";

/** A code that waits to be entered somewhere else. */
export interface Claim {
    readonly code: string;
    readonly message: string;
    /** When it was given out, in milliseconds. */
    readonly since: number;
}

/** After this time nobody enters a code any more. */
export const claimLife = 15 * 60_000;
/** Milliseconds between two looks whether it was entered. */
const lookTimes = [5000, 5000, 10_000, 15_000, 30_000];

export function lookDelay(looks: number): number {
    return lookTimes[Math.min(looks, lookTimes.length - 1)]!;
}

const keyOf = (service: Path) => `vesk.claim.${service}`;

/** Keeps a claim for as long as this tab lives, also over a reload; null forgets it. */
export function keepClaim(service: Path, claim: Claim | null): void {
    if (claim)
        sessionStorage.setItem(keyOf(service), JSON.stringify(claim));
    else
        sessionStorage.removeItem(keyOf(service));
}

export function keptClaim(service: Path, now = Date.now()): Claim | null {
    let claim: unknown = null;
    try {
        claim = JSON.parse(sessionStorage.getItem(keyOf(service)) ?? "null");
    } catch {
        return null;
    }
    if (!isRecord(claim) || typeof claim.code !== "string" || typeof claim.message !== "string"
        || typeof claim.since !== "number" || now - claim.since > claimLife)
        return null;
    return { code: claim.code, message: claim.message, since: claim.since };
}

/** A page that an instruction names: how it is written, and its address. */
export interface Named {
    readonly text: string;
    readonly href: string;
}

/** The page where the code is entered; null when the instruction names none. */
export function pageIn(message: string): Named | null {
    const found = /(https?:\/\/)?((?:[a-z0-9-]+\.)+[a-z]{2,}|\d+\.\d+\.\d+\.\d+)(:\d+)?\/[^\s<>"“”]*/i.exec(message);
    if (!found)
        return null;
    const text = found[0].replace(/[.,;:!?)\]]+$/, "");
    try {
        return { text, href: new URL(found[1] ? text : "https://" + text).href };
    } catch {
        return null;
    }
}
