// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { test } from "node:test";

import { readRow, readRows, readValue, RowType } from "../../src/model/rows";

test("a row is read by its roles' names", () => {
    const answer = readRows(
        { rowsCount: 7, rows: [["A", 3, { path: "X:menu" }]], roles: { title: "T" } },
        ["title", "type", "context"]);
    assert.equal(answer.count, 7);
    assert.equal(answer.roles.title, "T");
    assert.equal(answer.rows[0]!.title, "A");
    assert.equal(answer.rows[0]!.type, RowType.audio);
    assert.equal(answer.rows[0]!.contextPath, "X:menu");
});

test("what is of the wrong type is as good as missing", () => {
    const row = readRow({
        title: { evil: 1 }, description: 5, icon: null, type: "3", path: ["x"], context: "y",
        disabled: "yes", preferred: 1, value: "plain", query: false, queryPath: 0,
    });
    assert.deepEqual(row, readRow({}));
    assert.equal(row.type, RowType.text);
});

test("an answer that is none has no rows", () => {
    for (const nonsense of [null, 5, "x", [], { rows: "x", rowsCount: "9", roles: [] }])
        assert.deepEqual(readRows(nonsense, ["title"]), { count: 0, rows: [], roles: {}, problem: "" });
    assert.equal(readRows({ rows: [null, 5], rowsCount: -3 }, ["title"]).count, 0);
});

test("a list that could not be had says why", () => {
    assert.equal(readRows({ rows: [], rowsCount: 0, problem: "It is down." }, []).problem, "It is down.");
    assert.equal(readRows({ rows: [], rowsCount: 0, problem: 5 }, []).problem, "");
});

test("a value is known by its type", () => {
    assert.deepEqual(readValue({ type: 1, bool_: false }), { type: "bool", value: false });
    assert.deepEqual(readValue({ type: 2, int_: 0 }), { type: "number", value: 0 });
    assert.deepEqual(readValue({ type: 4, string_: "" }), { type: "string", value: "" });
    assert.deepEqual(readValue({ type: 115, tuneInAccount: {} }), { type: "other" });
    assert.equal(readValue("x"), null);
});

test("a row without any role is empty, and one with a role that shows is not", () => {
    assert.ok(readRow({ title: null, type: null, path: null, preferred: false }).isEmpty);
    assert.ok(!readRow({ title: "A" }).isEmpty);
    assert.ok(!readRow({ type: RowType.header }).isEmpty);
    assert.ok(!readRow({ path: "A:b" }).isEmpty);
});

test("a value is pinned when its row says so, or the value itself", () => {
    assert.ok(readRow({ pinned: true }).pinned);
    assert.ok(readRow({ value: { type: 1, bool_: true, pinned: true } }).pinned);
    assert.ok(!readRow({ pinned: "yes", value: { type: 1, bool_: true } }).pinned);
});
