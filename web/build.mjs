// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Bundles the page into a folder: node build.mjs [--out FOLDER] [--watch]
import { build, context } from "esbuild";
import { mkdir, readFile, readdir, rm, writeFile } from "node:fs/promises";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

import { cataloguesPlugin } from "./catalogues.mjs";
import { notices } from "./notices.mjs";

const here = dirname(fileURLToPath(import.meta.url));
const at = process.argv.indexOf("--out");
const out = resolve(at < 0 ? join(here, "../build/web") : process.argv[at + 1]);

async function write(name, content) {
    await mkdir(dirname(join(out, name)), { recursive: true });
    await writeFile(join(out, name), content);
    const zipped = gzipSync(content, { level: 9 });
    if (zipped.length < content.length * 0.9)
        await writeFile(join(out, name + ".gz"), zipped);
}

/** Writes esbuild's output, the page that loads it, the notices and the files in public/. */
async function finish(result) {
    if (result.errors.length > 0)
        return;
    await rm(out, { recursive: true, force: true });
    const name = (file) => file.path.slice(file.path.lastIndexOf("/assets/") + 1);
    for (const file of result.outputFiles)
        await write(name(file), file.contents);
    const entry = (ending) =>
        name(result.outputFiles.find((file) => /\/main-[^/]*$/.test(file.path) && file.path.endsWith(ending)));
    const page = await readFile(join(here, "public/index.html"), "utf8");
    await write("index.html",
        page.replace("MAIN_CSS", "/" + entry(".css")).replace("MAIN_JS", "/" + entry(".js")));
    await write("notices.txt", await notices(Object.keys(result.metafile.inputs)));
    for (const file of await readdir(join(here, "public"))) {
        if (file !== "index.html")
            await write(file, await readFile(join(here, "public", file)));
    }
}

const options = {
    entryPoints: [join(here, "src/main.tsx")],
    outdir: join(out, "assets"),
    entryNames: "[name]-[hash]",
    chunkNames: "[name]-[hash]",
    bundle: true,
    splitting: true,
    format: "esm",
    target: ["chrome100", "firefox100", "safari15.4"],
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
};

if (process.argv.includes("--watch"))
    await (await context(options)).watch();
else
    await build(options);
