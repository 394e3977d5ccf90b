// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";
import { catalogues, type Catalogue } from "vesk:catalogues";

import { bestLanguage, fill, pluralForm } from "./plural";

const sourceLanguage = "en";
/** Tags of the languages that the page is translated into, English included. */
export const languages: readonly string[] = [sourceLanguage, ...Object.keys(catalogues)];

const keptKey = "vesk.language";

/** The current language and its catalogue, which is empty for English. */
const texts = signal<{ language: string; catalogue: Catalogue }>(
    { language: sourceLanguage, catalogue: {} });
export const language = () => texts.value.language;

/** Translates \a source into the current language, with \a args for %1, %2, ... */
export function t(source: string, ...args: (string | number)[]): string {
    const found = texts.value.catalogue[source];
    return fill(typeof found === "string" ? found : source, args);
}

/** Translates a text with a number, %n. `one` and `many` are the English forms; `many` is the catalogue's key. */
export function tn(one: string, many: string, count: number): string {
    const { language: tag, catalogue } = texts.value;
    const found = catalogue[many];
    const form = pluralForm(tag, count);
    const text = Array.isArray(found) ? found[form] : form === 0 ? one : many;
    return fill(text ?? many, [], count);
}

/** Adds the most likely region to a language, "de" to "de-DE": services distinguish regions. */
export function fullTag(tag: string): string {
    const { language, region } = new Intl.Locale(tag).maximize();
    return region ? `${language}-${region}` : language;
}

export function languageName(tag: string): string {
    const name = new Intl.DisplayNames([tag], { type: "language" }).of(tag) ?? tag;
    return name.charAt(0).toLocaleUpperCase(tag) + name.slice(1);
}

let wanted = "";

/** Loads the catalogue for a language tag, and uses it once it is there. */
export async function speak(tag: string): Promise<void> {
    const language = bestLanguage(tag, languages) ?? sourceLanguage;
    wanted = language;
    const catalogue = (await catalogues[language]?.())?.default ?? {};
    if (wanted !== language)
        return;
    texts.value = { language, catalogue };
    document.documentElement.lang = language;
    localStorage.setItem(keptKey, language);
}

/** Resolves when the catalogue used last, which this browser remembers, or the browser's own is loaded. */
export async function startTexts(): Promise<void> {
    await speak(localStorage.getItem(keptKey) ?? navigator.language).catch(() => {});
}
