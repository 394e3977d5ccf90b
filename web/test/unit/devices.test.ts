// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

const { nextPairing, readDevices, startedPairing } = await import("../../src/model/devices");

test("devices are read with what is known of them", () => {
    const told = { devices: [
        { id: "a", name: "Tablet", role: "owner", paired: "2026-11-22T10:00:00Z", seen: "2026-11-22T11:00:00Z", address: "192.168.1.7", connected: true, current: true },
        { id: "b", name: 5, role: "king", seen: null, address: null, connected: "yes" },
        { name: "without an id" }, null, "c",
    ] };
    assert.deepEqual(readDevices(told), [
        { id: "a", name: "Tablet", role: "owner", seen: Date.parse("2026-11-22T11:00:00Z"), address: "192.168.1.7", isConnected: true, isCurrent: true },
        { id: "b", name: "", role: "listener", seen: null, address: "", isConnected: false, isCurrent: false },
    ]);
    for (const nothing of [null, {}, { devices: {} }])
        assert.deepEqual(readDevices(nothing), []);
});

const started = { code: "012345", role: "owner", seconds: 120, urls: ["https://192.168.1.5/", "javascript:1/"], fingerprint: "AB:CD" };

test("a code is kept while its pairing goes on, and dropped with it", () => {
    const open = startedPairing(started, 1000);
    assert.deepEqual(open, { is: "open", code: "012345", role: "owner", until: 121_000, urls: ["https://192.168.1.5/"], fingerprint: "AB:CD" });
    assert.equal(nextPairing(open, { state: "open", seconds: 120 }, 1200), open);
    assert.equal(nextPairing(open, { state: "open", seconds: 90 }, 31_500), open);
    // Somebody else began another one.
    const other = nextPairing(open, { state: "open", seconds: 120 }, 31_500);
    assert.equal(other.is === "open" && other.code, "");
    assert.deepEqual(nextPairing(open, { state: "closed", seconds: 0 }, 2000), { is: "closed" });
    assert.deepEqual(nextPairing(open, { state: "failed" }, 2000), { is: "failed" });
    assert.deepEqual(nextPairing(open, { state: "expired" }, 2000), { is: "expired" });
    assert.deepEqual(nextPairing(open, { state: "paired", device: { id: "a", name: "Tablet" } }, 2000), { is: "paired", name: "Tablet" });
    assert.deepEqual(nextPairing(open, { state: "paired", device: null }, 2000), { is: "paired", name: "" });
    assert.deepEqual(nextPairing(open, {}, 2000), { is: "closed" });
});
