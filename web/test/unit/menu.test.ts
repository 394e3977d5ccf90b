// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

import { readRow, RowType } from "../../src/model/rows";

const { blameMenu, isMenu } = await import("../../src/model/menu");
const { changesFavorites, idsOf } = await import("../../src/model/favorites");

test("a menu of nothing is none", () => {
    assert.ok(isMenu("X:menu?guideId=s1&veskIcon="));
    assert.ok(!isMenu(""));
    assert.ok(!isMenu("X:menu?guideId="));
    assert.ok(!isMenu("X:menu?a=1&guideId=&b=2"));
});

test("a menu that its service does not survive is offered no more", () => {
    blameMenu("X:menu?id=7");
    assert.ok(isMenu("X:menu?id=7"));
    blameMenu("X:menu?id=7");
    assert.ok(!isMenu("X:menu?id=7"));
    assert.ok(isMenu("X:menu?id=8"));
});

test("a menu is about what its ids name", () => {
    assert.deepEqual(idsOf("X:menu?guideId=t1&sid=p%201&veskTitle=Kid&veskMatchingPath=X%3Aa%3Fid%3D5"), ["t1", "p 1"]);
    assert.deepEqual(idsOf("X:menu?guideId="), []);
});

test("the row that changes favorites is known by its path", () => {
    const row = (path: string, type: number = RowType.activate) => readRow({ path, type });
    assert.ok(changesFavorites(row("X:browser_context/presets?guideId=s1")));
    assert.ok(changesFavorites(row("Y:favorites")));
    assert.ok(!changesFavorites(row("X:browse?c=presets")));
    assert.ok(!changesFavorites(row("X:browser_context/presets", RowType.container)));
});
