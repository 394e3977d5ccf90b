// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { test } from "node:test";

import { codeInFragment, deviceName, digitsIn, outcomeOf, pair } from "../../src/pair/pairing";

test("a code is what digits there are, as it was typed, read out or pasted", () => {
    const typed: [string, string][] = [
        ["123456", "123456"], ["123 456", "123456"], ["Code: 12-34-56\n", "123456"], ["1234567", "123456"],
        ["", ""], ["abc", ""], ["١٢٣٤٥٦", ""],
    ];
    for (const [text, digits] of typed)
        assert.equal(digitsIn(text), digits, text);
});

test("an address brings a code along only as a whole", () => {
    const fragments: [string, string][] = [
        ["#012345", "012345"], ["", ""], ["#", ""], ["#12345", ""], ["#1234567", ""], ["#12345a", ""], ["#123456&x", ""],
    ];
    for (const [hash, code] of fragments)
        assert.equal(codeInFragment(hash), code, hash);
});

test("a device is named after its browser and its system", () => {
    const known: [string, number, string][] = [
        ["Mozilla/5.0 (X11; Linux x86_64; rv:128.0) Gecko/20100101 Firefox/128.0", 0, "Firefox, Linux"],
        ["Mozilla/5.0 (Windows NT 10.0; Win64; x64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/126.0.0.0 Safari/537.36 Edg/126.0.0.0", 0, "Edge, Windows"],
        ["Mozilla/5.0 (Linux; Android 10; K) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/126.0.0.0 Safari/537.36", 5, "Chrome, Android"],
        ["Mozilla/5.0 (Linux; Android 13; SAMSUNG SM-X200) AppleWebKit/537.36 (KHTML, like Gecko) SamsungBrowser/25.0 Chrome/121.0.0.0 Safari/537.36", 5, "Samsung Internet, Android"],
        ["Mozilla/5.0 (iPhone; CPU iPhone OS 17_5 like Mac OS X) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/17.5 Mobile/15E148 Safari/604.1", 5, "Safari, iPhone"],
        ["Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/17.5 Safari/605.1.15", 5, "Safari, iPad"],
        ["Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/17.5 Safari/605.1.15", 0, "Safari, Mac"],
        ["Mozilla/5.0 (X11; CrOS x86_64 14541.0.0) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/126.0.0.0 Safari/537.36", 0, "Chrome, ChromeOS"],
        ["curl/8", 0, ""],
    ];
    for (const [agent, touchPoints, name] of known)
        assert.equal(deviceName(agent, touchPoints), name);
});

test("each response has its outcome, and one that is no response has one, too", () => {
    assert.deepEqual(outcomeOf(200, { device: {} }), { is: "paired" });
    assert.deepEqual(outcomeOf(403, { error: "wrongCode", left: 3 }), { is: "wrongCode", left: 3 });
    assert.deepEqual(outcomeOf(403, { error: "wrongCode", left: "many" }), { is: "wrongCode", left: 0 });
    for (const error of ["ended", "closed", "invalid", "notSaved"])
        assert.deepEqual(outcomeOf(400, { error }), { is: error });
    for (const body of [null, [], "closed", { error: "constructor" }, { error: 1 }])
        assert.deepEqual(outcomeOf(502, body), { is: "other", status: 502 });
});

test("the code goes to the host that the page came from, whatever its path", async () => {
    const sent: [string, RequestInit][] = [];
    Object.assign(globalThis, {
        fetch: (url: URL, init: RequestInit) => {
            sent.push([url.href, init]);
            return Promise.resolve({ status: 502, json: () => Promise.reject(new Error("no JSON")) });
        },
    });
    assert.deepEqual(await pair(new URL("https://house/radio/"), "123456", "Tablet"), { is: "other", status: 502 });
    assert.equal(sent[0]![0], "https://house/radio/pair");
    assert.equal(sent[0]![1].method, "POST");
    assert.deepEqual(JSON.parse(String(sent[0]![1].body)), { code: "123456", name: "Tablet", bearer: false });
    Object.assign(globalThis, { fetch: () => Promise.reject(new TypeError("network")) });
    assert.deepEqual(await pair(new URL("https://house/"), "123456", "Tablet"), { is: "unreachable" });
});
