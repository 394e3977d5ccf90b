// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The licences of the libraries that are part of the bundle, as they ask for.
import { readFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));

/** The names of the packages that the files come from; paths are relative to this folder. */
export function packagesOf(files) {
    const names = new Set();
    for (const file of files) {
        const name = file.match(/(?:^|\/)node_modules\/((?:@[^/]+\/)?[^/]+)\/(?!.*node_modules\/)/)?.[1];
        if (name)
            names.add(name);
    }
    return [...names].sort();
}

/** The licence in the package, or what this folder keeps for one that brings none. */
async function licenceOf(name, folder) {
    for (const file of [join(folder, "LICENSE"), join(here, "notices", `${name}.txt`)]) {
        const text = await readFile(file, "utf8").catch(() => undefined);
        if (text !== undefined)
            return text.trim();
    }
    throw new Error(`${name} brings no licence: put its text into notices/${name}.txt`);
}

/** The text that goes with a bundle of these files. */
export async function notices(files) {
    const parts = [];
    for (const name of packagesOf(files)) {
        const folder = join(here, "node_modules", name);
        const { version, license } = JSON.parse(await readFile(join(folder, "package.json"), "utf8"));
        parts.push(`${name} ${version} (${license})\n\n${await licenceOf(name, folder)}\n`);
    }
    return `Part of this page are these libraries.\n\n${parts.join("\n--------\n\n")}`;
}
