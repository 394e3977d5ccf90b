// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Collects the licences of the libraries in the bundle, which require that they are distributed with it.
import { readFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));

/** Names of the npm packages that the files belong to; paths are relative to this folder. */
export function packagesOf(files) {
    const names = new Set();
    for (const file of files) {
        const name = file.match(/(?:^|\/)node_modules\/((?:@[^/]+\/)?[^/]+)\/(?!.*node_modules\/)/)?.[1];
        if (name)
            names.add(name);
    }
    return [...names].sort();
}

/** The package's LICENSE, or the copy in notices/ for a package without one. */
async function licenceOf(name, folder) {
    for (const file of [join(folder, "LICENSE"), join(here, "notices", `${name}.txt`)]) {
        const text = await readFile(file, "utf8").catch(() => undefined);
        if (text !== undefined)
            return text.trim();
    }
    throw new Error(`${name} brings no licence: put its text into notices/${name}.txt`);
}

/** The contents of notices.txt for a bundle of these files. */
export async function notices(files) {
    const parts = [];
    for (const name of packagesOf(files)) {
        const folder = join(here, "node_modules", name);
        const { version, license } = JSON.parse(await readFile(join(folder, "package.json"), "utf8"));
        parts.push(`${name} ${version} (${license})\n\n${await licenceOf(name, folder)}\n`);
    }
    return `Part of this page are these libraries.\n\n${parts.join("\n--------\n\n")}`;
}
