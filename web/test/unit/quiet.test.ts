// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

const { driftAt, driftLimit, keepScreenOn } = await import("../../src/model/quiet");
const { shownOf, silenceFile } = await import("../../src/model/lockScreen");
const { PlayState, silence } = await import("../../src/model/player");

test("the quiet view moves each minute, within its limit, and comes everywhere", () => {
    const hour = Array.from({ length: 60 }, (_, minute) => driftAt(minute));
    for (const [minute, { x, y }] of hour.entries()) {
        assert.ok(Math.abs(x) <= driftLimit && Math.abs(y) <= driftLimit, `minute ${minute}`);
        const next = driftAt(minute + 1);
        assert.ok(Math.hypot(next.x - x, next.y - y) > driftLimit / 10, `minute ${minute} to the next`);
    }
    for (const side of ["x", "y"] as const) {
        const all = hour.map((each) => each[side]);
        assert.ok(Math.max(...all) > 0.9 * driftLimit && Math.min(...all) < -0.9 * driftLimit);
    }
    const places = new Set(hour.map(({ x, y }) => `${x.toFixed(2)} ${y.toFixed(2)}`));
    assert.ok(places.size >= 30, `${places.size} places`);
});

class Lock {
    released = false;
    release() {
        this.released = true;
        return Promise.resolve();
    }
}

/** A document that can be hidden, and a browser that grants locks as long as it is not told otherwise. */
function screen() {
    const heard = new Set<() => void>();
    const state = { locks: [] as Lock[], refuses: false, heard };
    const fakeDocument = {
        visibilityState: "visible",
        addEventListener: (_name: string, listener: () => void) => heard.add(listener),
        removeEventListener: (_name: string, listener: () => void) => heard.delete(listener),
    };
    Object.assign(globalThis, { document: fakeDocument });
    Object.defineProperty(globalThis, "navigator", { configurable: true, value: { wakeLock: { request: async () => {
        if (state.refuses)
            throw new Error("NotAllowedError");
        state.locks.push(new Lock());
        return state.locks[state.locks.length - 1];
    } } } });
    const settle = () => new Promise((done) => setImmediate(done));
    const become = async (visibility: string) => {
        fakeDocument.visibilityState = visibility;
        for (const listener of heard)
            listener();
        await settle();
    };
    return { state, settle, become };
}

test("the screen is kept on while the view is seen, and no longer", async () => {
    const { state, settle, become } = screen();
    const told: boolean[] = [];
    const end = keepScreenOn((isOn) => told.push(isOn));
    await settle();
    assert.equal(state.locks.length, 1);
    // A browser takes the lock of a hidden tab away.
    state.locks[0]!.released = true;
    await become("hidden");
    assert.equal(state.locks.length, 1);
    await become("visible");
    assert.equal(state.locks.length, 2);
    await become("visible");
    assert.equal(state.locks.length, 2);
    end();
    assert.ok(state.locks.every((lock) => lock.released));
    assert.equal(state.heard.size, 0);
    assert.deepEqual(told, [true, true]);
});

test("a browser that refuses is told of, and a view that is gone by then holds nothing", async () => {
    const { state, settle } = screen();
    state.refuses = true;
    const told: boolean[] = [];
    keepScreenOn((isOn) => told.push(isOn))();
    await settle();
    assert.deepEqual(told, [false]);
    state.refuses = false;
    keepScreenOn((isOn) => told.push(isOn))();
    await settle();
    assert.deepEqual(told, [false]);
    assert.deepEqual(state.locks.map((lock) => lock.released), [true]);
    Object.defineProperty(globalThis, "navigator", { configurable: true, value: {} });
    keepScreenOn((isOn) => told.push(isOn))();
    await settle();
    assert.deepEqual(told, [false, false]);
});

test("the silence is a WAVE file of ten seconds", () => {
    const bytes = silenceFile();
    const view = new DataView(bytes.buffer);
    const text = (from: number, to: number) => String.fromCharCode(...bytes.subarray(from, to));
    assert.deepEqual([text(0, 4), text(8, 16), text(36, 40)], ["RIFF", "WAVEfmt ", "data"]);
    assert.equal(view.getUint32(4, true), bytes.length - 8);
    const rate = view.getUint32(28, true);
    assert.equal(view.getUint32(40, true), 10 * rate);
    assert.equal(bytes.length, 44 + 10 * rate);
    assert.ok(bytes.subarray(44).every((sample) => sample === 0x80));
});

test("the lock screen shows what is on the air, while it is wanted", () => {
    const now = { ...silence, state: PlayState.playing, title: "Station", description: "Of the town", streamTitle: "A song", icon: "http://x/i.png" };
    assert.deepEqual(shownOf(now, true), { isPlaying: true, title: "A song", artist: "Station", icon: "http://x/i.png" });
    assert.deepEqual(shownOf({ ...now, streamTitle: "", state: PlayState.paused }, true),
        { isPlaying: false, title: "Station", artist: "Of the town", icon: "http://x/i.png" });
    assert.equal(shownOf({ ...now, state: PlayState.transitioning }, true)?.isPlaying, true);
    assert.equal(shownOf({ ...now, state: PlayState.stopped }, true), null);
    assert.equal(shownOf(now, false), null);
});
