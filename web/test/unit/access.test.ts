// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";


const { isLoopback, linkTo, pageUrls, readAccess } = await import("../../src/model/access");
const { judge, scriptOf } = await import("../../src/model/presence");

test("whoever is not said to be an owner is a listener", () => {
    assert.equal(readAccess({ role: "owner" }).isOwner, true);
    for (const told of [{ role: "listener" }, { role: "Owner" }, { role: true }, {}, null, [], "owner"])
        assert.equal(readAccess(told).isOwner, false);
});

test("only addresses of pages are shown and made into links", () => {
    const told = [
        "https://192.168.1.5:8765/", "https://[fe80::1]/radio/", "http://radio.local/", "javascript:alert(1)/", "https://a/#b/",
        "https://a b/", "ftp://a/", "https://a", 5, null,
    ];
    assert.deepEqual(pageUrls(told), ["https://192.168.1.5:8765/", "https://[fe80::1]/radio/", "http://radio.local/"]);
    assert.deepEqual(pageUrls("https://a/"), []);
});

test("names of the machine itself are known", () => {
    for (const name of ["localhost", "127.0.0.1", "127.1.2.3", "[::1]", "radio.localhost"])
        assert.ok(isLoopback(name), name);
    for (const name of ["192.168.1.5", "radio.local", "127.0.0.1.example", "localhost.example", "[::2]"])
        assert.ok(!isLoopback(name), name);
});

test("a link works on other devices, or is none", () => {
    const here = (href: string) => ({ href, hostname: new URL(href).hostname });
    const urls = ["https://192.168.1.5:8765/", "https://[fd00::5]:8765/"];
    assert.equal(linkTo("A:b?c=d", here("http://127.0.0.1:8765/#x"), urls), "https://192.168.1.5:8765/#A:b?c=d");
    assert.equal(linkTo("A:b", here("http://localhost:8765/"), []), null);
    assert.equal(linkTo("A:b", here("https://house/radio/index.html#x"), urls), "https://house/radio/#A:b");
});

const page = (name: string) => `<link href="assets/main-X.css"><script type="module" src="${name}"></script>`;

test("a response says what became of the page", () => {
    const mine = "assets/main-ABC.js";
    assert.equal(scriptOf(page(mine)), mine);
    assert.equal(scriptOf("<html>a proxy's own page</html>"), "");
    assert.equal(judge({ type: "basic", status: 200 }, page(mine), mine), "there");
    assert.equal(judge({ type: "basic", status: 200 }, page("assets/main-DEF.js"), mine), "replaced");
    assert.equal(judge({ type: "basic", status: 200 }, "<html>a proxy's own page</html>", mine), "there");
    assert.equal(judge({ type: "basic", status: 401 }, "", mine), "forgotten");
    assert.equal(judge({ type: "opaqueredirect", status: 0 }, "", mine), "forgotten");
    for (const status of [403, 404, 502, 503])
        assert.equal(judge({ type: "basic", status }, "", mine), "away");
});
