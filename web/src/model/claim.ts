// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { isRecord } from "../rpc/Connection";
import type { Path } from "./path";

/** A claim code that is to be entered on another page or device. */
export interface Claim {
    readonly code: string;
    readonly message: string;
    /** When the code was issued, in milliseconds since the epoch. */
    readonly since: number;
}

/** Milliseconds after which a claim is given up. */
export const claimLife = 15 * 60_000;
/** Milliseconds between polls for the code; the last one repeats. */
const lookTimes = [5000, 5000, 10_000, 15_000, 30_000];

export function lookDelay(looks: number): number {
    return lookTimes[Math.min(looks, lookTimes.length - 1)]!;
}

const keyOf = (service: Path) => `vesk.claim.${service}`;

/** Stores a claim for the life of this tab, across reloads; null removes it. */
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

/** A page named in an instruction: its text as written there, and its URL. */
export interface Named {
    readonly text: string;
    readonly href: string;
}

/** The page where the code is entered; null if the instruction names none. */
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
