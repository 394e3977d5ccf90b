// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import type { ComponentChildren } from "preact";

/** SVG paths on a grid of 24 by 24, drawn in the text's colour. */
const shapes = {
    back: <path d="M15 5l-7 7 7 7" />,
    forward: <path d="M9 5l7 7-7 7" />,
    chevron: <path d="M10 7l5 5-5 5" />,
    search: (
        <>
            <circle cx="11" cy="11" r="6.5" />
            <path d="M16 16l4.5 4.5" />
        </>
    ),
    close: <path d="M6 6l12 12M18 6L6 18" />,
    more: (
        <g fill="currentColor" stroke="none">
            <circle cx="12" cy="5.5" r="1.7" />
            <circle cx="12" cy="12" r="1.7" />
            <circle cx="12" cy="18.5" r="1.7" />
        </g>
    ),
    settings: (
        <>
            <path d="M4 7h9M19 7h1M4 17h1M11 17h9" />
            <circle cx="16" cy="7" r="2.5" />
            <circle cx="8" cy="17" r="2.5" />
        </>
    ),
    play: <path d="M8 5.2v13.6c0 .6.7 1 1.2.7l10.3-6.8c.5-.3.5-1 0-1.4L9.2 4.5c-.5-.3-1.2.1-1.2.7z" fill="currentColor" stroke="none" />,
    pause: (
        <g fill="currentColor" stroke="none">
            <rect x="6.5" y="5" width="4" height="14" rx="1.2" />
            <rect x="13.5" y="5" width="4" height="14" rx="1.2" />
        </g>
    ),
    stop: <rect x="6.5" y="6.5" width="11" height="11" rx="1.8" fill="currentColor" stroke="none" />,
    check: <path d="M5 12.5l4.5 4.5L19 7.5" />,
    alert: <path d="M12 4.5l8.5 15h-17zM12 10v4.5M12 17.2v.1" />,
    folder: <path d="M3.5 7.5c0-1 .8-1.8 1.8-1.8h4l2 2.3h7.4c1 0 1.8.8 1.8 1.8v6.9c0 1-.8 1.8-1.8 1.8H5.3c-1 0-1.8-.8-1.8-1.8z" />,
    radio: <path d="M6 11v2M10 7.5v9M14 9.5v5M18 6v12" />,
    link: <path d="M10 14a4 4 0 0 0 5.7 0l3-3a4 4 0 0 0-5.7-5.7l-1 1M14 10a4 4 0 0 0-5.7 0l-3 3a4 4 0 0 0 5.7 5.7l1-1" />,
    heart: <path d="M12 19.5S4 15 4 9.4A4.2 4.2 0 0 1 12 7.5 4.2 4.2 0 0 1 20 9.4C20 15 12 19.5 12 19.5z" />,
    hearted: <path d="M12 19.5S4 15 4 9.4A4.2 4.2 0 0 1 12 7.5 4.2 4.2 0 0 1 20 9.4C20 15 12 19.5 12 19.5z" fill="currentColor" />,
    pin: (
        <>
            <path d="M12 20.5s6.5-5.8 6.5-10.8a6.5 6.5 0 0 0-13 0c0 5 6.5 10.8 6.5 10.8z" />
            <circle cx="12" cy="9.8" r="2.3" />
        </>
    ),
    note: (
        <>
            <path d="M9 17.5V6l10-2v11.5" />
            <circle cx="6.5" cy="17.5" r="2.5" />
            <circle cx="16.5" cy="15.5" r="2.5" />
        </>
    ),
    speech: <path d="M4 6.5c0-.800.7-1.5 1.5-1.5h13c.800 0 1.5.700 1.5 1.5v8c0 .800-.700 1.5-1.5 1.5H11l-4.5 3.5V16h-1c-.800 0-1.5-.700-1.5-1.5z" />,
    ball: (
        <>
            <circle cx="12" cy="12" r="8" />
            <path d="M12 8l3.8 2.8-1.4 4.4H9.6l-1.4-4.4zM12 4v4M19.6 9.5l-3.8 1.3M16.7 18.5l-2.3-3.3M7.3 18.5l2.3-3.3M4.4 9.5l3.8 1.3" />
        </>
    ),
    globe: (
        <>
            <circle cx="12" cy="12" r="8" />
            <path d="M4 12h16M12 4c5 5.3 5 10.7 0 16M12 4c-5 5.3-5 10.7 0 16" />
        </>
    ),
    language: <path d="M4 6h9M8.5 4v2M11.5 6c-1 4-3.5 6.5-7 8M6 9c1.2 2.3 3 4 5.5 5M12.5 20l4-9.5 4 9.5M14 17h5" />,
    mic: (
        <>
            <rect x="9" y="4" width="6" height="10" rx="3" />
            <path d="M6 11.5a6 6 0 0 0 12 0M12 17.5V20" />
        </>
    ),
    clock: (
        <>
            <circle cx="12" cy="12" r="8" />
            <path d="M12 7.5V12l3 2" />
        </>
    ),
    share: (
        <>
            <circle cx="17" cy="6" r="2.2" />
            <circle cx="7" cy="12" r="2.2" />
            <circle cx="17" cy="18" r="2.2" />
            <path d="M9 11l6-3.8M9 13l6 3.8" />
        </>
    ),
    volume: <path d="M4 9.5v5h3.5L12 18.5V5.5L7.5 9.5zM15.5 9a4.2 4.2 0 0 1 0 6M18 6.5a8 8 0 0 1 0 11" />,
    muted: <path d="M4 9.5v5h3.5L12 18.5V5.5L7.5 9.5zM15.5 9.5l5 5M20.5 9.5l-5 5" />,
    star: <path d="M12 4l2.4 5.2 5.6.7-4.1 3.9 1.1 5.7-5-2.8-5 2.8 1.1-5.7L4 9.9l5.6-.7z" />,
    starred: <path d="M12 4l2.4 5.2 5.6.7-4.1 3.9 1.1 5.7-5-2.8-5 2.8 1.1-5.7L4 9.9l5.6-.7z" fill="currentColor" />,
    rewind: <path d="M5 5v5h5M5.5 10a7.5 7.5 0 1 1-1 4.5" />,
    skip: <path d="M19 5v5h-5M18.5 10a7.5 7.5 0 1 0 1 4.5" />,
    moon: <path d="M19.5 14.5A8 8 0 0 1 9.5 4.5a8 8 0 1 0 10 10z" />,
    alarm: (
        <>
            <circle cx="12" cy="13" r="7" />
            <path d="M12 9v4l2.5 2M4 6.5L7 4M20 6.5L17 4" />
        </>
    ),
    speaker: (
        <>
            <rect x="6" y="3.5" width="12" height="17" rx="2" />
            <circle cx="12" cy="14.5" r="3.2" />
            <path d="M12 7.5v.1" />
        </>
    ),
    preset: (
        <>
            <rect x="4" y="6" width="16" height="12" rx="2.5" />
            <path d="M10.5 10.5L12.5 9v6" />
        </>
    ),
    set: (
        <>
            <rect x="3.5" y="8" width="17" height="11.5" rx="2.2" />
            <circle cx="8.5" cy="13.8" r="2.6" />
            <path d="M14 12h3.5M14 15.5h3.5M6.5 8L16 4" />
        </>
    ),
    trend: <path d="M4 16l5-5 3.5 3.5L20 7M15 7h5v5" />,
} satisfies Record<string, ComponentChildren>;

export type Shape = keyof typeof shapes;

export function Icon({ shape }: { shape: Shape }) {
    return (
        <svg class="icon" viewBox="0 0 24 24" aria-hidden="true" focusable="false">
            {shapes[shape]}
        </svg>
    );
}

/** Drawings for a service's "icon:ANYTHING/NAME", by NAME. */
const named: Readonly<Record<string, Shape>> = {
    presets: "heart",
    favorites: "heart",
    local: "pin",
    music: "note",
    talk: "speech",
    sports: "ball",
    location: "globe",
    language: "language",
    lang: "language",
    podcast: "mic",
    trending: "trend",
    popular: "trend",
    search: "search",
};

export function shapeNamed(icon: string): Shape | null {
    if (!icon.startsWith("icon:"))
        return null;
    return named[icon.slice(icon.lastIndexOf("/") + 1)] ?? null;
}
