// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import "./browser";

import assert from "node:assert/strict";
import { test } from "node:test";

import { readRow } from "../../src/model/rows";

const { isPlayed, nextPlayer, PlayState, silence } = await import("../../src/model/player");

const told = (state: number, more = {}) => ({ state, playId: { id: "1" }, title: "T", ...more });

test("waiting before the first sound is connecting, after it reconnecting", () => {
    const connecting = nextPlayer(silence, told(PlayState.transitioning));
    assert.equal(connecting.isReconnecting, false);
    const playing = nextPlayer(connecting, told(PlayState.playing));
    const broken = nextPlayer(playing, told(PlayState.transitioning));
    assert.equal(broken.isReconnecting, true);
    // Whatever else changes meanwhile.
    assert.equal(nextPlayer(broken, told(PlayState.transitioning, { bitrate: 1 })).isReconnecting, true);
    const other = nextPlayer(playing, told(PlayState.transitioning, { playId: { id: "2" } }));
    assert.equal(other.isReconnecting, false);
    const paused = nextPlayer(playing, told(PlayState.paused));
    assert.equal(nextPlayer(paused, told(PlayState.transitioning)).isReconnecting, false);
});

test("what is no state is silence", () => {
    for (const nonsense of [null, [], "x", { state: "2", title: 5, playId: 1 }])
        assert.deepEqual(nextPlayer(silence, nonsense), silence);
});

test("a row is known as what plays by its path, or by the one that what plays names", () => {
    const row = (path: string, title = "A") => readRow({ path, title });
    const playing = (path: string, title = "A") => ({ ...silence, path, title });
    assert.ok(isPlayed(playing("X:a?id=1"), row("X:a?id=1")));
    assert.ok(isPlayed(playing("X:s?veskMatchingPath=X%3Aa%3Fid%3D1"), row("X:a?id=1")));
    assert.ok(!isPlayed(playing("X:a?id=1"), row("X:a?id=2")));
    assert.ok(!isPlayed(playing("X:s?veskMatchingPath=X%3Aa%3Fid%3D1", "B"), row("X:a?id=2", "B")));
    // Rows without a path of their own are told apart by their titles.
    assert.ok(isPlayed(playing("X:a?id="), row("X:a?id=")));
    assert.ok(!isPlayed(playing("X:a?id=", "B"), row("X:a?id=")));
    assert.ok(!isPlayed(playing("", ""), row("", "")));
});
