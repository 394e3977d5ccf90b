// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Bundles the unit tests with what they test, and runs them.
import { mkdtemp, readdir, rm } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";

import { cataloguesPlugin } from "../catalogues.mjs";
import { build } from "../esbuild.mjs";

const here = dirname(fileURLToPath(import.meta.url));
const names = (await readdir(join(here, "unit"))).filter((name) => name.endsWith(".test.ts")).sort();
// Beside the sources, so that what is not bundled is found.
const folder = await mkdtemp(join(here, "../node_modules/.unit-"));
await build({
    entryPoints: names.map((name) => join(here, "unit", name)),
    outdir: folder,
    outExtension: { ".js": ".mjs" },
    bundle: true,
    format: "esm",
    platform: "node",
    target: "node18",
    plugins: [cataloguesPlugin(join(here, "../../translations"))],
    define: { SOURCE_DIR: JSON.stringify(join(here, "..")) },
    logLevel: "warning",
});
for (const name of names)
    await import(pathToFileURL(join(folder, name.replace(/ts$/, "mjs"))));
process.once("beforeExit", async () => rm(folder, { recursive: true, force: true }));
