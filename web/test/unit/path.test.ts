// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { test } from "node:test";

import { equalsBut, paramOf, prefixOf, withParam } from "../../src/model/path";

test("a parameter is added in the order in which the host writes them", () => {
    assert.equal(withParam("A:b", "query", "x"), "A:b?query=x");
    assert.equal(withParam("A:b?m=1&z=2", "query", "x"), "A:b?m=1&query=x&z=2");
    assert.equal(withParam("A:b?query=old", "query", "new"), "A:b?query=new");
});

test("a parameter's text is encoded as the host does it", () => {
    assert.equal(withParam("A:b", "q", "a b&c=d/é'(!)*~-_."), "A:b?q=a%20b%26c%3Dd%2F%C3%A9%27%28%21%29%2A~-_.");
    assert.equal(withParam("A:b", "q", "\ud800"), "A:b?q=%EF%BF%BD");
    assert.equal(withParam("A:b", "q", "😀"), "A:b?q=%F0%9F%98%80");
});

test("a parameter is read as it was written", () => {
    for (const text of ["", "a b", "100 %", "é&=?", "%41", "__proto__"])
        assert.equal(paramOf(withParam("A:b?x=1", "q", text), "q"), text);
    assert.equal(paramOf("A:b", "q"), null);
    assert.equal(paramOf("A:b?q=%zz", "q"), "%zz");
});

test("paths are compared without one parameter", () => {
    assert.ok(equalsBut("A:b?m=s", "A:b?m=s&query=jazz", "query"));
    assert.ok(!equalsBut("A:b?m=s", "A:b?m=t&query=jazz", "query"));
    assert.ok(!equalsBut("A:b?m=s", "A:c?m=s&query=jazz", "query"));
});

test("the prefix names who answers", () => {
    assert.equal(prefixOf("Radio:browse/x?y=a:b"), "Radio");
    assert.equal(prefixOf("nothing"), "");
});
