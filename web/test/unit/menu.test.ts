// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

import { readRow, RowType } from "../../src/model/rows";

const { blameMenu, isMenu } = await import("../../src/model/menu");
const { changesFavorites, idsOf } = await import("../../src/model/favorites");
const { readService, services } = await import("../../src/model/services");

services.value = [
    readService({
        path: "X:",
        favorites: { path: "X:kept", toggle: ["X:menu/keep", "X:player/keep"], ids: ["guideId", "sid"] },
    }),
    readService({ path: "Y:" }),
];

test("a menu of nothing is none", () => {
    assert.ok(isMenu("X:menu?guideId=s1&veskIcon="));
    assert.ok(!isMenu(""));
    assert.ok(!isMenu("X:menu?guideId="));
    assert.ok(!isMenu("X:menu?a=1&guideId=&b=2"));
    assert.ok(isMenu("Y:menu?guideId="), "another service names no such parameter");
});

test("a menu that its service does not survive is offered no more", () => {
    blameMenu("X:menu?id=7");
    assert.ok(isMenu("X:menu?id=7"));
    blameMenu("X:menu?id=7");
    assert.ok(!isMenu("X:menu?id=7"));
    assert.ok(isMenu("X:menu?id=8"));
});

test("a menu is about what the parameters that its service names say", () => {
    assert.deepEqual(idsOf("X:menu?guideId=t1&sid=p%201&otherId=7&veskMatchingPath=X%3Aa%3Fid%3D5"), ["t1", "p 1"]);
    assert.deepEqual(idsOf("X:menu?guideId="), []);
    assert.deepEqual(idsOf("Y:menu?guideId=t1"), []);
    assert.deepEqual(idsOf("Z:menu?guideId=t1"), []);
});

test("the row that changes favorites is the one that its service names", () => {
    const row = (path: string, type: number = RowType.activate) => readRow({ path, type });
    assert.ok(changesFavorites(row("X:menu/keep?guideId=s1")));
    assert.ok(changesFavorites(row("X:player/keep")));
    assert.ok(!changesFavorites(row("X:menu/keeper?guideId=s1")));
    assert.ok(!changesFavorites(row("Y:menu/keep")));
    assert.ok(!changesFavorites(row("X:presets")));
    assert.ok(!changesFavorites(row("X:menu/keep", RowType.container)));
});
