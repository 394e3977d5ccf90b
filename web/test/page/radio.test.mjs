// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// What a radio does, on the page: volume, places, outputs, stars, presets, sleep timer and alarms. What is played is the host's;
// the methods of these parts are answered by radio.mjs, so that outputs go and alarms ring when a test wants it. That the host
// and the page agree about them is shown by kept.test.mjs.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { after, before, test } from "node:test";

import axe from "axe-core";

import { Radio } from "../radio.mjs";
import { between, checkTargets, expectEventually, launch, newPage, onlyProblemsOf, pressQuickly, Product, withRadio } from "./support.mjs";

const local = "TuneIn:browse/uri/Browse.ashx?c=local";
const phone = { viewport: { width: 375, height: 667 }, isMobile: true, hasTouch: true };
const narrow = { viewport: { width: 320, height: 568 }, isMobile: true, hasTouch: true };
const tablet = { viewport: { width: 1024, height: 768 }, hasTouch: true, colorScheme: "dark" };

let product;
let browser;

before(async () => {
    product = await Product.start();
    browser = await launch();
});
after(async () => {
    await browser?.close();
    await product?.end();
});

const player = (page) => page.getByRole("region", { name: "Player" });
const dialog = (page) => page.getByRole("dialog");

/** A page with a radio, on a list of stations. */
async function openPage(options, path = local) {
    const page = await newPage(browser, product, options);
    const radio = new Radio();
    await withRadio(page, radio);
    await page.goto(`${product.url}#${path}`);
    return { page, radio };
}

async function openPlaying(options) {
    const opened = await openPage(options);
    const { page } = opened;
    await page.locator("button.audio").first().click();
    await player(page).getByText("Playing").waitFor();
    return opened;
}

async function close(page) {
    onlyProblemsOf(page);
    await page.context().close();
    await product.call("player.stop");
}

async function openRadio(page) {
    await page.getByRole("link", { name: "This radio" }).click();
    await page.getByRole("heading", { level: 1, name: "This radio" }).waitFor();
}

test("a host that has none of it is shown without", async () => {
    const page = await newPage(browser, product);
    const methods = /^(player\.(volume|mute|seek)|outputs|favorites|library|recents|presets|sleep|alarms)\b/;
    const strip = (state) => ["volume", "mute", "position", "duration", "seekable", "behind", "output", "outputProblem"]
        .forEach((name) => delete state[name]);
    await between(page, {
        call: ({ method }, answer) => {
            if (methods.test(method))
                answer({ error: { code: -32601, message: "There is no such method." } });
            return methods.test(method);
        },
        answered: ({ method }, { result }) => method === "player.state" && result && strip(result),
        told: ({ method, params }) => method === "player.changed" && strip(params),
    });
    await page.goto(`${product.url}#${local}`);
    await page.locator("button.audio").first().click();
    await player(page).getByText("Playing").waitFor();
    assert.equal(await page.getByRole("slider").count(), 0);
    assert.equal(await page.getByRole("button", { name: /Mute|Star/ }).count(), 0);
    assert.equal(await page.getByRole("link", { name: "This radio" }).count(), 0);
    await player(page).locator("button.details").click();
    await dialog(page).getByRole("link", { name: "Choose stream" }).waitFor();
    assert.equal(await dialog(page).getByText("This radio").count(), 0);
    await page.keyboard.press("?");
    await dialog(page).getByText("Quiet view").waitFor();
    assert.equal(await dialog(page).getByText("Louder, quieter").count(), 0);
    await close(page);
});

test("the volume follows slider, keys and wheel, and the host", async () => {
    const { page, radio } = await openPlaying({ viewport: { width: 1440, height: 900 } });
    const slider = player(page).getByRole("slider", { name: "Volume" });
    const mute = player(page).getByRole("button", { name: "Mute" });
    const shows = (value) => expectEventually(async () => (await slider.inputValue()) === String(value) && radio.state.volume === value, `a volume of ${value}`);
    await shows(40);
    assert.equal(await slider.getAttribute("aria-valuetext"), "40 %");
    await slider.press("ArrowRight");
    await shows(45);
    await slider.press("PageDown");
    await shows(25);
    await slider.press("End");
    await shows(100);
    await slider.press("Home");
    await shows(0);
    await page.getByRole("heading", { level: 1 }).focus();
    await page.keyboard.press("+");
    await shows(5);
    await page.keyboard.press("=");
    await page.getByText("Volume: 10 %").waitFor();
    await shows(10);
    await page.keyboard.press("-");
    await shows(5);
    await page.keyboard.press("m");
    await expectEventually(() => radio.state.mute, "silence");
    await expectEventually(async () => (await mute.getAttribute("aria-pressed")) === "true", "it on the page");
    assert.equal(await slider.getAttribute("aria-valuetext"), "5 %, muted");
    await mute.click();
    await expectEventually(() => !radio.state.mute, "no silence");
    // In a field they are letters.
    await page.getByRole("searchbox").fill("");
    await page.getByRole("searchbox").pressSequentially("m+1");
    assert.equal(await page.getByRole("searchbox").inputValue(), "m+1");
    assert.deepEqual([radio.state.mute, radio.state.volume, radio.called("presets.play").length], [false, 5, 0]);
    const box = await slider.boundingBox();
    const middle = box.y + box.height / 2;
    await page.mouse.move(box.x + box.width / 2, middle);
    await page.mouse.wheel(0, -100);
    await shows(10);
    await page.mouse.wheel(0, 100);
    await shows(5);
    assert.equal(await page.evaluate(() => scrollY), 0);
    await page.mouse.move(box.x + 10 + (box.width - 20) * 0.05, middle);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width / 2, middle, { steps: 8 });
    await page.mouse.up();
    // The last of several requests has come.
    await expectEventually(
        async () => Math.abs(radio.state.volume - 50) <= 4 && (await slider.inputValue()) === String(radio.state.volume), "the volume that was dragged to");
    radio.change({ volume: 77 });
    await shows(77);
    await close(page);
});

test("an episode's place is counted on by the page, and chosen by keys, pointer and finger", async () => {
    const { page, radio } = await openPlaying({ viewport: { width: 1440, height: 900 }, hasTouch: true });
    assert.equal(await page.getByRole("slider", { name: "Position" }).count(), 0);
    radio.change({ position: 100, duration: 1000, seekable: true });
    const slider = player(page).getByRole("slider", { name: "Position" });
    const place = async () => Number(await slider.inputValue());
    await slider.waitFor();
    assert.match(await slider.getAttribute("aria-valuetext"), /^[12]:\d\d of 16:40$/);
    const before = await place();
    const calls = radio.calls.length;
    const states = [];
    page.on("websocket", () => states.push("a socket"));
    await expectEventually(async () => (await place()) >= before + 3, "three seconds later");
    assert.equal(radio.calls.length, calls);
    const seeks = () => radio.called("player.seek").map(({ position }) => position);
    // Keys that follow each other quickly are one seek, from where the episode is meanwhile.
    const seekBy = async (step, ...keys) => {
        // The page counts from when it was told, which may have been late.
        const seen = await place();
        const [count, began, from] = [seeks().length, Date.now(), radio.now.position];
        await pressQuickly(page, ...keys);
        await expectEventually(() => seeks().length > count, "a seek");
        const [to, late] = [seeks()[count] - step, (Date.now() - began) / 1000];
        assert.ok(to > seen - 2 && to < from + late + 2, `${seeks()} from ${seen} to ${from}, ${late} s later`);
    };
    await slider.focus();
    await seekBy(50, ...Array(5).fill("ArrowRight"));
    await page.getByRole("heading", { level: 1 }).focus();
    await seekBy(30, "l", "l", "j");
    assert.equal(seeks().length, 2);
    const box = await slider.boundingBox();
    await page.mouse.click(box.x + box.width * 0.75, box.y + box.height / 2);
    await expectEventually(() => Math.abs(seeks().at(-1) - 750) < 15, "a seek to where was clicked");
    await page.touchscreen.tap(box.x + box.width * 0.25, box.y + box.height / 2);
    await expectEventually(() => Math.abs(seeks().at(-1) - 250) < 15, "a seek to where was touched");
    // A pause holds it.
    await player(page).getByRole("button", { name: "Pause", exact: true }).click();
    await player(page).getByText("Paused").waitFor();
    radio.change({ position: 300 });
    await expectEventually(async () => (await place()) === 300, "the place of the pause");
    await new Promise((later) => setTimeout(later, 1500));
    assert.equal(await place(), 300);
    assert.deepEqual(states, []);
    await close(page);
});

test("what is behind live says so, and goes back to live", async () => {
    const { page, radio } = await openPlaying();
    radio.change({ behind: 192, seekable: true });
    await player(page).getByText("3:12 behind live").waitFor();
    assert.equal(await page.getByRole("slider", { name: "Position" }).count(), 0);
    await player(page).getByRole("button", { name: "Back to live" }).click();
    await player(page).getByText("behind live").waitFor({ state: "detached" });
    assert.equal(await player(page).getByRole("button", { name: "Back to live" }).count(), 0);
    assert.deepEqual(radio.called("player.seek"), [{ live: true }]);
    await close(page);
});

test("outputs are chosen, and one that is not there is told", async () => {
    const { page, radio } = await openPlaying();
    radio.outputs.push({ output: "pulse:kitchen", name: "Kitchen", current: false, available: true },
        { output: "alsa:usb", name: "USB", current: false, available: false });
    await player(page).locator("button.details").click();
    await dialog(page).getByRole("button", { name: "Output …" }).click();
    const output = (name) => dialog(page).getByRole("button", { name });
    await output("Kitchen").waitFor();
    assert.equal(await output("System default").getAttribute("aria-current"), "true");
    assert.equal(await output("USB").getAttribute("aria-disabled"), "true");
    await output("USB").getByText("Unavailable").waitFor();
    await output("USB").click({ force: true });
    await output("Kitchen").click();
    await expectEventually(async () => (await output("Kitchen").getAttribute("aria-current")) === "true", "the output that was chosen");
    assert.deepEqual(radio.called("outputs.choose"), [{ output: "pulse:kitchen" }]);
    // One that comes back is offered without being asked for.
    radio.outputs[2].available = true;
    radio.changed("outputs");
    await output("USB").getByText("Unavailable").waitFor({ state: "detached" });
    radio.outputs[2].available = false;
    await output("USB").click();
    await dialog(page).getByText("This output is not there.").waitFor();
    await page.keyboard.press("Escape");
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    radio.change({ outputProblem: "The output “Kitchen” has gone. Playing goes on when it is back." });
    await player(page).getByText("has gone").waitFor();
    // The steps back that both keys made did not leave the page.
    await page.getByRole("heading", { level: 1 }).waitFor();
    await close(page);
});

test("presets are played and saved by the numbers of the keyboard", async () => {
    const { page, radio } = await openPlaying();
    await page.getByRole("heading", { level: 1 }).focus();
    const { title } = radio.playing;
    await page.keyboard.press("3");
    await page.getByText("Preset 3 is empty.").waitFor();
    await page.keyboard.press("Shift+Digit3");
    await page.getByText(`Preset 3 is ${title} now.`).waitFor();
    await page.getByRole("button", { name: "Undo" }).click();
    await expectEventually(() => !radio.presets.has(3), "an undo");
    radio.presets.set(3, { number: 3, title: "Other", icon: "", path: "X:other" });
    radio.presets.set(12, { number: 12, title: "Last", icon: "", path: "X:last" });
    radio.presets.set(1, { number: 1, title: "First", icon: "", path: "X:first" });
    radio.changed("presets");
    await openRadio(page);
    await page.getByRole("button", { name: "Preset 12: Last" }).waitFor();
    await page.keyboard.press("3");
    await expectEventually(() => radio.called("presets.play").length === 1, "the preset");
    await page.keyboard.press("Shift+Digit3");
    await page.getByText(`Preset 3 is Other. Replace it by ${title}?`).waitFor();
    assert.equal(radio.presets.get(3).title, "Other");
    await page.getByRole("button", { name: "Replace it" }).click();
    await page.getByText(`Preset 3 is ${title} now.`).waitFor();
    await pressQuickly(page, "1", "2", "1");
    await expectEventually(() => radio.called("presets.play").length === 3, "two presets more");
    assert.deepEqual(radio.called("presets.play").map(({ number }) => number), [3, 12, 1]);
    await close(page);
});

test("presets are shown as keys that play, save when they are held, and are cleared", async () => {
    const { page, radio } = await openPlaying(phone);
    const { title } = radio.playing;
    radio.presets.set(2, { number: 2, title: "Old", icon: "", path: "X:old" });
    radio.changed("presets");
    await openRadio(page);
    const key = (number) => page.locator(".preset").nth(number - 1).locator("button.body");
    await page.getByRole("button", { name: "Preset 2: Old", exact: true }).waitFor();
    assert.equal(await page.locator(".preset").count(), 12);
    assert.equal(await page.getByRole("button", { name: "Preset 5: Empty", exact: true }).count(), 1);
    await key(2).tap();
    await expectEventually(() => radio.called("presets.play").length === 1, "the preset");
    await key(5).dispatchEvent("pointerdown", { button: 0, pointerType: "touch" });
    await page.getByText(`Preset 5 is ${title} now.`).waitFor();
    await key(5).dispatchEvent("pointerup", { button: 0, pointerType: "touch" });
    await key(5).dispatchEvent("click");
    await expectEventually(async () => (await key(5).getAttribute("aria-current")) === "true", "the preset that plays");
    // The click at the end of the long press played nothing.
    assert.equal(radio.called("presets.play").length, 1);
    await page.getByRole("button", { name: "Clear some" }).click();
    await page.getByRole("button", { name: "Clear preset 2" }).click();
    await expectEventually(() => !radio.presets.has(2), "a preset less");
    // By keyboard the same key saves with Shift.
    await key(7).focus();
    await page.keyboard.press("Shift+Enter");
    await page.getByText(`Preset 7 is ${title} now.`).waitFor();
    await close(page);
});

test("a row's menu keeps it: on a preset, with a star that is none of the service's favorites", async () => {
    const { page, radio } = await openPlaying();
    const row = page.locator("[data-row]").filter({ has: page.locator("button.audio") }).nth(3);
    const title = await row.locator(".title").textContent();
    await row.getByRole("button", { name: `More for ${title}` }).click();
    await dialog(page).getByRole("heading", { name: "This radio" }).waitFor();
    await dialog(page).getByRole("heading", { name: "TuneIn" }).waitFor();
    await dialog(page).getByRole("button", { name: "Add to TuneIn Favorites" }).waitFor();
    const star = dialog(page).getByRole("button", { name: "Star on this radio" });
    await star.click();
    await page.getByText(`${title} has a star on this radio.`).waitFor();
    assert.equal(await star.getAttribute("aria-pressed"), "true");
    const [{ screen, path }] = radio.called("favorites.add");
    assert.deepEqual([screen, radio.stars.has(path)], [local, true]);
    await star.click();
    await page.getByText(`${title} has no star on this radio any more.`).waitFor();
    await dialog(page).getByRole("button", { name: "Save as a preset …" }).click();
    await dialog(page).getByRole("heading", { name: "Which preset?" }).waitFor();
    await dialog(page).getByRole("button", { name: "4 Empty" }).click();
    await page.getByText(`Preset 4 is ${title} now.`).waitFor();
    await dialog(page).waitFor({ state: "hidden" });
    assert.deepEqual(radio.called("presets.save").map((each) => [each.number, each.path]), [[4, path]]);
    // The player has both marks, with names that tell which is which.
    const inPlayer = player(page).getByRole("button", { name: "Star on this radio" });
    await player(page).getByRole("button", { name: "Favorite at TuneIn" }).waitFor();
    await inPlayer.click();
    await expectEventually(async () => (await inPlayer.getAttribute("aria-pressed")) === "true", "a star");
    // Another client takes it away.
    radio.stars.clear();
    page.tell({ method: "changed", params: { path: "host:favorites", kind: "rowsReset", first: -1, last: -1 } });
    await expectEventually(async () => (await inPlayer.getAttribute("aria-pressed")) === "false", "no star");
    await close(page);
});

test("the sleep timer is set, shown and stopped", async () => {
    const { page, radio } = await openPlaying();
    await openRadio(page);
    await page.getByRole("button", { name: "Set the timer" }).click();
    await dialog(page).getByRole("button", { name: "45 min" }).click();
    await dialog(page).getByText("45 minutes left").waitFor();
    await dialog(page).getByRole("spinbutton", { name: "Minutes" }).fill("0");
    await dialog(page).getByRole("button", { name: "Start" }).click();
    await dialog(page).getByRole("spinbutton", { name: "Minutes" }).fill("5");
    await page.keyboard.press("Enter");
    await dialog(page).getByText("5 minutes left", { exact: true }).waitFor();
    assert.deepEqual(radio.called("sleep.start").map(({ minutes }) => minutes), [45, 5]);
    await dialog(page).getByRole("button", { name: "Stop the timer" }).click();
    await dialog(page).getByText("After that time").waitFor();
    await page.keyboard.press("Escape");
    await close(page);
});

test("an alarm is made, changed, switched off and removed", async () => {
    const { page, radio } = await openPlaying();
    const { title } = radio.playing;
    radio.presets.set(2, { number: 2, title: "Morning", icon: "", path: "X:morning" });
    radio.changed("presets");
    await openRadio(page);
    await page.getByText("None is set.").waitFor();
    await page.getByRole("link", { name: "Show the alarms" }).click();
    await page.getByRole("button", { name: "Add an alarm" }).click();
    await page.getByLabel("Time").fill("07:30");
    for (const day of ["Monday", "Tuesday", "Wednesday", "Thursday", "Friday"])
        await page.getByRole("checkbox", { name: day }).uncheck();
    await page.getByText("Without a day it goes off once.").waitFor();
    await page.getByRole("checkbox", { name: "Sunday" }).check();
    await page.getByRole("checkbox", { name: "Saturday" }).check();
    await page.locator("form.fields").getByRole("combobox", { name: "Volume" }).selectOption("30");
    await page.getByRole("button", { name: "Save" }).click();
    const card = page.locator("li.alarm");
    await card.getByText("Saturday and Sunday").waitFor();
    await card.getByText(title).waitFor();
    assert.deepEqual(radio.called("alarms.set"), [{ time: "07:30", days: [6, 7], enabled: true, volume: 30, fade: 30 }]);
    await card.getByText("Next: Monday").waitFor();
    await card.getByRole("switch", { name: "Alarm at 7:30 AM" }).click();
    await card.getByText("Next:").waitFor({ state: "detached" });
    await card.getByRole("button", { name: "Change the alarm at 7:30 AM" }).click();
    await card.getByLabel("What to play").selectOption({ label: "Preset 2: Morning" });
    await card.getByRole("button", { name: "Save" }).click();
    await card.getByText("Morning").waitFor();
    assert.equal(radio.called("alarms.set").at(-1).preset, 2);
    await card.getByRole("button", { name: "Remove the alarm at 7:30 AM" }).click();
    await card.getByRole("button", { name: "Keep it" }).click();
    assert.equal(radio.alarms.length, 1);
    await card.getByRole("button", { name: "Remove the alarm at 7:30 AM" }).click();
    await card.getByRole("button", { name: "Remove", exact: true }).click();
    await card.waitFor({ state: "detached" });
    // From a station's menu.
    await page.goto(`${product.url}#${local}`);
    const row = page.locator("[data-row]").filter({ has: page.locator("button.audio") }).nth(2);
    const station = await row.locator(".title").textContent();
    await row.getByRole("button", { name: /^More for/ }).click();
    await dialog(page).getByRole("button", { name: "Wake me with this …" }).click();
    await page.getByRole("heading", { level: 2, name: "New alarm" }).waitFor();
    assert.equal(await page.getByLabel("What to play").locator("option:checked").textContent(), station);
    await page.getByRole("button", { name: "Save" }).click();
    await expectEventually(() => radio.alarms.length === 1, "the alarm");
    assert.equal(radio.called("alarms.set").at(-1).screen, local);
    // It is gone with the next visit of the list's own screen.
    await page.goBack();
    await page.goForward();
    await page.getByRole("button", { name: "Add an alarm" }).waitFor();
    await close(page);
});

test("an alarm that rings can be stopped and put off from everywhere", async () => {
    const { page, radio } = await openPlaying();
    radio.alarms = [{ id: "a", time: "07:30", days: [], enabled: true, volume: null, fade: 0, title: "Morning", icon: "", path: "X:m", next: null }];
    const ring = () => {
        radio.ringing = "a";
        radio.changed("alarms");
    };
    const snooze = page.getByRole("button", { name: "Snooze for 9 minutes" });
    ring();
    await page.getByRole("alert").getByText("Alarm: 7:30 AM").waitFor();
    await snooze.click();
    await snooze.waitFor({ state: "detached" });
    // A dialog leaves nothing else operable.
    await page.keyboard.press("?");
    await dialog(page).waitFor();
    ring();
    await dialog(page).getByRole("button", { name: "Stop the alarm" }).click();
    await snooze.waitFor({ state: "detached" });
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    // In the quiet view the first key that somebody finds is not to leave it.
    await page.keyboard.press("q");
    await page.locator(".quiet-view").waitFor();
    ring();
    await expectEventually(() => snooze.evaluate((button) => button === document.activeElement), "the focus");
    await page.keyboard.press("Enter");
    await snooze.waitFor({ state: "detached" });
    assert.equal(await page.locator(".quiet-view").count(), 1);
    await page.keyboard.press("+");
    await expectEventually(() => radio.state.volume === 45, "a higher volume");
    await page.locator(".quiet-facts").getByText("45 %").waitFor();
    await page.keyboard.press("Escape");
    await page.locator(".quiet-view").waitFor({ state: "detached" });
    assert.deepEqual([radio.called("alarms.snooze").length, radio.called("alarms.stop").length], [2, 1]);
    radio.missed = [{ id: "a", at: "2026-11-20T07:30:00+01:00" }];
    radio.changed("alarms");
    await page.getByText("An alarm was missed while this radio was off. Friday 7:30 AM").waitFor();
    await page.getByRole("button", { name: "OK" }).click();
    await page.getByText("An alarm was missed").waitFor({ state: "detached" });
    await close(page);
});

test("stars and presets leave as a file, and come back from one", async () => {
    const { page, radio } = await openPage({}, "page:radio");
    radio.stars.add("X:a");
    const downloaded = page.waitForEvent("download");
    await page.getByRole("button", { name: "Export", exact: true }).click();
    const download = await downloaded;
    assert.equal(download.suggestedFilename(), "vesk-library.json");
    const file = await readFile(await download.path());
    assert.deepEqual(JSON.parse(file), { version: 1, favorites: [{ path: "X:a" }], presets: [] });
    const choose = async (name, buffer) => {
        const chooser = page.waitForEvent("filechooser");
        await page.getByRole("button", { name: "Import …" }).click();
        await (await chooser).setFiles({ name, mimeType: "application/json", buffer });
    };
    await choose("stations.json", Buffer.from("[]"));
    await page.getByText("stations.json is not a library that was exported here.").waitFor();
    radio.stars.clear();
    await choose("vesk-library.json", file);
    await page.getByText("1 star was added. 0 presets were set.").waitFor();
    assert.ok(radio.stars.has("X:a"));
    await close(page);
});

test("the lock screen steps through presets and an episode", async () => {
    const page = await newPage(browser, product);
    await page.addInitScript(() => {
        window.handlers = {};
        const original = MediaSession.prototype.setActionHandler;
        MediaSession.prototype.setActionHandler = function (name, handler) {
            window.handlers[name] = handler;
            return original.call(this, name, handler);
        };
        MediaSession.prototype.setPositionState = (state) => void (window.place = state ?? null);
    });
    const radio = new Radio();
    radio.presets.set(4, { number: 4, title: "Four", icon: "", path: "X:4" });
    await withRadio(page, radio);
    await page.goto(`${product.url}#${local}`);
    await page.locator("button.audio").first().click();
    await player(page).getByText("Playing").waitFor();
    const handled = () => page.evaluate(() => Object.entries(window.handlers).filter(([, run]) => run).map(([name]) => name).sort().join(" "));
    await expectEventually(async () => (await handled()) === "nexttrack pause play previoustrack stop", "steps through presets");
    radio.change({ position: 50, duration: 1000, seekable: true });
    await expectEventually(async () => (await handled()) === "nexttrack pause play previoustrack seekbackward seekforward seekto stop", "places");
    const place = await page.evaluate(() => window.place);
    assert.ok(place.duration === 1000 && place.position >= 50 && place.position <= radio.now.position, JSON.stringify(place));
    await page.evaluate(() => window.handlers.seekto({ seekTime: 70 }));
    await expectEventually(() => radio.called("player.seek").some(({ position }) => position === 70), "a seek");
    await page.evaluate(() => window.handlers.nexttrack({}));
    await expectEventually(() => radio.called("presets.play").length === 1, "the next preset");
    radio.change({ position: null, duration: null, seekable: false });
    await expectEventually(async () => (await page.evaluate(() => window.place)) === null, "no bar");
    await close(page);
});

/** What is wrong with the page for those who do not see it, or not all of it. */
async function checkEverybody(page, what) {
    await page.evaluate(axe.source);
    // An address in a list that is scrolled out of sight is taken for a link that skips to a place of this page.
    const { violations } = await page.evaluate(
        (values) => axe.run(document, { runOnly: { type: "tag", values }, rules: { "skip-link": { enabled: false } } }), ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"]);
    assert.deepEqual(violations.map(({ id, nodes }) => `${what}, ${id}: ${nodes.map((node) => node.html).join(" | ")}`), []);
    const width = await page.evaluate(() => [document.scrollingElement.scrollWidth, innerWidth]);
    assert.ok(width[0] <= width[1], `${what}: ${width[0]} pixels wide`);
}

for (const [name, options] of Object.entries({ "a narrow telephone": narrow, "a tablet in the dark": tablet })) {
    for (const language of ["en-US", "de-DE"]) {
        test(`is operated by everybody on ${name}, in ${language}`, async () => {
            await product.call("setData", { path: "settings:ui/language", role: "value", value: language });
            const { page, radio } = await openPage(options);
            await page.locator(`html[lang=${language.slice(0, 2)}]`).waitFor();
            await page.locator("button.audio").first().click();
            await expectEventually(() => radio.playing.state === 2, "something that plays");
            for (const number of [1, 4, 12])
                radio.presets.set(number, { number, title: `A station with quite a long name, ${number}`, icon: "", path: `X:${number}` });
            radio.alarms = [{ id: "a", time: "07:30", days: [1, 3, 5], enabled: true, volume: 30, fade: 60, title: "Morning", icon: "", path: "X:m", next: "2026-11-23T07:30:00+01:00" }];
            radio.ends = Date.now() + 1_800_000;
            radio.missed = [{ id: "a", at: "2026-11-20T07:30:00+01:00" }];
            ["presets", "alarms"].forEach((each) => radio.changed(each));
            radio.change({ position: 1000, duration: 4000, seekable: true });
            const details = page.locator("button.details");
            await details.waitFor();
            const check = async (what) => {
                await checkEverybody(page, what);
                await checkTargets(page, what);
            };
            await details.click();
            await dialog(page).getByRole("slider").first().waitFor();
            await dialog(page).locator("a.body").first().waitFor();
            await check("the details");
            await page.keyboard.press("Escape");
            await dialog(page).waitFor({ state: "hidden" });
            // What is said for some seconds covers what can be scrolled out from under it.
            await page.locator(".notice:not(:empty)").waitFor({ state: "detached", timeout: 40_000 });
            await page.locator(`a.round[href="#page:radio"]`).click();
            await page.locator(".preset").first().waitFor();
            await page.locator(".found button.plain-button[aria-pressed]").click();
            await check("this radio");
            await page.locator(".radio-lines button").nth(2).click();
            await dialog(page).locator("form").waitFor();
            await check("the sleep timer");
            await page.keyboard.press("Escape");
            await dialog(page).waitFor({ state: "hidden" });
            await page.locator(`a[href="#page:alarms"]`).click();
            await page.locator(".add-alarm button").click();
            await page.locator("input[type=time]").waitFor();
            await check("the alarms");
            radio.ringing = "a";
            radio.changed("alarms");
            await page.locator(".ringing").waitFor();
            await checkEverybody(page, "an alarm that rings");
            const outside = await page.locator(".ringing button").evaluateAll((all) => all.map((each) => each.getBoundingClientRect())
                .filter(({ left, top, right, bottom, height }) => left < 0 || top < 0 || right > innerWidth || bottom > innerHeight || height < 44).length);
            assert.equal(outside, 0);
            await close(page);
            await product.call("setData", { path: "settings:ui/language", role: "value", value: "en-US" });
        });
    }
}
