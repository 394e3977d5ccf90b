// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { useEffect, useRef, useState } from "preact/hooks";

import { artworkAddress, isPicture, knownArtwork } from "../model/artwork";
import { Icon, shapeNamed, type Shape } from "./icons";

/** Milliseconds before a picture that failed to load is requested again: the host may have been restarted. */
const retryTimes = [2000, 10_000];

/** A row's picture, or a drawing in its place. Decorative: the row's title says what it is. */
export function Artwork({ icon, fallback }: { icon: string; fallback: Shape }) {
    const isUrl = isPicture(icon);
    const [address, setAddress] = useState(knownArtwork(icon));
    const [failed, setFailed] = useState(false);
    const failures = useRef(0);
    useEffect(() => {
        let isCurrent = true;
        failures.current = 0;
        setFailed(false);
        setAddress(knownArtwork(icon));
        if (isUrl && knownArtwork(icon) === undefined) {
            artworkAddress(icon).then(
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
