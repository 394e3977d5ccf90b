// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef, useState } from "preact/hooks";

import { Icon, shapeNamed, type Shape } from "./icons";

/** Milliseconds before a picture that failed to load is requested again: the host may have been restarted. */
const retryTimes = [2000, 10_000];
const maxKept = 5000;
const kept = new Map<string, string>();

/** The host's address for the picture at \a url. Only the host requests the URL itself. */
async function addressOf(url: string): Promise<string> {
    let address = kept.get(url);
    if (address === undefined) {
        const digest = await crypto.subtle.digest("SHA-256", new TextEncoder().encode(url));
        const hex = Array.from(new Uint8Array(digest), (byte) => byte.toString(16).padStart(2, "0"));
        address = "/artwork/" + hex.join("");
        if (kept.size >= maxKept)
            kept.clear();
        kept.set(url, address);
    }
    return address;
}

/** A row's picture, or a drawing in its place. Decorative: the row's title says what it is. */
export function Artwork({ icon, fallback }: { icon: string; fallback: Shape }) {
    const isUrl = /^https?:/i.test(icon);
    const [address, setAddress] = useState(kept.get(icon));
    const [failed, setFailed] = useState(false);
    const failures = useRef(0);
    useEffect(() => {
        let isCurrent = true;
        failures.current = 0;
        setFailed(false);
        setAddress(kept.get(icon));
        if (isUrl && kept.get(icon) === undefined) {
            addressOf(icon).then(
                (found) => isCurrent && setAddress(found), () => isCurrent && setFailed(true));
        }
        return () => {
            isCurrent = false;
        };
    }, [icon]);
    useEffect(() => {
        const wait = failed ? retryTimes[failures.current++] : undefined;
        if (wait === undefined)
            return;
        const timer = setTimeout(() => setFailed(false), wait);
        return () => clearTimeout(timer);
    }, [failed]);
    const showsPicture = isUrl && address !== undefined && !failed;
    return (
        <span class="artwork">
            {showsPicture ? (
                <img src={address} alt="" decoding="async" onError={() => setFailed(true)} />
            ) : (
                <Icon shape={shapeNamed(icon) ?? fallback} />
            )}
        </span>
    );
}
