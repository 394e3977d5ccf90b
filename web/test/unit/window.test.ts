// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { test } from "node:test";

import { rowsInSight } from "../../src/view/window";

test("rows in sight are those between the edges, and a few more", () => {
    assert.deepEqual(rowsInSight(0, 600, 60, 1000, 0), { first: 0, last: 10 });
    assert.deepEqual(rowsInSight(630, 600, 60, 1000, 0), { first: 10, last: 20 });
    assert.deepEqual(rowsInSight(630, 600, 60, 1000, 5), { first: 5, last: 25 });
});

test("there are no rows before the first and after the last", () => {
    assert.deepEqual(rowsInSight(-300, 600, 60, 1000, 8), { first: 0, last: 13 });
    assert.deepEqual(rowsInSight(100000, 600, 60, 20, 8), { first: 19, last: 19 });
    assert.deepEqual(rowsInSight(0, 600, 60, 3, 8), { first: 0, last: 2 });
    assert.deepEqual(rowsInSight(0, 600, 60, 0, 8), { first: 0, last: 0 });
});
