// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Bundles the page and the pairing page into a folder: node build.mjs [--out FOLDER] [--watch]
import { createHash } from "node:crypto";
import { mkdir, readFile, readdir, rm, writeFile } from "node:fs/promises";
import { basename, dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

import { cataloguesPlugin } from "./catalogues.mjs";
import { build, context } from "./esbuild.mjs";
import { icon } from "./icons.mjs";
import { notices } from "./notices.mjs";

const here = dirname(fileURLToPath(import.meta.url));
const at = process.argv.indexOf("--out");
const out = resolve(at < 0 ? join(here, "../build/web") : process.argv[at + 1]);

const target = ["chrome100", "firefox100", "safari15.4"];

async function write(name, content) {
    await mkdir(dirname(join(out, name)), { recursive: true });
    await writeFile(join(out, name), content);
    const zipped = gzipSync(content, { level: 9 });
    if (zipped.length < content.length * 0.9)
        await writeFile(join(out, name + ".gz"), zipped);
}

/** Writes esbuild's output below \a folder, and the document that loads it, which is the result. */
async function writeBundle(result, folder, template, document) {
    await rm(join(out, folder), { recursive: true, force: true });
    const name = (file) => file.path.slice(file.path.lastIndexOf(`/${folder}/`) + 1);
    for (const file of result.outputFiles)
        await write(name(file), file.contents);
    const entry = (ending) =>
        name(result.outputFiles.find((file) => /\/main-[^/]*$/.test(file.path) && file.path.endsWith(ending)));
    const page = await readFile(join(here, "public", template), "utf8");
    // Relative, because the page may lie below a path.
    const content = page.replace("MAIN_CSS", entry(".css")).replace("MAIN_JS", entry(".js"));
    await write(document, content);
    return content;
}

async function finishPage(result) {
    if (result.errors.length > 0)
        return;
    const shell = new Map([["./", await writeBundle(result, "assets", "index.html", "index.html")]]);
    for (const file of result.outputFiles)
        shell.set(`assets/${basename(file.path)}`, file.contents);
    for (const file of await readdir(join(here, "public"))) {
        if (!file.endsWith(".html"))
            shell.set(file, await readFile(join(here, "public", file)));
    }
    for (const [name, size, isMaskable] of [["icon-192", 192, false], ["icon-512", 512, false], ["icon-maskable-512", 512, true]])
        shell.set(`${name}.png`, icon(size, isMaskable));
    for (const [name, content] of shell) {
        if (!/^(\.\/$|assets\/)/.test(name))
            await write(name, content);
    }
    await write("notices.txt", await notices(Object.keys(result.metafile.inputs)));
    await writeWorker(shell);
}

/** Writes the service worker, which names the files of this build by name and all of them by their hash. */
async function writeWorker(shell) {
    const hash = createHash("sha256");
    for (const [name, content] of shell)
        hash.update(name).update(content);
    const { outputFiles } = await build({
        entryPoints: [join(here, "src/worker.ts")],
        bundle: true,
        format: "iife",
        target,
        minify: true,
        write: false,
        define: { SHELL: JSON.stringify([...shell.keys()]), BUILD: JSON.stringify(hash.digest("hex").slice(0, 12)) },
    });
    await write("worker.js", outputFiles[0].contents);
}

/** The pairing page is served to everybody at "pair", so that all that it loads lies below "pair/". */
async function finishPairing(result) {
    if (result.errors.length > 0)
        return;
    await writeBundle(result, "pair", "pair.html", "pair/index.html");
    await write("pair/favicon.svg", await readFile(join(here, "public/favicon.svg")));
}

const options = (entry, folder, finish) => ({
    entryPoints: { main: join(here, entry) },
    outdir: join(out, folder),
    entryNames: "[name]-[hash]",
    chunkNames: "[name]-[hash]",
    bundle: true,
    splitting: true,
    format: "esm",
    target,
    jsx: "automatic",
    jsxImportSource: "preact",
    minify: true,
    legalComments: "none", // they are in notices.txt
    metafile: true,
    logLevel: "warning",
    write: false,
    plugins: [
        cataloguesPlugin(join(here, "../translations")),
        { name: "finish", setup: (plugin) => plugin.onEnd(finish) },
    ],
});

await rm(out, { recursive: true, force: true });
for (const each of [options("src/pair/main.tsx", "pair", finishPairing), options("src/main.tsx", "assets", finishPage)]) {
    if (process.argv.includes("--watch"))
        await (await context(each)).watch();
    else
        await build(each);
}
