// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// What a listener does all day: menus, favorites, search, keys, on every size of screen.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

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

const local = "TuneIn:browse/uri/Browse.ashx?c=local";
const player = (where) => where.getByRole("region", { name: "Player" });
const stations = (where) => where.locator("button.audio");
const dialog = (where) => where.getByRole("dialog");
const heading = (where, name) => where.getByRole("heading", { level: 1, name, exact: true }).waitFor();
const focused = (page) => page.evaluate(() => {
    const element = document.activeElement;
    return element.getAttribute("aria-label") ?? element.textContent.trim();
});
const focusTag = (page) => page.evaluate(() => document.activeElement.tagName);

async function openLocal(options) {
    const page = await newPage(browser, product, options);
    await page.goto(`${product.url}#TuneIn:`);
    await page.getByRole("link", { name: "Local Radio" }).click();
    await stations(page).nth(3).waitFor();
    return page;
}

async function listen(page, index) {
    const title = await stations(page).nth(index).locator(".title").textContent();
    await stations(page).nth(index).click();
    // What played before may be shown as playing for a moment.
    await expectEventually(async () => {
        const now = await product.call("player.state");
        return now.state === 2 && now.title === title;
    }, "the station that was clicked");
    await player(page).getByText("Playing").waitFor();
}

test("the details of what plays have its names in full, and close with Back", async () => {
    const page = await openLocal({ viewport: { width: 390, height: 844 }, isMobile: true, hasTouch: true });
    await listen(page, 1);
    const { title, streamTitle } = await product.call("player.state");
    await player(page).locator("button.details").click();
    await dialog(page).getByRole("heading", { name: title }).waitFor();
    const isWhole = await dialog(page).getByRole("heading", { level: 2 }).evaluate((h) => h.scrollWidth <= h.clientWidth);
    assert.ok(isWhole);
    if (streamTitle)
        await dialog(page).locator(".on-air").waitFor();
    await dialog(page).getByText("kbit/s").waitFor();
    // The streams are one level deeper; Back leads up, and then out.
    await dialog(page).getByRole("link", { name: "Choose stream" }).click();
    await dialog(page).locator("button.audio").first().waitFor();
    await page.goBack();
    await dialog(page).getByRole("link", { name: "Choose stream" }).waitFor();
    await page.goBack();
    await dialog(page).waitFor({ state: "hidden" });
    await heading(page, "Local Radio");
    await page.goBack();
    await heading(page, "TuneIn");
    onlyProblemsOf(page);
    await page.context().close();
});

test("Escape goes one level up, arrows move in menus, and the focus is never lost", async () => {
    const page = await openLocal();
    await listen(page, 1);
    await player(page).getByRole("button", { name: /^More for/ }).click();
    await dialog(page).getByRole("link", { name: "Choose stream" }).waitFor();
    const rows = dialog(page).locator("[data-main]");
    await page.keyboard.press("ArrowDown");
    assert.ok(await rows.nth(0).evaluate((row) => row === document.activeElement));
    await page.keyboard.press("ArrowDown");
    assert.ok(await rows.nth(1).evaluate((row) => row === document.activeElement));
    await page.keyboard.press("End");
    assert.ok(await rows.last().evaluate((row) => row === document.activeElement));
    await dialog(page).getByRole("link", { name: "Choose stream" }).press("Enter");
    await dialog(page).locator("button.audio").first().waitFor();
    assert.notEqual(await focusTag(page), "BODY");
    await page.keyboard.press("Escape");
    await dialog(page).getByRole("link", { name: "Choose stream" }).waitFor();
    assert.notEqual(await focusTag(page), "BODY");
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    assert.match(await focused(page), /^More for/);
    // What had the focus goes away with the player.
    await player(page).getByRole("button", { name: "Stop" }).focus();
    await page.keyboard.press("Enter");
    await player(page).waitFor({ state: "detached" });
    await expectEventually(async () => (await focusTag(page)) !== "BODY", "something in focus");
    onlyProblemsOf(page);
    await page.context().close();
});

test("a heart shows what is a favorite, changes it, and takes it back", async () => {
    const page = await openLocal();
    await listen(page, 2);
    const { title } = await product.call("player.state");
    const heart = player(page).getByRole("button", { name: "Favorite" });
    // The favorites may be read once more after the words, when the change is told.
    const shows = (one, is) => expectEventually(async () => (await one.getAttribute("aria-pressed")) === String(is), `a heart that says ${is}`);
    assert.equal(await heart.getAttribute("aria-pressed"), "false");
    await heart.click();
    await page.getByText(`${title} is a favorite now`).waitFor();
    await shows(heart, true);
    await page.getByRole("button", { name: "Undo" }).click();
    await page.getByText(`${title} is no favorite any more`).waitFor();
    await shows(heart, false);
    assert.notEqual(await focusTag(page), "BODY");
    const favorites = await product.call("getRows", { path: "TuneIn:browse/uri/Browse.ashx?c=presets" });
    assert.ok(!JSON.stringify(favorites.rows).includes(title));
    // The same above the page, in the details.
    await player(page).locator("button.details").click();
    const inDetails = dialog(page).getByRole("button", { name: "Favorite" });
    await inDetails.click();
    await dialog(page).getByText(`${title} is a favorite now`).waitFor();
    await dialog(page).getByRole("button", { name: "Undo" }).click();
    await dialog(page).getByText(`${title} is no favorite any more`).waitFor();
    await shows(inDetails, false);
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    // What is changed elsewhere is shown, too.
    const other = await newPage(browser, product);
    await other.goto(product.url);
    await player(other).getByRole("button", { name: "Favorite" }).click();
    await shows(heart, true);
    // Its row's menu knows.
    await page.getByRole("button", { name: `More for ${title}` }).first().click();
    await dialog(page).locator("button.activate .heart.on").waitFor();
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    await heart.click();
    await page.getByText(`${title} is no favorite any more`).waitFor();
    await other.context().close();
    onlyProblemsOf(page);
    await page.context().close();
});

test("the search field follows the screen, leads to the results, and clears them", async () => {
    const page = await openLocal();
    const field = page.getByRole("searchbox");
    await page.keyboard.press("/");
    await field.pressSequentially("jazz", { delay: 20 });
    await heading(page, "Results for “jazz”");
    await stations(page).first().waitFor();
    await page.keyboard.press("ArrowDown");
    assert.ok(await stations(page).first().evaluate((row) => row === document.activeElement));
    // Back while the field has the focus, and forward again.
    await field.focus();
    await page.goBack();
    await heading(page, "Local Radio");
    await expectEventually(async () => (await field.inputValue()) === "", "an empty field");
    await page.goForward();
    await heading(page, "Results for “jazz”");
    await expectEventually(async () => (await field.inputValue()) === "jazz", "the words in the field");
    await field.fill("");
    await heading(page, "Local Radio");
    assert.equal(await field.inputValue(), "");
    onlyProblemsOf(page);
    await page.context().close();
});

test("the tab's title names what plays; space pauses it, and goes on", async () => {
    const page = await openLocal();
    await listen(page, 0);
    const { title } = await product.call("player.state");
    await expectEventually(async () => (await page.title()) === `▶ ${title} – Local Radio – Vesk`, "the station in the title");
    await page.locator("h1").focus();
    await page.keyboard.press("Space");
    await player(page).getByText("Paused").waitFor();
    await expectEventually(async () => (await page.title()) === `⏸ ${title} – Local Radio – Vesk`, "the pause in the title");
    // A paused station's mark is another than a playing one's.
    assert.equal(await page.locator("button.audio[aria-current=true] .mark i").count(), 0);
    // On the row of what plays it does not begin anew.
    const { playId } = await product.call("player.state");
    await page.locator("button.audio[aria-current=true]").focus();
    await page.keyboard.press("Space");
    await player(page).getByText("Playing").waitFor();
    assert.deepEqual((await product.call("player.state")).playId, playId);
    assert.equal(await page.locator("button.audio[aria-current=true] .mark i").count(), 3);
    await page.keyboard.press("?");
    await dialog(page).getByText("Pause what plays, or go on").waitFor();
    await page.keyboard.press("Escape");
    await dialog(page).waitFor({ state: "hidden" });
    await product.call("player.stop");
    onlyProblemsOf(page);
    await page.context().close();
});

test("it is bright or dark as its reader likes, also after a reload", async () => {
    const page = await newPage(browser, product, { colorScheme: "light" });
    await page.goto(`${product.url}#host:settings`);
    const background = () => page.evaluate(() => getComputedStyle(document.documentElement).backgroundColor);
    const bright = await background();
    const choice = page.getByRole("combobox", { name: "Appearance" });
    await choice.selectOption({ label: "Dark" });
    const dark = await background();
    assert.notEqual(dark, bright);
    await page.reload();
    await choice.waitFor();
    assert.equal(await background(), dark);
    await choice.selectOption({ label: "Like the system" });
    assert.equal(await background(), bright);
    await page.emulateMedia({ colorScheme: "dark" });
    await expectEventually(async () => (await background()) === dark, "the system's colours");
    onlyProblemsOf(page);
    await page.context().close();
});

test("a wide screen has two columns, in which the arrows move", async () => {
    const page = await openLocal({ viewport: { width: 1400, height: 900 } });
    const box = (index) => page.locator(`.rows li[data-row="${index}"]`).boundingBox();
    const [first, second, third] = await Promise.all([0, 1, 2].map(box));
    assert.equal(first.y, second.y);
    assert.ok(second.x >= first.x + first.width - 1);
    assert.equal(third.x, first.x);
    await page.locator('.rows li[data-row="1"] [data-main]').focus();
    const row = () => page.evaluate(() => Number(document.activeElement.closest("li").dataset.row));
    await page.keyboard.press("ArrowDown");
    assert.equal(await row(), 3);
    await page.keyboard.press("ArrowLeft");
    assert.equal(await row(), 2);
    await page.keyboard.press("ArrowUp");
    assert.equal(await row(), 0);
    await page.setViewportSize({ width: 1399, height: 900 });
    await expectEventually(async () => (await box(1)).y > (await box(0)).y, "one column");
    await page.context().close();
});

test("a telephone on its side leaves two thirds of its height", async () => {
    const page = await openLocal({ viewport: { width: 844, height: 390 }, isMobile: true, hasTouch: true });
    await listen(page, 1);
    const bars = await page.evaluate(() => ["header", ".player"].map((each) => document.querySelector(each).offsetHeight));
    assert.ok(bars[0] + bars[1] <= 390 / 3, `the bars are ${bars.join(" and ")} pixels high`);
    await product.call("player.stop");
    await page.context().close();
});

test("texts keep their direction, and what is cut off is their end", async () => {
    const page = await openLocal({ viewport: { width: 390, height: 844 } });
    const title = stations(page).first().locator(".title");
    await title.evaluate((element) => (element.textContent = "إذاعة القرآن الكريم من القاهرة على مدار الساعة مباشر بدون إعلانات تجارية وبدون توقف أبدا"));
    assert.equal(await title.getAttribute("dir"), "auto");
    assert.equal(await title.evaluate((element) => getComputedStyle(element).direction), "rtl");
    // Cut off, and beside the picture like all others.
    assert.ok(await title.evaluate((element) => element.scrollHeight > element.clientHeight || element.scrollWidth > element.clientWidth));
    assert.notEqual(await title.evaluate((element) => getComputedStyle(element).textAlign), "left", "no ellipsis is drawn then");
    const lefts = await stations(page).evaluateAll((rows) => rows.slice(0, 3).map((row) => row.querySelector(".title").getBoundingClientRect().left));
    assert.equal(lefts[0], lefts[1]);
    await page.context().close();
});

test("a claim survives a reload, and shows where to go", async () => {
    const page = await newPage(browser, product);
    await page.goto(`${product.url}#host:settings`);
    await page.getByText("the favorites are those of the account").waitFor();
    await page.getByRole("button", { name: "Link with a code" }).click();
    const code = () => page.locator(".code [aria-hidden]").textContent();
    const before = await code();
    const link = page.locator(".claim a");
    assert.match(await link.getAttribute("href"), /^https?:\/\/.*\/mydevice$/);
    assert.equal(await link.getAttribute("rel"), "noopener noreferrer");
    await page.getByRole("img", { name: /QR code/ }).waitFor();
    await page.reload();
    await page.locator(".code").waitFor();
    assert.equal(await code(), before);
    await page.getByRole("button", { name: "Cancel" }).click();
    await page.getByRole("button", { name: "Link with a code" }).waitFor();
    await page.reload();
    await page.getByRole("button", { name: "Link with a code" }).waitFor();
    onlyProblemsOf(page);
    await page.context().close();
});

test("while it waits for a code it asks seldom, and at once when somebody comes back", async () => {
    const page = await newPage(browser, product);
    await page.goto(`${product.url}#host:settings`);
    await page.getByRole("button", { name: "Link with a code" }).click();
    await page.locator(".code").waitFor();
    const looks = async () => (await product.requestLines()).filter((line) => line.includes("c=query")).length;
    const before = await looks();
    await page.evaluate(() => window.dispatchEvent(new Event("focus")));
    await expectEventually(async () => (await looks()) === before + 1, "one look");
    await page.getByRole("button", { name: "Cancel" }).click();
    await page.context().close();
});

test("the directory's page for codes fits a telephone", async () => {
    const page = await (await browser.newContext({ viewport: { width: 360, height: 640 }, isMobile: true, hasTouch: true })).newPage();
    await page.goto(`${product.directoryUrl}/mydevice`);
    const fits = await page.evaluate(() => ({
        width: document.scrollingElement.scrollWidth, inner: innerWidth,
        heights: [...document.querySelectorAll("input, button")].map((field) => field.offsetHeight),
    }));
    assert.equal(fits.inner, 360);
    assert.ok(fits.width <= 360);
    assert.ok(fits.heights.every((height) => height >= 44), fits.heights.join());
    await page.context().close();
});
