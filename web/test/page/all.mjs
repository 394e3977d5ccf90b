// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Runs the page's tests one file after the other: they share the machine. Arguments name some.
import { spawnSync } from "node:child_process";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));
const names = process.argv.length > 2
    ? process.argv.slice(2)
    : ["journey", "services", "several", "listener", "unhappy", "access", "hostile", "foreign", "long"];
for (const name of names) {
    const { status } = spawnSync(process.execPath, [join(here, `${name}.test.mjs`)], { stdio: "inherit" });
    if (status !== 0)
        process.exitCode = 1;
}
