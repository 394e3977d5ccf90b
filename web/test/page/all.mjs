// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Runs the page's tests one file after the other: they share the machine. Arguments name some, or groups of them.
import { spawn } from "node:child_process";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const groups = {
    browsing: ["journey", "services", "several", "listener", "unhappy", "hostile", "foreign", "long"],
    devices: ["access", "subpath", "pairing", "devices", "install", "quiet", "firefox", "house"],
    radio: ["radio", "kept"],
};

const here = dirname(fileURLToPath(import.meta.url));
const asked = process.argv.length > 2 ? process.argv.slice(2) : Object.keys(groups);

/** Runs one file, whose output is passed on as it comes, and resolves to what failed in the reporter's words; null for nothing. */
function run(name) {
    console.log(name);
    const child = spawn(process.execPath, ["--test-reporter=spec", join(here, `${name}.test.mjs`)],
        { stdio: ["inherit", "pipe", "inherit"] });
    let output = "";
    child.stdout.setEncoding("utf8").on("data", (text) => {
        output += text;
        process.stdout.write(text);
    });
    return new Promise((done) => {
        child.on("close", (status) => done(status === 0 ? null : output.split("✖ failing tests:")[1] ?? " it ended early"));
    });
}

/** Told again at the end, where it is found. */
const failures = [];
for (const name of asked.flatMap((each) => groups[each] ?? [each])) {
    const failure = await run(name);
    if (failure !== null)
        failures.push(`${name}.test.mjs failed:${failure}`);
}
for (const failure of failures) {
    console.error(failure);
    process.exitCode = 1;
}
