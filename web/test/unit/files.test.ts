// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

const { maxSize, partSize, partsOf, readImported } = await import("../../src/model/files");

test("a file goes in parts that together are the file", () => {
    for (const [size, count] of [[0, 1], [1, 1], [partSize, 1], [partSize + 1, 2], [maxSize, 24]] as const) {
        const bytes = Uint8Array.from({ length: size }, (_, i) => (i * 7) & 255);
        const parts = partsOf(bytes);
        assert.equal(parts.length, count);
        const back = Buffer.concat(parts.map((part) => Buffer.from(part, "base64")));
        assert.ok(back.equals(Buffer.from(bytes)), `${size} bytes`);
    }
});

test("what an import did is read, whatever the service says", () => {
    assert.deepEqual(
        readImported({ added: 2, known: 1, skipped: 0, message: "Fine." }),
        { added: 2, known: 1, skipped: 0, message: "Fine." });
    for (const nonsense of [null, 5, [], { added: "2", known: null, message: {} }])
        assert.deepEqual(readImported(nonsense), { added: 0, known: 0, skipped: 0, message: "" });
});
