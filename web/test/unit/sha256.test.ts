// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { createHash, randomBytes } from "node:crypto";
import { test } from "node:test";

import { sha256 } from "../../src/model/sha256";

test("digests are those of SHA-256, at each length about the ends of blocks", () => {
    assert.equal(sha256(new TextEncoder().encode("abc")), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    for (let length = 0; length < 200; ++length) {
        const message = randomBytes(length);
        assert.equal(sha256(message), createHash("sha256").update(message).digest("hex"), `${length} bytes`);
    }
});
