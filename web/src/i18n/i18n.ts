// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { signal } from "@preact/signals";
import { catalogues, type Catalogue } from "vesk:catalogues";

import { getData, host, watch } from "../model/host";
import { reloadShown } from "../model/Screen";
import { loadServices } from "../model/services";
import { bestLanguage, fill, pluralForm } from "./plural";

export const languagePath = "settings:ui/language";
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

async function become(tag: string): Promise<void> {
    const language = bestLanguage(tag, languages) ?? sourceLanguage;
    wanted = language;
    const catalogue = (await catalogues[language]?.())?.default ?? {};
    if (wanted !== language)
        return;
    texts.value = { language, catalogue };
    document.documentElement.lang = language;
    localStorage.setItem(keptKey, language);
}

async function follow(): Promise<void> {
    try {
        const [value] = await getData(languagePath, ["value"]);
        const tag = (value as { string_?: unknown } | null)?.string_;
        if (typeof tag === "string")
            await become(tag);
    } catch {
        // Read again when the connection is back.
    }
}

/** Follows the language setting. Resolves when the catalogue used last, which this browser remembers, is loaded. */
export async function startTexts(): Promise<void> {
    watch(languagePath, () => {
        void follow();
        // What was read from services so far is in the old language.
        void loadServices();
        reloadShown();
    });
    host.isOpen.subscribe((isOpen) => {
        if (isOpen)
            void follow();
    });
    await become(localStorage.getItem(keptKey) ?? navigator.language).catch(() => {});
}
