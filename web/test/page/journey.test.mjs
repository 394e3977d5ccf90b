// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// A first visit: what somebody does who has never seen the page.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { after, before, test } from "node:test";

import { expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

const songSeconds = 3;
let product;
let browser;
let page;

before(async () => {
    product = await Product.start({ directoryArgs: ["--title-seconds", String(songSeconds)] });
    browser = await launch();
    page = await newPage(browser, product);
});
after(async () => {
    await browser?.close();
    await product?.end();
});

const heading = (where, name) => where.getByRole("heading", { level: 1, name, exact: true }).waitFor();
const open = (where, name) => where.getByRole("link", { name, exact: true }).click();
const player = (where) => where.getByRole("region", { name: "Player" });

let station;

test("browses three levels down, with the way back in sight", async () => {
    await page.goto(product.url);
    await heading(page, "TuneIn");
    for (const name of ["By Location", "Europe", "Germany"]) {
        await open(page, name);
        await heading(page, name);
    }
    const crumbs = page.getByRole("navigation", { name: "You are here" }).getByRole("link");
    assert.deepEqual(await crumbs.allTextContents(), ["TuneIn", "By Location", "Europe"]);
    assert.match(await page.title(), /^Germany – /);
});

test("goes back and forward, by its own buttons and the browser's", async () => {
    await page.getByRole("button", { name: "Back", exact: true }).click();
    await heading(page, "Europe");
    await page.goBack();
    await heading(page, "By Location");
    await page.getByRole("button", { name: "Forward" }).click();
    await heading(page, "Europe");
    await page.goForward();
    await heading(page, "Germany");
    assert.ok(await page.getByRole("button", { name: "Forward" }).isDisabled());
});

test("opens at a place by its address", async () => {
    const other = await newPage(browser, product);
    await other.goto(page.url());
    await heading(other, "Germany");
    await other.getByRole("navigation", { name: "You are here" }).getByRole("link", { name: "TuneIn" }).waitFor();
    await other.context().close();
});

test("plays a station and shows what is on the air as it changes", async () => {
    await open(page, "Most Popular");
    await heading(page, "Most Popular");
    const row = page.locator("button.audio").first();
    station = await row.locator(".title").textContent();
    await row.click();
    await player(page).getByText("Playing").waitFor();
    assert.equal(await player(page).locator(".title").textContent(), station);
    await page.locator("button.audio[aria-current=true]", { hasText: station }).waitFor();

    // What the stream says, not what the list said.
    const onAir = player(page).locator(".on-air");
    const streamTitle = async () => (await product.call("player.state")).streamTitle;
    await expectEventually(
        async () => (await streamTitle()) !== "" && (await onAir.textContent()) === (await streamTitle()),
        "the stream's title");
    const first = await onAir.textContent();
    await expectEventually(async () => (await onAir.textContent()) !== first, "another title");
});

test("shows the artwork that the service named, from the host", async () => {
    const picture = player(page).locator("img");
    await expectEventually(
        () => picture.evaluate((img) => img.complete && img.naturalWidth > 0), "a picture");
    assert.match(await picture.getAttribute("src"), /^\.\/artwork\/[0-9a-f]{64}$/);
});

test("pauses, goes on and stops", async () => {
    await player(page).getByRole("button", { name: "Pause", exact: true }).click();
    await player(page).getByText("Paused").waitFor();
    assert.equal((await product.call("player.state")).state, 3);
    await player(page).getByRole("button", { name: "Play", exact: true }).click();
    await player(page).getByText("Playing").waitFor();
    await player(page).getByRole("button", { name: "Stop" }).click();
    await player(page).waitFor({ state: "detached" });
    assert.equal((await product.call("player.state")).state, 0);
});

test("says when a stream broke off and is tried again", async () => {
    await page.locator("button.audio").first().click();
    await player(page).getByText("Playing").waitFor();
    await product.fault("down@/stream/:8");
    // In the host's words about what it does, which come instead of the page's own.
    await player(page).locator(".state.problem").waitFor({ timeout: 20_000 });
    await player(page).getByText("Playing").waitFor({ timeout: 30_000 });
    await product.noFaults();
    await player(page).getByRole("button", { name: "Stop" }).click();
    await player(page).waitFor({ state: "detached" });
});

test("offers a choice of streams in the player's menu", async () => {
    await page.locator("button.audio").first().click();
    await player(page).getByText("Playing").waitFor();
    await player(page).getByRole("button", { name: /^More for/ }).click();
    await page.getByRole("dialog").getByRole("link", { name: "Choose stream" }).click();
    const streams = page.getByRole("dialog").locator("button.audio");
    await streams.nth(1).waitFor();
    const before = (await product.call("player.state")).playId.id;
    await streams.nth(1).click();
    await page.getByRole("dialog").waitFor({ state: "hidden" });
    await expectEventually(async () => {
        const { state, playId } = await product.call("player.state");
        return state === 2 && playId.id !== before;
    }, "the other stream");
});

test("adds a favorite that another open page shows at once", async () => {
    const other = await newPage(browser, product);
    await other.goto(product.url);
    await open(other, "Favorites");
    await other.getByText("No stations or shows available").waitFor();

    await page.getByRole("button", { name: `More for ${station}` }).first().click();
    await page.getByRole("dialog").getByRole("button", { name: "Add to TuneIn Favorites" }).click();
    await page.getByText(`${station} is a favorite now`).waitFor();
    await page.getByRole("dialog").waitFor({ state: "hidden" });
    const name = station.replace(/^[\d.]+ \| /, "").replace(/ \(.*\)$/, "");
    await other.locator("button.audio", { hasText: name }).waitFor();

    // Both pages show one player.
    await player(other).getByText("Playing").waitFor();
    await player(other).getByRole("button", { name: "Stop" }).click();
    await player(page).waitFor({ state: "detached" });

    // And the menu knows by now.
    await page.getByRole("button", { name: `More for ${station}` }).first().click();
    await page.getByRole("dialog").getByRole("button", { name: "Remove from TuneIn Favorites" }).waitFor();
    await page.keyboard.press("Escape");
    await other.context().close();
});

test("searches while somebody types", async () => {
    const field = page.getByRole("searchbox", { name: "Search Stations, Shows, Songs, or Artists" });
    await field.pressSequentially("jazz", { delay: 30 });
    await heading(page, "Results for “jazz”");
    await page.getByRole("button", { name: /Hafenlicht Jazz/ }).first().waitFor();
    assert.ok(await field.evaluate((input) => input === document.activeElement));
    await field.press("Enter");
    assert.ok(await page.locator("h1").evaluate((h1) => h1 === document.activeElement));
    // One step back leaves the search, however much was typed.
    await page.goBack();
    await heading(page, "Most Popular");
    await expectEventually(async () => (await field.inputValue()) === "", "an empty field");
});

test("links the account by a code", async () => {
    const account = new URLSearchParams({
        c: "create", render: "json", username: "listener", password: "swordfish",
        email: "listener@example.org", postalCode: "12345",
    });
    const created = await fetch(`${product.directoryUrl}/Account.ashx?${account}`, { method: "POST" });
    assert.equal((await created.json()).head.status, "200");

    await page.getByRole("link", { name: "Settings" }).click();
    const panel = page.getByRole("region", { name: "TuneIn account" });
    await panel.getByText("This device is not linked to a TuneIn account.").waitFor();
    await panel.getByRole("button", { name: "Link with a code" }).click();
    const code = await panel.locator(".code [aria-hidden]").textContent();
    const size = await panel.locator(".code").evaluate((e) => parseFloat(getComputedStyle(e).fontSize));
    assert.ok(size >= 32, `the code is ${size} pixels large`);

    const linked = await fetch(`${product.directoryUrl}/mydevice`, {
        method: "POST",
        body: new URLSearchParams({ code, username: "listener", password: "swordfish" }),
    });
    assert.equal(linked.status, 200);
    await panel.getByText("Linked to listener").waitFor();
});

test("changes the language while it runs, its own texts and the services'", async () => {
    const other = await newPage(browser, product);
    await other.goto(product.url);
    await heading(other, "TuneIn");
    await page.getByRole("combobox", { name: "Language" }).selectOption({ label: "Deutsch" });
    await heading(page, "Einstellungen");
    await page.getByRole("switch", { name: "Anbieten, stumme Sender zu melden" }).waitFor();
    await other.getByRole("searchbox", { name: "Sender, Sendungen, Titel oder Interpreten suchen" }).waitFor();
    assert.equal(await other.evaluate(() => document.documentElement.lang), "de");
    for (const [label, title] of [["Français", "Réglages"], ["Español", "Ajustes"], ["English", "Settings"]]) {
        await page.locator("li select").selectOption({ label });
        await heading(page, title);
    }
    await other.context().close();
});

test("a change of language is told of, and then all is quiet", async () => {
    const other = await newPage(browser, product);
    let told = 0;
    other.on("websocket", (socket) => socket.on("framereceived", ({ payload }) => {
        told += String(payload).includes('"method":"changed"') ? 1 : 0;
    }));
    await other.goto(`${product.url}#host:settings`);
    await heading(other, "Settings");
    await product.call("setData", { path: "settings:ui/language", role: "value", value: "de-DE" });
    await heading(other, "Einstellungen");
    await product.call("setData", { path: "settings:ui/language", role: "value", value: "en-US" });
    await heading(other, "Settings");
    // What the host still has to say, it says between its answers.
    const settle = async () => {
        for (let i = 0; i < 100; ++i)
            await product.call("getData", { path: "settings:ui/language", roles: ["value"] });
        // What it has said has reached the browser, and that has told it, when this is answered.
        await other.evaluate(async () => (await fetch("./")).text());
        return told;
    };
    await settle();
    const before = await settle();
    assert.ok(before > 0);
    assert.equal(await settle(), before);
    await other.context().close();
});

test("a value that is refused leaves the field, with the reason beside it", async () => {
    await page.goto(`${product.url}#host:settings/advanced`);
    const field = page.getByRole("textbox", { name: "Stream formats to ask TuneIn for" });
    const known = await field.inputValue();
    const refusal = page.getByRole("alert").filter({ hasText: "cannot be “mp3,mp5”".replace(/[“”]/g, '"') });
    for (const leave of ["Enter", "Tab"]) {
        await field.fill("mp3,mp5");
        await field.press(leave);
        await refusal.waitFor();
        assert.match(await refusal.textContent(), /^The setting "Stream formats to ask TuneIn for" cannot be/);
        assert.equal(await field.inputValue(), known);
    }
    const { values } = await product.call("getData", { path: "settings:tunein/supportedStreams", roles: ["value"] });
    assert.equal(values[0].string_, known);
    // What is taken takes the reason away.
    await field.fill("mp3");
    await field.press("Enter");
    await refusal.waitFor({ state: "detached" });
    await expectEventually(async () => (await field.inputValue()) === "mp3", "the new value");
    await field.fill(known);
    await field.press("Enter");
});

test("switches a setting, which another page shows", async () => {
    const other = await newPage(browser, product);
    await other.goto(`${product.url}#host:settings`);
    const name = "Show the parts of a screen in one list";
    await page.goto(`${product.url}#host:settings`);
    const wasOn = await page.getByRole("switch", { name }).isChecked();
    await page.getByRole("switch", { name }).click();
    await expectEventually(
        async () => (await other.getByRole("switch", { name }).isChecked()) !== wasOn, "the other switch");
    await other.context().close();
});

test("survives a restart of the host", async () => {
    await page.goto(`${product.url}#TuneIn:`);
    await open(page, "By Language");
    await heading(page, "By Language");
    await product.host.end();
    await page.getByText("The connection to the host is lost. Trying again …").waitFor();
    await product.startHost();
    await page.getByText("The connection to the host is lost").waitFor({ state: "detached" });
    await page.locator("a.body").first().click();
    await page.locator(".rows li").first().waitFor();
    // What it follows, it follows again.
    await product.call("setData", { path: "settings:ui/language", role: "value", value: "fr-FR" });
    await page.getByRole("link", { name: "Réglages" }).waitFor();
    await product.call("setData", { path: "settings:ui/language", role: "value", value: "en-US" });
});

test("logged no error and asked nobody but the host", () => {
    onlyProblemsOf(page);
});

test("shows the licenses of the libraries that are part of it", async () => {
    const dependencies = Object.keys(JSON.parse(
        await readFile(new URL("../../package.json", import.meta.url), "utf8")).dependencies);
    const text = await (await fetch(new URL("/notices.txt", product.url))).text();
    for (const name of dependencies)
        assert.match(text, new RegExp(`^${name} \\d.* \\(.+\\)\n\n[^]*?Copyright`, "m"), name);
    await page.goto(product.url);
    await page.getByRole("link", { name: "Settings" }).click();
    const link = page.getByRole("link", { name: "Show the licenses" });
    assert.equal(await link.getAttribute("href"), "./notices.txt");
});
