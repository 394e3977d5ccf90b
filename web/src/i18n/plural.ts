// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/** Which of a text's forms fits a number, as Qt's catalogues order them. */
export function pluralForm(language: string, count: number): number {
    return (language === "fr" ? count > 1 : count !== 1) ? 1 : 0;
}

/** The catalogue for a tag: its own, or that of what is left without its last parts. */
export function bestLanguage(tag: string, known: readonly string[]): string | null {
    for (let rest = tag; rest !== ""; rest = rest.slice(0, Math.max(0, rest.lastIndexOf("-")))) {
        if (known.includes(rest))
            return rest;
    }
    return null;
}

/** Puts the arguments in the places of %1, %2, ... and of %n. An ellipsis never begins a line. */
export function fill(text: string, args: readonly (string | number)[], count?: number): string {
    return text.replace(/ …/g, "\u00a0…").replace(/%(\d|n)/g, (place, which: string) => {
        const arg = which === "n" ? count : args[Number(which) - 1];
        return arg === undefined ? place : String(arg);
    });
}
