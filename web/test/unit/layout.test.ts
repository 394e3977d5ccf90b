// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import assert from "node:assert/strict";
import { test } from "node:test";

import { Layout, type Shape } from "../../src/model/layout";

const shapes = (told: Record<number, Shape>) =>
    new Map(Object.entries(told).map(([index, shape]) => [Number(index), shape]));
/** The list as it looks: a line of row numbers each. */
function drawn(layout: Layout): string[] {
    const lines: string[] = Array.from({ length: layout.lines }, () => "");
    for (let index = 0; index < layout.count; ++index) {
        if (!layout.isHidden(index))
            lines[layout.place(index).line] += `${index}.`;
    }
    return lines;
}

test("one column is a row in each line", () => {
    assert.deepEqual(drawn(new Layout(3, 1)), ["0.", "1.", "2."]);
    assert.equal(new Layout(0, 1).lines, 0);
});

test("two columns are read line by line", () => {
    assert.deepEqual(drawn(new Layout(5, 2)), ["0.1.", "2.3.", "4."]);
});

test("a heading has a line of its own", () => {
    assert.deepEqual(drawn(new Layout(6, 2, shapes({ 0: "line", 2: "line" }))), ["0.", "1.", "2.", "3.4.", "5."]);
    assert.deepEqual(drawn(new Layout(4, 2, shapes({ 2: "line", 3: "line" }))), ["0.1.", "2.", "3."]);
});

test("what is not shown takes no place", () => {
    const one = new Layout(5, 1, shapes({ 0: "none", 3: "none" }));
    assert.deepEqual(drawn(one), ["1.", "2.", "4."]);
    assert.equal(one.shown, 3);
    assert.equal(one.position(4), 2);
    assert.deepEqual(drawn(new Layout(6, 2, shapes({ 1: "none", 2: "none", 4: "line" }))), ["0.3.", "4.", "5."]);
    assert.deepEqual(drawn(new Layout(2, 2, shapes({ 0: "none", 1: "none" }))), []);
});

test("a line leads to its first row", () => {
    for (const columns of [1, 2, 3]) {
        const layout = new Layout(40, columns, shapes({ 0: "none", 3: "line", 4: "none", 5: "none", 17: "line", 39: "none" }));
        const firsts = drawn(layout).map((line) => parseInt(line, 10));
        assert.deepEqual(firsts.map((_, line) => layout.firstIn(line)), firsts, `${columns} columns`);
        assert.equal(layout.firstIn(layout.lines), 40);
    }
    assert.equal(new Layout(2_000_000_000, 2).firstIn(500_000_000), 1_000_000_000);
});

test("arrows move in the column, over what is not shown", () => {
    //  0.1. / 2. / 3.4. / 6.
    const layout = new Layout(7, 2, shapes({ 2: "line", 5: "none" }));
    assert.deepEqual(drawn(layout), ["0.1.", "2.", "3.4.", "6."]);
    assert.equal(layout.moved(1, 1), 2);
    assert.equal(layout.moved(1, 2), 4);
    assert.equal(layout.moved(4, 1), 6);
    assert.equal(layout.moved(6, -1), 3);
    assert.equal(layout.moved(6, 100), 6);
    assert.equal(layout.moved(6, -100), 0);
    assert.equal(layout.stepped(4, 1), 6);
    assert.equal(layout.stepped(6, 1), 6);
    assert.equal(layout.stepped(0, -1), 0);
});
