// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

import { readRow, type RowsAnswer } from "../../src/model/rows";
import { RpcError } from "../../src/rpc/Connection";
import { Clock } from "./clock";

const { drawTime, healTimes, maxInterruptions, maxPages, pageSize, Screen } = await import("../../src/model/Screen");

/** Answers when it is told to. */
class Reader {
    count = 1000;
    generation = "a";
    readonly asked: { first: number; anew: boolean; answer(): void; fail(error: RpcError): void }[] = [];

    aborted = 0;

    read = (_path: string, first: number, last: number, anew: boolean, signal: AbortSignal): Promise<RowsAnswer> =>
        new Promise((resolve, reject) => {
            signal.addEventListener("abort", () => ++this.aborted);
            const rows = [];
            for (let i = first; i <= Math.min(last, this.count - 1); ++i)
                rows.push(readRow({ title: `${this.generation}${i}` }));
            const answer = { count: this.count, rows, roles: { title: this.generation }, problem: "" };
            this.asked.push({ first, anew, answer: () => resolve(answer), fail: reject });
        });

    /** Answers everything, also what is asked on the way. */
    async settle(): Promise<void> {
        while (this.asked.length > 0) {
            this.asked.shift()!.answer();
            await turn();
        }
    }
}

const turn = () => new Promise((later) => setImmediate(later));

test("rows come by range, those in sight first", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.reload();
    await reader.settle();
    assert.equal(screen.count.value, 1000);
    assert.equal(screen.title, "a");
    assert.equal(screen.row(0)!.title, "a0");
    assert.equal(screen.row(500), undefined);
    screen.show(500, 520);
    assert.deepEqual(reader.asked.map(({ first }) => first), [500]);
    await reader.settle();
    assert.equal(screen.row(510)!.title, "a510");
});

test("what was passed by is not asked for", async () => {
    const reader = new Reader();
    reader.count = 100 * pageSize;
    const screen = new Screen("A:b", reader.read);
    screen.reload();
    await reader.settle();
    const firsts: number[] = [];
    for (let page = 1; page < 90; ++page) {
        screen.show(page * pageSize, page * pageSize + 10);
        firsts.push(...reader.asked.map(({ first }) => first));
    }
    // Two are under way; the next is the last place, not the ones between.
    assert.equal(new Set(firsts).size, 2);
    reader.asked.shift()!.answer();
    await turn();
    assert.equal(reader.asked[1]!.first, 89 * pageSize);
});

test("a bounded number of rows is kept", async () => {
    const reader = new Reader();
    reader.count = 1000 * pageSize;
    const screen = new Screen("A:b", reader.read);
    for (let page = 0; page < 3 * maxPages; ++page) {
        screen.show(page * pageSize, page * pageSize + 10);
        await reader.settle();
    }
    assert.equal(screen.keptPages, maxPages);
    assert.notEqual(screen.row((3 * maxPages - 1) * pageSize), undefined);
    assert.equal(screen.row(0), undefined);
});

test("after a change the old rows stand until the new ones are there", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.reload();
    await reader.settle();
    reader.generation = "b";
    reader.count = 3;
    screen.reload();
    assert.equal(screen.row(0)!.title, "a0");
    await reader.settle();
    assert.equal(screen.row(0)!.title, "b0");
    assert.equal(screen.count.value, 3);
    assert.equal(screen.row(5), undefined);
});

test("an answer from before a change does not win over one from after it", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.reload();
    reader.generation = "b";
    reader.count = 2;
    screen.reload();
    await reader.settle();
    assert.equal(screen.row(0)!.title, "b0");
    assert.equal(screen.count.value, 2);
});

test("an error is shown until the next try", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.reload();
    reader.asked.shift()!.fail(new RpcError(-32000, "broken"));
    await turn();
    assert.equal(screen.error.value!.message, "broken");
    assert.equal(reader.asked.length, 0);
    screen.retry();
    assert.equal(screen.error.value, null);
    await reader.settle();
    assert.equal(screen.count.value, 1000);
});

test("a lost connection is no error of the screen", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.reload();
    reader.asked.shift()!.fail(new RpcError(RpcError.lost, ""));
    await turn();
    assert.equal(screen.error.value, null);
    assert.equal(screen.count.value, null);
    assert.equal(reader.asked.length, 0);
});

test("a service that came back is asked again, but not for ever for what it does not survive", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    const interrupt = async () => {
        reader.asked.shift()!.fail(new RpcError(-32000, "interrupted", RpcError.interrupted));
        await turn();
    };
    const settle = () => new Promise((later) => setTimeout(later, 60));
    screen.reload();
    for (let i = 1; i < maxInterruptions; ++i) {
        await interrupt();
        screen.changed();
        await settle();
        assert.equal(reader.asked.length, 1);
    }
    await interrupt();
    screen.changed();
    await settle();
    assert.equal(reader.asked.length, 0);
    assert.equal(screen.error.value!.message, "interrupted");
    screen.retry();
    await reader.settle();
    assert.equal(screen.error.value, null);
    screen.changed();
    await settle();
    assert.equal(reader.asked.length, 1);
});

test("what is read again comes from the service, the ranges after it with it", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.reload();
    assert.equal(reader.asked[0]!.anew, true);
    await reader.settle();
    screen.show(150, 350);
    assert.deepEqual(reader.asked.map(({ first, anew }) => [first, anew]), [[100, false], [200, false]]);
    await reader.settle();
    screen.reload();
    assert.deepEqual(reader.asked.map(({ first, anew }) => [first, anew]), [[100, true], [200, false]]);
    await reader.settle();
});

test("nobody has to wait for an answer that takes long", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.reload();
    screen.cancel();
    assert.equal(screen.isCancelled.value, true);
    reader.asked.shift()!.answer();
    await turn();
    assert.equal(screen.count.value, null);
    assert.equal(reader.asked.length, 0);
    screen.retry();
    assert.equal(screen.isCancelled.value, false);
    await reader.settle();
    assert.equal(screen.count.value, 1000);
});

test("an error heals by itself while the screen is shown, later each time", async (context) => {
    const clock = new Clock(context);
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    const fail = async (code: number) => {
        reader.asked.shift()!.fail(new RpcError(code, "broken"));
        await turn();
    };
    screen.enter();
    await fail(-32000);
    for (const wait of [...healTimes, healTimes[healTimes.length - 1]!]) {
        clock.tick(wait - 1);
        assert.equal(reader.asked.length, 0);
        clock.tick(1);
        assert.equal(reader.asked.length, 1);
        assert.equal(screen.error.value!.message, "broken");
        await fail(-32000);
    }
    clock.tick(30_000);
    reader.asked.shift()!.answer();
    await turn();
    assert.equal(screen.error.value, null);
    // What cannot work is not tried again, and what is not shown neither.
    for (const code of [RpcError.noNode, RpcError.notOffered]) {
        screen.reload();
        await fail(code);
        clock.tick(100_000);
        assert.equal(reader.asked.length, 0);
    }
    screen.reload();
    await fail(-32000);
    screen.leave();
    clock.tick(100_000);
    assert.equal(reader.asked.length, 0);
});

test("patience ends after three seconds, and begins anew with the next answer", async (context) => {
    const clock = new Clock(context);
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.enter();
    clock.tick(2999);
    assert.equal(screen.isSlow.value, false);
    clock.tick(1);
    assert.equal(screen.isSlow.value, true);
    reader.asked.shift()!.answer();
    await turn();
    assert.equal(screen.isSlow.value, false);
    // Rows that stand are read again without a word.
    screen.reload();
    clock.tick(10_000);
    assert.equal(screen.isSlow.value, false);
    screen.leave();
});

test("a screen that is left takes its questions back and asks anew when it is entered again", async () => {
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.enter();
    assert.equal(reader.asked.length, 1);
    screen.leave();
    assert.equal(reader.aborted, 1);
    reader.asked.shift()!.answer();
    await turn();
    assert.equal(screen.count.value, null);
    screen.enter();
    await reader.settle();
    assert.equal(screen.count.value, 1000);
    screen.leave();
});

test("a screen is read once while its view is being drawn, and given up if there is none", (context) => {
    const clock = new Clock(context);
    const reader = new Reader();
    const screen = new Screen("A:b", reader.read);
    screen.expect();
    assert.equal(reader.asked.length, 1);
    screen.enter();
    assert.equal(reader.asked.length, 1);
    clock.tick(drawTime);
    assert.equal(reader.aborted, 0);
    screen.leave();
    assert.equal(reader.aborted, 1);

    screen.expect();
    assert.equal(reader.asked.length, 2);
    clock.tick(drawTime);
    assert.equal(reader.aborted, 2);
});
