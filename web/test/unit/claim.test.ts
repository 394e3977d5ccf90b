// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

const { claimLife, keepClaim, keptClaim, lookDelay, pageIn } = await import("../../src/model/claim");

test("the page to go to is found in the instruction", () => {
    assert.equal(
        pageIn("Go to http://opml.radiotime.com/mydevice and enter the code M7WYP9")!.href,
        "http://opml.radiotime.com/mydevice");
    assert.deepEqual(pageIn("Visit tunein.com/mydevice."), { text: "tunein.com/mydevice", href: "https://tunein.com/mydevice" });
    assert.equal(pageIn("(see https://x.example/a?b=c)")!.href, "https://x.example/a?b=c");
    assert.equal(pageIn("http://127.0.0.1:8080/mydevice, please")!.href, "http://127.0.0.1:8080/mydevice");
});

test("nothing but a page of the web is an address", () => {
    for (const text of ["", "Enter M7WYP9", "javascript:alert(1)", "data:text/html,x", "file:///etc/passwd", "1/2", "a.b"])
        assert.equal(pageIn(text), null, text);
});

test("a code is kept until it is forgotten or too old", () => {
    const claim = { code: "ABC", message: "m", since: 1000 };
    keepClaim("X:", claim);
    assert.deepEqual(keptClaim("X:", 2000), claim);
    assert.equal(keptClaim("Y:", 2000), null);
    assert.equal(keptClaim("X:", 1001 + claimLife), null);
    keepClaim("X:", null);
    assert.equal(keptClaim("X:", 2000), null);
    sessionStorage.setItem("vesk.claim.X:", "{");
    assert.equal(keptClaim("X:", 2000), null);
    sessionStorage.setItem("vesk.claim.X:", '{"code":5}');
    assert.equal(keptClaim("X:", 2000), null);
});

test("looks whether it was entered become rarer", () => {
    assert.deepEqual([0, 1, 2, 3, 4, 500].map(lookDelay), [5000, 5000, 10_000, 15_000, 30_000, 30_000]);
});
