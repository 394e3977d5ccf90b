// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { createHash } from "node:crypto";
import { test } from "node:test";

// @ts-expect-error: a script of the build, without types
import { checked, packagesOf, tarballOf } from "../../fetch.mjs";

const integrity = (content: string) => "sha512-" + createHash("sha512").update(content).digest("base64");
const lock = (folder: string, entry: object) => ({
    packages: { "": { name: "page" }, [folder]: { version: "1.2.3", integrity: integrity("x"), ...entry } },
});

test("packages of a lock file are those for every machine, without those for tests unless they are wanted", () => {
    const packages = (entry: object, withDev = false) => packagesOf(lock("node_modules/@a/b", entry), withDev);
    const wanted = { name: "@a/b", folder: "node_modules/@a/b", version: "1.2.3", integrity: integrity("x") };
    assert.deepEqual(packages({}), [wanted]);
    assert.deepEqual(packages({ dev: true }), []);
    assert.deepEqual(packages({ dev: true }, true), [wanted]);
    assert.deepEqual(packages({ os: ["linux"] }), []);
    assert.deepEqual(packages({ cpu: ["arm"] }, true), []);
});

test("a package within another is called by its own name", () =>
    assert.equal(packagesOf(lock("node_modules/a/node_modules/@b/c", {}), false)[0].name, "@b/c"));

test("a lock file that leads outside or does not say what is expected is refused", () => {
    for (const folder of ["node_modules/../../etc", "node_modules/a/../b", "/etc", "etc", "node_modules/", "node_modules/a b"])
        assert.throws(() => packagesOf(lock(folder, {}), false), /is no folder of a package/, folder);
    for (const sum of [undefined, "", "sha1-abc", "sha512-", "sha512-" + "A".repeat(87)])
        assert.throws(() => packagesOf(lock("node_modules/a", { integrity: sum }), false), /has no sha512 checksum/, sum);
});

test("tarballs are named as npm names them", () => {
    assert.deepEqual(tarballOf({ name: "a", version: "1.0.0" }), { file: "a-1.0.0.tgz", path: "a/-/a-1.0.0.tgz" });
    assert.deepEqual(tarballOf({ name: "@a/b", version: "2.0.0" }), { file: "a-b-2.0.0.tgz", path: "@a/b/-/b-2.0.0.tgz" });
});

test("what has another checksum is not taken", () => {
    const library = { integrity: integrity("right") };
    assert.equal(checked(library, "right"), "right");
    assert.throws(() => checked(library, "wrong"), /checksum/);
    assert.throws(() => checked(library, ""), /checksum/);
});
