// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { readdir, readFile } from "node:fs/promises";
import { join } from "node:path";
import { test } from "node:test";

// @ts-expect-error: a script of the build, without types
import { catalogueFiles, readCatalogue } from "../../catalogues.mjs";
import { bestLanguage, fill, pluralForm } from "../../src/i18n/plural";

declare const SOURCE_DIR: string;

interface Message {
    context: string;
    source: string;
    comment: string;
    isFinished: boolean;
    translation: string | string[];
}

const translations = join(SOURCE_DIR, "../translations");
const catalogues = new Map<string, Message[]>();
for (const { language, file } of await catalogueFiles(translations))
    catalogues.set(language, readCatalogue(await readFile(file, "utf8")));

async function sources(folder: string, ending: RegExp): Promise<string> {
    const texts: string[] = [];
    for (const entry of await readdir(folder, { withFileTypes: true })) {
        const path = join(folder, entry.name);
        if (entry.isDirectory())
            texts.push(await sources(path, ending));
        else if (ending.test(entry.name))
            texts.push(await readFile(path, "utf8"));
    }
    return texts.join("\n");
}

function all(text: string, pattern: RegExp): string[][] {
    return [...text.matchAll(pattern)].map((match) => match.slice(1).map((group) => JSON.parse(`"${group}"`)));
}

const keyOf = ({ context, source, comment }: Message) => [context, source, comment].join("\n");

test("there are the languages that were promised", () => {
    assert.deepEqual([...catalogues.keys()], ["de", "es", "fr"]);
});

test("each catalogue has the same texts, each once and translated", () => {
    const expected = catalogues.get("de")!.map(keyOf).sort();
    for (const [language, messages] of catalogues) {
        assert.deepEqual(messages.map(keyOf).sort(), expected, language);
        assert.equal(new Set(expected).size, expected.length, language);
        for (const message of messages) {
            assert.ok(message.isFinished, `${language}: ${message.source}`);
            for (const text of [message.translation].flat())
                assert.ok(text.trim() !== "", `${language}: ${message.source}`);
        }
    }
});

test("translations have the places of their texts", () => {
    const places = (text: string) => (text.match(/%(\d|n)/g) ?? []).sort();
    for (const [language, messages] of catalogues) {
        for (const { source, translation } of messages) {
            for (const text of [translation].flat())
                assert.deepEqual(places(text), places(source), `${language}: ${text}`);
        }
    }
});

test("every text of the page is in the catalogues, and nothing else is", async () => {
    const page = await sources(join(SOURCE_DIR, "src"), /\.tsx?$/);
    const used = new Set([
        ...all(page, /\bt\(\s*"((?:[^"\\]|\\.)*)"/g).map(([text]) => text!),
        ...all(page, /\btn\(\s*"(?:[^"\\]|\\.)*",\s*"((?:[^"\\]|\\.)*)"/g).map(([text]) => text!),
    ]);
    assert.ok(used.size > 30);
    const known = catalogues.get("de")!.filter(({ context }) => context === "Web");
    assert.deepEqual([...used].sort(), known.map(({ source }) => source).sort());
});

test("every text that the programs mark is in the catalogues", async () => {
    const programs = await sources(join(SOURCE_DIR, "../src"), /\.(cpp|h)$/);
    // C++ joins neighbouring literals.
    const joined = programs.replace(/"\s*\n\s*"/g, "");
    const marked = all(joined, /QT_TRANSLATE_NOOP\(\s*"([^"]*)",\s*"((?:[^"\\]|\\.)*)"/g)
        .concat(all(joined, /\bTrString\("(\w+)", "((?:[^"\\]|\\.)*)"\)/g));
    assert.ok(marked.length > 50);
    const known = new Set(catalogues.get("de")!.map(({ context, source }) => `${context}: ${source}`));
    const missing = marked.map(([context, source]) => `${context}: ${source}`).filter((key) => !known.has(key));
    assert.deepEqual(missing, []);
});

test("every text of a plug-in's descriptor is in the catalogues", async () => {
    const modules = join(SOURCE_DIR, "../src/modules");
    const known = new Set(catalogues.get("de")!.map(({ context, source }) => `${context}: ${source}`));
    const missing: string[] = [];
    let count = 0;
    for (const entry of await readdir(modules, { withFileTypes: true })) {
        if (!entry.isDirectory())
            continue;
        const module = entry.name;
        const files = (await readdir(join(modules, module))).filter((name) => name.endsWith(".json"));
        for (const file of files) {
            const descriptor = JSON.parse(await readFile(join(modules, module, file), "utf8")) as {
                id: string; context?: string; settings?: { title: string; help?: string }[];
            };
            for (const { title, help } of descriptor.settings ?? []) {
                for (const text of help === undefined ? [title] : [title, help]) {
                    ++count;
                    const key = `${descriptor.context ?? descriptor.id}: ${text}`;
                    if (!known.has(key))
                        missing.push(key);
                }
            }
        }
    }
    assert.ok(count >= 8);
    assert.deepEqual(missing, []);
});

test("a catalogue is read with its entities and its forms", () => {
    const [message, counted] = readCatalogue(`<TS><context><name>A&amp;B</name>
        <message><source>&lt;x&gt; &quot;y&quot;</source><comment>c</comment><translation>&#xe9;&#233;</translation></message>
        <message numerus="yes"><source>%n</source><translation type="unfinished"><numerusform>1</numerusform>
        <numerusform>2</numerusform></translation></message></context></TS>`) as Message[];
    assert.deepEqual(message, { context: "A&B", source: '<x> "y"', comment: "c", isFinished: true, translation: "éé" });
    assert.deepEqual(counted!.translation, ["1", "2"]);
    assert.equal(counted!.isFinished, false);
});

test("places are filled once, and only with what there is", () => {
    assert.equal(fill("%1 and %2", ["%2", "b"]), "%2 and b");
    assert.equal(fill("%n of %1", ["x"], 3), "3 of x");
    assert.equal(fill("100 % %3", ["x"]), "100 % %3");
});

test("numbers choose their form by language", () => {
    assert.deepEqual([0, 1, 2].map((n) => pluralForm("de", n)), [1, 0, 1]);
    assert.deepEqual([0, 1, 2].map((n) => pluralForm("fr", n)), [0, 0, 1]);
});

test("a tag leads to the nearest catalogue", () => {
    const known = ["en", "de", "fr-CA"];
    assert.equal(bestLanguage("de-AT-1996", known), "de");
    assert.equal(bestLanguage("fr-CA", known), "fr-CA");
    assert.equal(bestLanguage("fr", known), null);
    assert.equal(bestLanguage("", known), null);
    assert.equal(bestLanguage("__proto__", known), null);
});
