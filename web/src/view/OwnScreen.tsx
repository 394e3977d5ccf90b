// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import type { ComponentChildren } from "preact";
import { useEffect, useLayoutEffect, useRef } from "preact/hooks";

import { arrival } from "../model/navigation";
import { screenTitle } from "./ScreenView";

/** A screen of the page's own, which is no list of the host's. */
export function OwnScreen({ title, children }: { title: string; children: ComponentChildren }) {
    const heading = useRef<HTMLHeadingElement>(null);
    useEffect(() => {
        screenTitle.value = title;
    }, [title]);
    useLayoutEffect(() => {
        if (arrival.value === "forward")
            heading.current?.focus({ preventScroll: true });
    }, []);
    return (
        <>
            <div class="heading"><h1 ref={heading} tabIndex={-1}>{title}</h1></div>
            {children}
        </>
    );
}
