// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { effect, signal } from "@preact/signals";

export const themes = ["system", "light", "dark"] as const;
export type Theme = (typeof themes)[number];

const keptKey = "vesk.theme";

/** The colour theme, stored in this browser. */
export const theme = signal<Theme>(
    themes.find((each) => each === localStorage.getItem(keptKey)) ?? "system");

export function startTheme(): void {
    const system = matchMedia("(prefers-color-scheme: dark)");
    const isSystemDark = signal(system.matches);
    system.addEventListener("change", () => (isSystemDark.value = system.matches));
    effect(() => {
        const chosen = theme.value;
        const isDark = chosen === "system" ? isSystemDark.value : chosen === "dark";
        const root = document.documentElement;
        root.dataset.theme = isDark ? "dark" : "light";
        document.querySelector("meta[name=theme-color]")
            ?.setAttribute("content", getComputedStyle(root).getPropertyValue("--bg").trim());
        localStorage.setItem(keptKey, chosen);
    });
}
