// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// What a radio does, with the host's own methods: what the page asks for happens, is kept over a restart, and what others do is shown.
// A host that has no such method yet has its tests skipped, which the report says.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { after, before, test } from "node:test";

import { expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

const local = "TuneIn:browse/uri/Browse.ashx?c=local";

/** A show: its episodes, which are files, come below the stations that broadcast it at this hour. */
const show = "TuneIn:browse/uri/Tune.ashx?c=pbrowse&id=p3022";
const episode = "Das Beste der Woche";

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

/** Whether the host has a method; wrong parameters are no reason against it. */
async function has(method, params = {}) {
    try {
        await product.call(method, params);
        return true;
    } catch ({ code }) {
        return code !== -32601;
    }
}

/** A test of what needs a method of the host's. */
function testWith(method, name, run) {
    test(name, async (context) => {
        if (!(await has(method)))
            return context.skip(`this host has no ${method}`);
        await run();
    });
}

const player = (page) => page.getByRole("region", { name: "Player" });
const dialog = (page) => page.getByRole("dialog");

async function open(path = local) {
    const page = await newPage(browser, product, { viewport: { width: 1440, height: 900 } });
    await page.goto(`${product.url}#${path}`);
    return page;
}

/** A page on which a station plays; its title. */
async function openPlaying(index = 0) {
    const page = await open();
    const title = await page.locator("button.audio .title").nth(index).textContent();
    await page.locator("button.audio").nth(index).click();
    await expectEventually(async () => {
        const now = await product.call("player.state");
        return now.state === 2 && now.title === title;
    }, "the station");
    await player(page).getByText("Playing").waitFor();
    return { page, title };
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

testWith("player.volume", "the volume is the host's, for every page", async () => {
    const { page } = await openPlaying();
    const other = await open();
    const slider = (where) => player(where).getByRole("slider", { name: "Volume" });
    const state = () => product.call("player.state");
    await slider(page).waitFor();
    await product.call("player.volume", { volume: 60 });
    await expectEventually(async () => (await slider(page).inputValue()) === "60", "the volume that another set");
    await slider(page).press("ArrowLeft");
    await expectEventually(async () => (await state()).volume === 55, "the page's volume");
    await expectEventually(async () => (await slider(other).inputValue()) === "55", "it in the other page");
    await page.getByRole("heading", { level: 1 }).focus();
    await page.keyboard.press("m");
    await expectEventually(async () => (await state()).mute === true, "silence");
    await expectEventually(
        async () => (await player(other).getByRole("button", { name: "Mute" }).getAttribute("aria-pressed")) === "true", "silence elsewhere");
    await page.keyboard.press("+");
    await expectEventually(async () => {
        const { volume, mute } = await state();
        return volume === 60 && mute === false;
    }, "sound again");
    await other.context().close();
    await close(page);
});

testWith("player.seek", "a place in an episode is chosen, and counted as the host counts", async () => {
    const page = await open(show);
    await page.locator("button.audio").filter({ hasText: episode }).click();
    const slider = player(page).getByRole("slider", { name: "Position" });
    const shown = async () => Number(await slider.inputValue());
    await slider.waitFor();
    const { duration, seekable } = await product.call("player.state");
    assert.ok(duration > 600 && seekable, `${duration} seconds`);
    assert.equal(Number(await slider.getAttribute("max")), Math.floor(duration));
    const box = await slider.boundingBox();
    await page.mouse.click(box.x + box.width / 2, box.y + box.height / 2);
    const isAgreed = async () => {
        const { state, position } = await product.call("player.state");
        return state === 2 && position > duration * 0.4 && Math.abs(position - (await shown())) < 2;
    };
    await expectEventually(isAgreed, "the middle");
    const at = await shown();
    await expectEventually(async () => (await shown()) >= at + 3, "three seconds later");
    await expectEventually(isAgreed, "the same place on both");
    await page.getByRole("heading", { level: 1 }).focus();
    await page.keyboard.press("j");
    await expectEventually(async () => (await product.call("player.state")).position < at, "a step back");
    // What is live has no place, and says so to whoever asks nevertheless.
    await page.goto(`${product.url}#${local}`);
    await page.locator("button.audio").first().click();
    await slider.waitFor({ state: "detached" });
    await close(page);
});

testWith("outputs.list", "outputs are the host's", async () => {
    const { page } = await openPlaying();
    const { outputs } = await product.call("outputs.list");
    await player(page).locator("button.details").click();
    await dialog(page).getByRole("button", { name: "Output …" }).click();
    await expectEventually(async () => (await dialog(page).locator(".menu-rows button").count()) === outputs.length, "all outputs");
    const current = dialog(page).locator(".menu-rows button[aria-current=true]");
    assert.equal(await current.count(), outputs.filter((each) => each.current).length);
    await page.keyboard.press("Escape");
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    await close(page);
});

testWith("presets.list", "presets are saved and played by keys, and are there after a restart", async () => {
    const { page, title } = await openPlaying(1);
    await page.getByRole("heading", { level: 1 }).focus();
    await page.keyboard.press("Shift+Digit2");
    await page.getByText(`Preset 2 is ${title} now.`).waitFor();
    assert.deepEqual((await product.call("presets.list")).presets.map(({ number, title: name }) => [number, name]), [[2, title]]);
    await openRadio(page);
    await page.getByRole("button", { name: `Preset 2: ${title}` }).waitFor();
    await product.call("player.stop");
    await player(page).waitFor({ state: "detached" });
    await page.keyboard.press("2");
    await expectEventually(async () => {
        const now = await product.call("player.state");
        return now.state === 2 && now.title === title;
    }, "the preset");
    await page.getByRole("button", { name: `Preset 2: ${title}` }).and(page.locator("[aria-current=true]")).waitFor();
    await product.call("player.stop");
    await product.host.end();
    await product.startHost();
    await page.locator("html:not(.is-lost)").waitFor();
    await page.getByRole("button", { name: `Preset 2: ${title}` }).click();
    await expectEventually(async () => (await product.call("player.state")).state === 2, "the preset after the restart");
    await page.getByRole("button", { name: "Clear some" }).click();
    await page.getByRole("button", { name: "Clear preset 2" }).click();
    await expectEventually(async () => (await product.call("presets.list")).presets.length === 0, "no preset");
    await close(page);
});

testWith("favorites.state", "a star is kept by the radio, is none of the service's, and its row plays", async () => {
    const { page, title } = await openPlaying(2);
    const star = player(page).getByRole("button", { name: "Star on this radio" });
    const heart = player(page).getByRole("button", { name: "Favorite at TuneIn" });
    assert.equal(await star.getAttribute("aria-pressed"), "false");
    await star.click();
    await page.getByText(`${title} has a star on this radio.`).waitFor();
    assert.equal(await star.getAttribute("aria-pressed"), "true");
    assert.equal(await heart.getAttribute("aria-pressed"), "false");
    // The row in its list is known by the same star.
    await page.locator("[data-row]").filter({ hasText: title }).getByRole("button", { name: /^More for/ }).click();
    const inMenu = dialog(page).getByRole("button", { name: "Star on this radio" });
    await expectEventually(async () => (await inMenu.getAttribute("aria-pressed")) === "true", "the star in the menu");
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    await product.call("player.stop");
    await openRadio(page);
    const stars = page.getByRole("region", { name: "With a star on this radio" });
    await stars.getByRole("button", { name: title }).first().click();
    await expectEventually(async () => (await product.call("player.state")).state === 2, "the row with the star");
    await page.getByRole("region", { name: "Heard lately" }).getByText(title).waitFor();
    // Who plays from that list can take the star away, and it is seen.
    await expectEventually(async () => (await star.getAttribute("aria-pressed")) === "true", "the star of what plays");
    await star.click();
    await page.getByText("Nothing has a star yet.").waitFor();
    await close(page);
});

testWith("recents.clear", "what was heard is listed, newest first, and the list is cleared", async () => {
    await product.call("recents.clear");
    const first = await openPlaying(0);
    await close(first.page);
    const { page, title } = await openPlaying(3);
    await openRadio(page);
    const recents = page.getByRole("region", { name: "Heard lately" });
    const titles = () => recents.locator(".rows .title").allTextContents();
    await expectEventually(async () => {
        const all = await titles();
        return all[0] === title && all[1] === first.title;
    }, "both stations");
    await recents.getByRole("button", { name: "Clear …" }).click();
    await recents.getByRole("button", { name: "Clear the list" }).click();
    await recents.getByText("What you play will be listed here.").waitFor();
    await close(page);
});

testWith("library.export", "stars and presets go to a file, and from it to a radio without any", async () => {
    const { page, title } = await openPlaying(1);
    await product.call("favorites.add");
    await product.call("presets.save", { number: 11 });
    await openRadio(page);
    const downloaded = page.waitForEvent("download");
    await page.getByRole("button", { name: "Export", exact: true }).click();
    const file = await readFile(await (await downloaded).path());
    const { path } = await product.call("player.state");
    await product.call("favorites.remove", { path });
    await product.call("presets.clear", { number: 11 });
    await page.getByText("Nothing has a star yet.").waitFor();
    const chooser = page.waitForEvent("filechooser");
    await page.getByRole("button", { name: "Import …" }).click();
    await (await chooser).setFiles({ name: "vesk-library.json", mimeType: "application/json", buffer: file });
    await page.getByText("1 star was added. 1 preset was set.").waitFor();
    await page.getByRole("button", { name: `Preset 11: ${title}` }).waitFor();
    await page.getByRole("region", { name: "With a star on this radio" }).getByText(title).waitFor();
    await close(page);
});

testWith("sleep.state", "the sleep timer is the host's", async () => {
    const { page } = await openPlaying();
    await player(page).locator("button.details").click();
    await dialog(page).getByRole("button", { name: "Sleep timer …" }).click();
    const began = Date.now();
    await dialog(page).getByRole("button", { name: "30 min" }).click();
    await dialog(page).getByText("30 minutes left").waitFor();
    const { left } = await product.call("sleep.state");
    assert.ok(left > 1790 - (Date.now() - began) / 1000 && left <= 1800, `${left} seconds`);
    await product.call("sleep.start", { minutes: 10 });
    await dialog(page).getByText("10 minutes left").waitFor();
    await dialog(page).getByRole("button", { name: "Stop the timer" }).click();
    await expectEventually(async () => (await product.call("sleep.state")).ends === null, "no timer");
    await page.keyboard.press("Escape");
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    await close(page);
});

testWith("alarms.list", "an alarm is kept, changed and removed", async () => {
    const { page, title } = await openPlaying();
    await openRadio(page);
    await page.getByRole("link", { name: "Show the alarms" }).click();
    await page.getByRole("button", { name: "Add an alarm" }).click();
    await page.getByLabel("Time").fill("06:45");
    await page.getByRole("button", { name: "Save" }).click();
    const card = page.locator("li.alarm");
    await card.getByText(title).waitFor();
    await card.getByText(/Next: .* 6:45 AM/).waitFor();
    const alarms = async () => (await product.call("alarms.list")).alarms;
    const [made] = await alarms();
    assert.deepEqual([made.time, made.days, made.enabled, made.volume, made.fade], ["06:45", [1, 2, 3, 4, 5], true, null, 30]);
    await card.getByRole("switch").click();
    await expectEventually(async () => (await alarms())[0].enabled === false, "the alarm off");
    await card.getByRole("button", { name: /^Change the alarm/ }).click();
    await card.getByLabel("Time").fill("22:10");
    await card.getByRole("checkbox", { name: "Saturday" }).check();
    await card.getByRole("combobox", { name: "Volume" }).selectOption("20");
    await card.getByRole("button", { name: "Save" }).click();
    await card.getByText("10:10 PM", { exact: true }).waitFor();
    const [changed] = await alarms();
    assert.deepEqual([changed.id, changed.time, changed.days, changed.volume, changed.title],
        [made.id, "22:10", [1, 2, 3, 4, 5, 6], 20, title]);
    await card.getByRole("button", { name: /^Remove the alarm/ }).click();
    await card.getByRole("button", { name: "Remove", exact: true }).click();
    await expectEventually(async () => (await alarms()).length === 0, "no alarm");
    await page.getByText("None is set.").waitFor();
    await close(page);
});
