// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Reads Qt's translation files (translations/vesk_LANGUAGE.ts), which contain the texts of the page
// and of the programs.
import { readFile, readdir } from "node:fs/promises";
import { join } from "node:path";

const entities = { lt: "<", gt: ">", amp: "&", quot: '"', apos: "'" };

function plain(xml) {
    return xml.replace(/&(#x[0-9a-f]+|#\d+|\w+);/gi, (whole, name) => {
        if (name[0] !== "#")
            return entities[name] ?? whole;
        return String.fromCodePoint(
            name[1] === "x" ? parseInt(name.slice(2), 16) : Number(name.slice(1)));
    });
}

function* elements(xml, name) {
    for (const match of xml.matchAll(new RegExp(`<${name}\\b([^>]*)>([\\s\\S]*?)</${name}>`, "g")))
        yield { attributes: match[1], content: match[2] };
}

function first(xml, name) {
    for (const element of elements(xml, name))
        return element;
    return undefined;
}

/** All messages: context, source, comment and translation, which is a list if it has plural forms. */
export function readCatalogue(xml) {
    const messages = [];
    for (const context of elements(xml, "context")) {
        const name = plain(first(context.content, "name").content);
        for (const message of elements(context.content, "message")) {
            const translation = first(message.content, "translation");
            const forms = [...elements(translation.content, "numerusform")];
            messages.push({
                context: name,
                source: plain(first(message.content, "source").content),
                comment: plain(first(message.content, "comment")?.content ?? ""),
                isFinished: !/type=/.test(translation.attributes),
                translation: forms.length > 0
                    ? forms.map((form) => plain(form.content))
                    : plain(translation.content),
            });
        }
    }
    return messages;
}

/** The page's texts of a catalogue (context "Web"): translations by source text. */
export function pageTexts(messages) {
    return Object.fromEntries(
        messages.filter((message) => message.context === "Web").map((m) => [m.source, m.translation]));
}

export async function catalogueFiles(folder) {
    const files = (await readdir(folder)).filter((name) => /^vesk_[\w-]+\.ts$/.test(name)).sort();
    return files.map((name) => ({ language: name.slice(5, -3), file: join(folder, name) }));
}

/** An esbuild plug-in that provides "vesk:catalogues": one chunk per language, loaded on first use. */
export function cataloguesPlugin(folder) {
    return {
        name: "catalogues",
        setup(build) {
            build.onResolve({ filter: /^vesk:catalogue/ }, ({ path }) => ({
                path: path.slice(5), namespace: "vesk",
            }));
            build.onLoad({ filter: /^catalogues$/, namespace: "vesk" }, async () => {
                const files = await catalogueFiles(folder);
                const entries = files.map(
                    ({ language }) => `"${language}": () => import("vesk:catalogue-${language}")`);
                return { contents: `export const catalogues = {${entries.join(",")}};` };
            });
            build.onLoad({ filter: /^catalogue-/, namespace: "vesk" }, async ({ path }) => {
                const file = join(folder, `vesk_${path.slice("catalogue-".length)}.ts`);
                const texts = pageTexts(readCatalogue(await readFile(file, "utf8")));
                return { contents: `export default ${JSON.stringify(texts)};`, watchFiles: [file] };
            });
        },
    };
}
