// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// esbuild as Debian packages it: beside Debian's own libraries for Node.js, where a Node.js from elsewhere does not look.
import { existsSync, readdirSync } from "node:fs";
import { createRequire } from "node:module";

const folders = ["/usr/share/nodejs", ...readdirSync("/usr/lib").map((folder) => `/usr/lib/${folder}/nodejs`)];
const found = folders.map((folder) => `${folder}/esbuild/lib/main.js`).find(existsSync);
if (!found)
    throw new Error("esbuild is missing: install Debian's package of that name");
process.env.ESBUILD_BINARY_PATH ??= "/usr/bin/esbuild";
export const { build, context } = createRequire(import.meta.url)(found);
