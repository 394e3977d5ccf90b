// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import type { ComponentChildren } from "preact";

import { useHeading } from "./ScreenView";

/** A screen of the page's own, which is no list of the host's. */
export function OwnScreen({ title, children }: { title: string; children: ComponentChildren }) {
    const heading = useHeading(title);
    return (
        <>
            <div class="heading"><h1 ref={heading} tabIndex={-1}>{title}</h1></div>
            {children}
        </>
    );
}
