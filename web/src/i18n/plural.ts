// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/** Index of the plural form for \a count, in the order of Qt's catalogues. */
export function pluralForm(language: string, count: number): number {
    return (language === "fr" ? count > 1 : count !== 1) ? 1 : 0;
}

/** The best match for \a tag among \a known: the tag itself, or the tag with subtags removed from its end. */
export function bestLanguage(tag: string, known: readonly string[]): string | null {
    for (let rest = tag; rest !== ""; rest = rest.slice(0, Math.max(0, rest.lastIndexOf("-")))) {
        if (known.includes(rest))
            return rest;
    }
    return null;
}

/** Substitutes \a args for %1, %2, ... and \a count for %n. Keeps an ellipsis from starting a line. */
export function fill(text: string, args: readonly (string | number)[], count?: number): string {
    return text.replace(/ …/g, "\u00a0…").replace(/%(\d|n)/g, (place, which: string) => {
        const arg = which === "n" ? count : args[Number(which) - 1];
        return arg === undefined ? place : String(arg);
    });
}
