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
/** The languages that the page has texts in. */
export const languages: readonly string[] = [sourceLanguage, ...Object.keys(catalogues)];

const keptKey = "vesk.language";

/** The texts' language, and the texts that are not in English. */
const texts = signal<{ language: string; catalogue: Catalogue }>(
    { language: sourceLanguage, catalogue: {} });
export const language = () => texts.value.language;

/** The text in the user's language. */
export function t(source: string, ...args: (string | number)[]): string {
    const found = texts.value.catalogue[source];
    return fill(typeof found === "string" ? found : source, args);
}

/** A text with a number in it, %n; `one` and `many` are the English forms, `many` is the key. */
export function tn(one: string, many: string, count: number): string {
    const { language: tag, catalogue } = texts.value;
    const found = catalogue[many];
    const form = pluralForm(tag, count);
    const text = Array.isArray(found) ? found[form] : form === 0 ? one : many;
    return fill(text ?? many, [], count);
}

/** The language with the region where it is spoken most, "de-DE": services make a difference. */
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
        // The next connection asks again.
    }
}

/** Resolves once the texts that were used last are there. */
export async function startTexts(): Promise<void> {
    watch(languagePath, () => {
        void follow();
        // What services answered is in the old language.
        void loadServices();
        reloadShown();
    });
    host.isOpen.subscribe((isOpen) => {
        if (isOpen)
            void follow();
    });
    await become(localStorage.getItem(keptKey) ?? navigator.language).catch(() => {});
}
