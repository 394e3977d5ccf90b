// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { connect, hold, turn } from "./radio";

import assert from "node:assert/strict";
import { beforeEach, test } from "node:test";

import { Clock } from "./clock";

const { nextPlayer, player, PlayState, silence } = await import("../../src/model/player");
const { changeVolume, setVolume, toggleMute, volume } = await import("../../src/model/volume");
const {
    chosen, clockText, goLive, hasSeekBar, isBehind, positionAt, seekBy, seekTo, startGoesOn, untilNextSecond,
} = await import("../../src/model/position");
const {
    clearPreset, hasLibrary, keepPlaying, neighbour, presets, pressPreset, readPresets, savePreset, stepPreset,
} = await import("../../src/model/presets");
const { digitTime, NumberKeys } = await import("../../src/model/NumberKeys");
const { minutesLeft, readSleep, sleep, startSleep, stopSleep } = await import("../../src/model/sleep");
const {
    alarms, dismissMissed, enableAlarm, nextAlarm, readAlarms, removeAlarm, ringing, setAlarm, snoozeAlarm, stopAlarm, wallTime, wantedParams,
} = await import("../../src/model/alarms");
const { listOutputs, chooseOutput, readOutputs, watchOutputs } = await import("../../src/model/outputs");
const { hasStar, setStar } = await import("../../src/model/stars");
const { exportLibrary, importLibrary, partSize, partsOf, readLibrary } = await import("../../src/model/library");
const { notice } = await import("../../src/model/notices");
const { Latest } = await import("../../src/model/Latest");
const { placeOf } = await import("../../src/model/lockScreen");

const told = (more = {}) => ({ state: PlayState.playing, playId: { id: "1" }, title: "T", path: "X:a?id=1", volume: 40, mute: false, ...more });

beforeEach(() => {
    player.value = nextPlayer(silence, told());
    notice.value = null;
});

test("a player without the new members has none of what they offer", () => {
    const old = nextPlayer(silence, { state: PlayState.playing });
    assert.deepEqual([old.volume, old.position, old.duration, old.isSeekable, old.behind, old.output], [null, null, null, false, 0, ""]);
    assert.equal(hasSeekBar(old) || isBehind(old), false);
    player.value = old;
    assert.equal(volume.value, null);
});

test("what is not a number is no volume and no position", () => {
    for (const nonsense of ["40", NaN, Infinity, {}, null]) {
        const now = nextPlayer(silence, told({ volume: typeof nonsense === "number" ? "x" : nonsense, position: nonsense, duration: nonsense, behind: nonsense }));
        assert.deepEqual([now.volume, now.position, now.duration, now.behind], [null, null, null, 0]);
    }
    assert.equal(nextPlayer(silence, told({ volume: 400 })).volume, 100);
    assert.equal(nextPlayer(silence, told({ position: -4 })).position, 0);
});

test("the volume that is wanted is shown at once, and the last one is always sent", async () => {
    const radio = await connect();
    const release = hold();
    setVolume(50);
    setVolume(60);
    setVolume(70.4);
    assert.equal(volume.value, 70);
    assert.deepEqual(radio.called("player.volume"), [{ volume: 50, mute: false }]);
    release();
    await turn();
    assert.deepEqual(radio.called("player.volume").map((each) => each.volume), [50, 70]);
    assert.equal(radio.state.volume, 70);
    assert.equal(volume.value, 70);
    changeVolume(5);
    changeVolume(100);
    await turn();
    assert.equal(radio.state.volume, 100);
    changeVolume(-200);
    await turn();
    assert.equal(radio.state.volume, 0);
});

test("mute is switched, and ends with a new volume", async () => {
    const radio = await connect();
    await toggleMute();
    assert.deepEqual([player.value.isMuted, radio.state.volume], [true, 40]);
    changeVolume(5);
    await turn();
    assert.deepEqual([player.value.isMuted, volume.value], [false, 45]);
});

test("a host that has no volume is not asked to change it", async () => {
    const radio = await connect();
    player.value = nextPlayer(silence, told({ volume: null }));
    setVolume(50);
    changeVolume(5);
    await toggleMute();
    assert.deepEqual(radio.calls, []);
});

test("the position goes on while something plays, up to the end", () => {
    const now = (state: number, more = {}) => nextPlayer(silence, told({ state, position: 10, duration: 12, seekable: true, ...more }), 1000);
    assert.equal(positionAt(now(PlayState.playing), 2500), 11.5);
    assert.equal(positionAt(now(PlayState.playing), 9000), 12);
    // A clock that was set back.
    assert.equal(positionAt(now(PlayState.playing), 0), 10);
    assert.equal(positionAt(now(PlayState.paused), 9000), 10);
    assert.equal(positionAt(now(PlayState.transitioning), 9000), 10);
    assert.equal(positionAt(now(PlayState.playing, { duration: null }), 9000), 18);
    assert.equal(untilNextSecond(now(PlayState.playing), 1250), 750);
    assert.equal(untilNextSecond(now(PlayState.playing), 9000), null);
    assert.equal(untilNextSecond(now(PlayState.paused), 1000), null);
    for (const [seconds, text] of [[0, "0:00"], [59.9, "0:59"], [61, "1:01"], [3600, "1:00:00"], [4825, "1:20:25"], [-1, "0:00"]] as const)
        assert.equal(clockText(seconds), text);
    assert.ok(hasSeekBar(now(PlayState.playing)));
    assert.ok(!hasSeekBar(now(PlayState.playing, { duration: null })));
    assert.ok(!hasSeekBar(now(PlayState.playing, { seekable: false })));
    assert.ok(!hasSeekBar(now(PlayState.stopped)));
    assert.deepEqual(placeOf(now(PlayState.playing), true, 2000), { duration: 12, position: 11, playbackRate: 1 });
    assert.equal(placeOf(now(PlayState.playing), false, 2000), null);
});

test("steps in quick succession are one seek", async (context) => {
    const radio = await connect();
    Object.assign(radio.state, { position: 100, duration: 1000, seekable: true });
    radio.playing = told({ state: PlayState.paused });
    radio.change({});
    const clock = new Clock(context);
    seekBy(30);
    seekBy(30);
    assert.equal(chosen.value, 160);
    assert.deepEqual(radio.called("player.seek"), []);
    clock.tick(1000);
    await turn();
    assert.deepEqual(radio.called("player.seek"), [{ position: 160 }]);
    assert.deepEqual([chosen.value, player.value.position], [null, 160]);
    seekTo(5000);
    await turn();
    seekTo(-5);
    await turn();
    assert.deepEqual(radio.called("player.seek").slice(1), [{ position: 1000 }, { position: 0 }]);
});

test("an episode that goes on where it was left offers its beginning, once", async () => {
    const radio = await connect();
    const become = (state: number, more = {}) => {
        radio.playing = told({ state, playId: { id: "9" } });
        radio.change({ position: 600, duration: 1000, seekable: true, ...more });
    };
    startGoesOn();
    // What plays already when the page comes goes on from nothing.
    become(PlayState.playing);
    assert.equal(notice.value, null);
    radio.playing = told({ state: PlayState.transitioning });
    radio.change({ position: null });
    become(PlayState.transitioning, { position: null });
    become(PlayState.playing);
    assert.match(notice.value!.text, /10:00/);
    notice.value!.action!.run();
    await turn();
    assert.deepEqual(radio.called("player.seek"), [{ position: 0 }]);
    // The stream broke.
    notice.value = null;
    become(PlayState.transitioning);
    become(PlayState.playing);
    assert.equal(notice.value, null);
    radio.playing = told({ state: PlayState.transitioning, playId: { id: "10" } });
    radio.change({ position: null });
    radio.playing = told({ state: PlayState.playing, playId: { id: "10" } });
    radio.change({ position: 3, duration: 1000 });
    assert.equal(notice.value, null);
});

test("what cannot be done is told in the host's words", async () => {
    const radio = await connect();
    seekBy(30);
    assert.deepEqual(radio.calls, []);
    player.value = nextPlayer(silence, told({ seekable: true }));
    seekBy(30);
    await turn();
    assert.deepEqual(radio.called("player.seek"), [{ offset: 30 }]);
    assert.equal(notice.value?.text, "This is live: there is nothing to go forward to.");
});

test("from the buffer there is a way back to live", async () => {
    const radio = await connect();
    radio.playing = told();
    radio.change({ behind: 95 });
    assert.ok(isBehind(player.value));
    await goLive();
    assert.ok(!isBehind(player.value));
    assert.ok(!isBehind(nextPlayer(silence, told({ behind: 1 }))));
});

test("a host without presets, timer and alarms has none", async () => {
    await connect(null);
    assert.deepEqual([presets.value, sleep.value, alarms.value, hasLibrary.value, hasStar("X:a")], [null, null, null, false, null]);
    const radio = await connect();
    assert.equal(presets.value?.size, 0);
    radio.playing = told();
    pressPreset(3);
    await keepPlaying(3);
    assert.deepEqual([...radio.presets.keys()], [3]);
});

test("presets are read by number, and nonsense is left out", () => {
    const read = readPresets({ presets: [
        { number: 12, title: "L", path: "X:l" }, { number: 1, title: "A", path: "X:a" }, { number: 13 }, { number: 0 }, { number: "2" }, { number: 1.5 }, null, 5,
    ] });
    assert.deepEqual([...read.keys()], [1, 12]);
    assert.equal(readPresets(null).size, 0);
});

test("a number saves what plays, and asks before it replaces something", async () => {
    const radio = await connect();
    await connect(radio);
    radio.playing = told();
    await keepPlaying(3);
    await turn();
    assert.equal(presets.value?.get(3)?.title, "T");
    assert.ok(notice.value?.undo);
    // The same again replaces nothing.
    await keepPlaying(3);
    assert.equal(radio.called("presets.save").length, 1);
    player.value = nextPlayer(silence, told({ title: "Other", path: "X:a?id=2" }));
    radio.playing = told({ title: "Other", path: "X:a?id=2" });
    await keepPlaying(3);
    assert.equal(radio.called("presets.save").length, 1);
    notice.value!.action!.run();
    await turn();
    assert.equal(presets.value?.get(3)?.title, "Other");
    await clearPreset(3);
    await turn();
    assert.equal(presets.value?.size, 0);
    // A row of a list, with what the host finds it by.
    assert.ok(await savePreset(4, { screen: "X:list", row: 2, path: "X:r", title: "R" }));
    assert.deepEqual(radio.called("presets.save").at(-1), { number: 4, screen: "X:list", row: 2, path: "X:r" });
    player.value = silence;
    await keepPlaying(5);
    assert.equal(radio.called("presets.save").length, 3);
});

test("next and previous go round the presets that are taken", async () => {
    const all = readPresets({ presets: [{ number: 2, title: "B", path: "X:b" }, { number: 5, title: "E", path: "X:e" }, { number: 9, title: "I", path: "X:i" }] });
    const playing = (path: string) => nextPlayer(silence, told({ path, title: "" }));
    const at = (path: string, step: 1 | -1) => neighbour(all, playing(path), step)?.number;
    assert.deepEqual([at("X:b", 1), at("X:e", 1), at("X:i", 1), at("X:b", -1)], [5, 9, 2, 9]);
    assert.deepEqual([at("X:other", 1), at("X:other", -1)], [2, 9]);
    assert.equal(neighbour(new Map(), playing("X:b"), 1), null);
    const radio = await connect();
    radio.presets.set(2, { number: 2, title: "B", path: "X:b" });
    radio.changed("presets");
    await turn();
    stepPreset(1);
    assert.deepEqual(radio.called("presets.play"), [{ number: 2 }]);
});

test("digits make numbers from 1 to 12", (context) => {
    const clock = new Clock(context);
    const pressed: [number, boolean][] = [];
    let mayWait = true;
    const keys = new NumberKeys(() => mayWait, (number, shift) => pressed.push([number, shift]));
    const take = () => pressed.splice(0).map(([number, shift]) => (shift ? `+${number}` : String(number)));
    const type = (digits: string, shift = false) => [...digits].forEach((digit) => keys.press(Number(digit), shift));
    type("3");
    assert.deepEqual(take(), ["3"]);
    type("0");
    assert.deepEqual(take(), ["10"]);
    type("12");
    type("11");
    type("10", true);
    assert.deepEqual(take(), ["12", "11", "+10"]);
    type("1");
    assert.deepEqual(take(), []);
    clock.tick(digitTime);
    assert.deepEqual(take(), ["1"]);
    type("15");
    assert.deepEqual(take(), ["1", "5"]);
    keys.press(1, false);
    keys.press(2, true);
    assert.deepEqual(take(), ["1", "+2"]);
    mayWait = false;
    type("12");
    assert.deepEqual(take(), ["1", "2"]);
    clock.tick(digitTime);
    assert.deepEqual(take(), []);
});

test("the sleep timer ends by this device's clock", async () => {
    assert.deepEqual(readSleep({ ends: "2026-11-22T23:00:00+01:00", left: 90 }, 1000), { until: 91_000 });
    for (const none of [{ ends: null, left: 0 }, { ends: "x", left: 0 }, {}, null, { ends: 5, left: "9" }])
        assert.equal(readSleep(none).until, null);
    assert.deepEqual([60_000, 60_001, 1, 0, -5].map((left) => minutesLeft(left, 0)), [1, 2, 1, 0, 0]);
    const radio = await connect();
    assert.equal(sleep.value?.until, null);
    await startSleep(30);
    await turn();
    assert.equal(minutesLeft(sleep.value!.until!), 30);
    await stopSleep();
    await turn();
    assert.equal(sleep.value?.until, null);
    assert.deepEqual(radio.called("sleep.start"), [{ minutes: 30 }]);
});

test("alarms are read as the host's clock shows them", () => {
    const { all: [alarm], missed, ringing: id } = readAlarms({
        alarms: [{ id: "a", time: "07:30", days: [5, 1, 1, 8, "2"], enabled: true, volume: 30, fade: 20, title: "T", icon: "", path: "X:a", next: "2026-11-23T07:30:00+05:45" }, { id: "" }, 7],
        missed: [{ id: "a", at: "2026-11-22T07:30:00Z" }], ringing: "a",
    });
    assert.deepEqual(alarm!.days, [1, 5]);
    assert.deepEqual([alarm!.next!.getDate(), alarm!.next!.getHours(), alarm!.next!.getMinutes()], [23, 7, 30]);
    assert.equal(missed[0]!.at!.getHours(), 7);
    assert.equal(id, "a");
    assert.equal(wallTime("soon"), null);
    assert.deepEqual(readAlarms(null), { all: [], missed: [], ringing: "" });
    assert.equal(readAlarms({ alarms: [{ id: "b", time: "25:00" }] }).all[0]!.time, "00:00");
});

test("an alarm is set, switched, rings, is stopped and removed", async () => {
    const radio = await connect();
    radio.playing = told();
    const wanted = { id: "", time: "07:30", days: [1], isEnabled: true, volume: null, fade: 30, source: { is: "kept" } } as const;
    await setAlarm(wanted);
    await turn();
    const [alarm] = alarms.value!.all;
    assert.equal(alarm!.title, "T");
    assert.equal(nextAlarm.value?.id, alarm!.id);
    await enableAlarm(alarm!, false);
    await turn();
    assert.deepEqual([alarms.value!.all[0]!.isEnabled, alarms.value!.all[0]!.title, nextAlarm.value], [false, "T", null]);
    radio.ringing = alarm!.id;
    radio.missed = [{ id: alarm!.id, at: "2026-11-22T07:30:00Z" }];
    radio.changed("alarms");
    await turn();
    assert.equal(ringing.value?.time, "07:30");
    await snoozeAlarm();
    await turn();
    assert.equal(ringing.value, null);
    assert.deepEqual(radio.called("alarms.snooze"), [{ minutes: 9 }]);
    radio.ringing = "gone";
    radio.changed("alarms");
    await turn();
    assert.deepEqual(ringing.value, { id: "gone", time: "", title: "" });
    await stopAlarm();
    await dismissMissed();
    await turn();
    assert.deepEqual([ringing.value, alarms.value!.missed], [null, []]);
    await removeAlarm(alarm!);
    await turn();
    assert.deepEqual(alarms.value!.all, []);
    const item = { screen: "X:l", row: 1, path: "X:r", title: "R" };
    assert.deepEqual(wantedParams({ ...wanted, id: "a", source: { is: "row", item } }),
        { id: "a", time: "07:30", days: [1], enabled: true, volume: null, fade: 30, screen: "X:l", row: 1, path: "X:r" });
    assert.equal(wantedParams({ ...wanted, source: { is: "preset", number: 4 } }).preset, 4);
});

test("outputs are read and chosen, and one that is not there is not", async () => {
    const radio = await connect();
    radio.outputs = [{ output: "auto", name: "", current: true, available: true }, { output: "alsa:usb", name: "USB", current: false, available: false }, { name: "x" }];
    const found = await listOutputs();
    assert.deepEqual(found.map(({ name, isAvailable }) => [name, isAvailable]), [["auto", true], ["USB", false]]);
    await assert.rejects(chooseOutput("alsa:usb"), /not there/);
    let changes = 0;
    const stop = watchOutputs(() => ++changes);
    radio.changed("outputs");
    stop();
    radio.changed("outputs");
    assert.equal(changes, 1);
    assert.deepEqual(readOutputs({ outputs: "x" }), []);
});

test("a star is given and taken, whoever does it", async () => {
    const radio = await connect();
    assert.equal(hasStar("X:a?id=1"), null);
    await turn();
    assert.equal(hasStar("X:a?id=1"), false);
    radio.playing = told();
    await setStar("X:a?id=1", "T", null, true);
    assert.equal(hasStar("X:a?id=1"), true);
    assert.deepEqual(radio.called("favorites.add"), [{}]);
    await setStar("X:r", "R", { screen: "X:l", row: 3, path: "X:r", title: "R" }, true);
    assert.deepEqual(radio.called("favorites.add")[1], { screen: "X:l", row: 3, path: "X:r" });
    radio.stars.clear();
    radio.changed("", {});
    radio.tell({ method: "changed", params: { path: "host:favorites", kind: "rowsReset" } });
    await turn();
    assert.equal(hasStar("X:a?id=1"), false);
    await setStar("X:a?id=1", "T", null, false);
    assert.deepEqual(radio.called("favorites.remove"), [{ path: "X:a?id=1" }]);
});

test("a library comes as a file and goes back in requests that are small enough", async () => {
    const radio = await connect();
    radio.stars.add("X:a");
    const library = await exportLibrary();
    assert.deepEqual(readLibrary(JSON.stringify(library)), library);
    assert.deepEqual(readLibrary(JSON.stringify({ library })), library);
    for (const none of ["", "[]", "{}", "null", '{"favorites": [], "presets": 5}', "{"])
        assert.equal(readLibrary(none), null, none);
    const favorites = Array.from({ length: 300 }, (_, index) => ({ path: `X:${index}`, title: "é".repeat(200) }));
    const large = { version: 1, favorites, presets: [{ number: 1, path: "X:1" }] };
    const parts = partsOf(large);
    assert.ok(parts.length > 2);
    for (const part of parts) {
        assert.equal(part.version, 1);
        assert.ok(new TextEncoder().encode(JSON.stringify(part)).length < partSize + 200);
    }
    assert.deepEqual(parts.flatMap((part) => part.favorites), favorites);
    assert.deepEqual(parts.flatMap((part) => part.presets), large.presets);
    assert.deepEqual(await importLibrary(large), { favorites: 300, presets: 1 });
    assert.equal(partsOf({ favorites: [], presets: [] }).length, 1);
});

test("values that come while one is sent wait for the time that they were given", async (context) => {
    const clock = new Clock(context);
    const sent: number[] = [];
    const answers: (() => void)[] = [];
    const latest = new Latest<number>((value) => {
        sent.push(value);
        return new Promise<void>((done) => answers.push(done));
    });
    latest.set(1);
    latest.set(2, 100);
    answers.shift()!();
    await turn();
    assert.deepEqual([sent, latest.wanted.value], [[1], 2]);
    clock.tick(100);
    latest.set(3);
    answers.shift()!();
    await turn();
    answers.shift()!();
    await turn();
    assert.deepEqual([sent, latest.wanted.value], [[1, 2, 3], null]);
});
