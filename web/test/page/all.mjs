// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Runs the page's tests one file after the other: they share the machine. Arguments name some, or groups of them.
import { spawnSync } from "node:child_process";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const groups = {
    browsing: ["journey", "services", "several", "listener", "unhappy", "hostile", "foreign", "long"],
    devices: ["access", "subpath", "pairing", "devices", "install", "quiet", "firefox", "house"],
    radio: ["radio", "kept"],
};

const here = dirname(fileURLToPath(import.meta.url));
const asked = process.argv.length > 2 ? process.argv.slice(2) : Object.keys(groups);
/** What is told at the end, where it is found: the reporter's own summary of each file that failed. */
const failures = [];
for (const name of asked.flatMap((each) => groups[each] ?? [each])) {
    const { status, stdout } = spawnSync(
        process.execPath, ["--test-reporter=spec", join(here, `${name}.test.mjs`)],
        { stdio: ["inherit", "pipe", "inherit"], encoding: "utf8", maxBuffer: Infinity });
    const [course, failing] = stdout.split("✖ failing tests:");
    console.log(`${name}\n${course.trimEnd()}`);
    if (status !== 0)
        failures.push(`${name}.test.mjs failed:${failing ?? " it ended early"}`);
}
for (const failure of failures) {
    console.error(failure);
    process.exitCode = 1;
}
