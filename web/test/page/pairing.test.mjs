// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The pairing page, before a host whose answers are scripted.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import axe from "axe-core";

import { checkTargets, expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";
import { Proxy } from "./proxy.mjs";

const phone = { viewport: { width: 375, height: 667 }, isMobile: true, hasTouch: true };

let product;
let proxy;
let browser;
/** Answers to POST pair, in their order: status and body. */
let answers = [];
/** The bodies that came with them. */
let posted = [];

before(async () => {
    product = await Product.start();
    proxy = await Proxy.start(product.url, {
        prefix: "/radio",
        answer: (request, response, path) => {
            if (path !== "/pair" || request.method !== "POST")
                return false;
            let body = "";
            request.on("data", (data) => (body += data));
            request.on("end", () => {
                posted.push({ type: request.headers["content-type"], ...JSON.parse(body) });
                const [status, answer] = answers.shift();
                response.writeHead(status, { "Content-Type": "application/json" }).end(JSON.stringify(answer));
            });
            return true;
        },
    });
    browser = await launch();
});
after(async () => {
    await browser?.close();
    await proxy?.end();
    await product?.end();
});

const code = (page) => page.getByRole("textbox", { name: "Code" });
const name = (page) => page.getByRole("textbox", { name: "Name of this device" });
const button = (page) => page.getByRole("button", { name: "Pair" });

test("takes the code of an address, hides it, and goes to the page once the device is paired", async () => {
    const page = await newPage(browser, { url: proxy.url });
    await page.goto(`${proxy.url}pair#012345`);
    await page.getByRole("heading", { level: 1, name: "Pair this device" }).waitFor();
    assert.equal(page.url(), `${proxy.url}pair`);
    assert.equal(await code(page).inputValue(), "012345");
    assert.match(await name(page).inputValue(), /^Chrome, /);
    await name(page).fill("Kitchen tablet");
    [answers, posted] = [[[200, { device: { id: "1", name: "Kitchen tablet", role: "listener" } }]], []];
    await button(page).click();
    await page.getByRole("heading", { level: 1, name: "TuneIn" }).waitFor();
    assert.equal(page.url().replace(/#.*/, ""), proxy.url);
    assert.deepEqual(posted, [{ type: "application/json", code: "012345", name: "Kitchen tablet", bearer: false }]);
    // The page took the pairing page's place.
    assert.equal(await page.evaluate(() => history.length), 2);
    onlyProblemsOf(page);
    await page.context().close();
});

test("takes a code as it is typed or pasted, and says in words why it is refused", async () => {
    const page = await newPage(browser, { url: proxy.url });
    await page.goto(`${proxy.url}pair`);
    assert.equal(await code(page).getAttribute("inputmode"), "numeric");
    assert.equal(await code(page).getAttribute("autocomplete"), "one-time-code");
    await code(page).focus();
    posted = [];
    const refusals = [
        [403, { error: "wrongCode", left: 4 }, "This is not the code. 4 attempts are left."],
        [403, { error: "wrongCode", left: 1 }, "This is not the code. 1 attempt is left."],
        [403, { error: "ended" }, "The code was wrong too often, so this pairing has ended."],
        [409, { error: "closed" }, "No device can be paired right now"],
        [400, { error: "invalid" }, "The host does not take this code or this name."],
        [503, { error: "notSaved" }, "The host could not write to its disk"],
        [429, {}, "The host refused this (HTTP 429)."],
    ];
    for (const [status, answer, words] of refusals) {
        answers = [[status, answer]];
        await page.keyboard.insertText("123 456");
        await page.keyboard.press("Enter");
        await page.getByRole("alert").filter({ hasText: words }).waitFor();
        // Ready for another one.
        await expectEventually(async () => (await code(page).inputValue()) === "", "an empty field");
        assert.ok(await code(page).evaluate((field) => field === document.activeElement));
    }
    assert.deepEqual(new Set(posted.map((each) => each.code)), new Set(["123456"]));
    // What is not whole is not sent.
    await page.keyboard.type("12345x");
    await page.keyboard.press("Enter");
    assert.equal(posted.length, refusals.length);
    onlyProblemsOf(page);
    await page.context().close();
});

test("keeps the code while the host cannot be reached", async () => {
    const page = await newPage(browser, { url: proxy.url });
    await page.goto(`${proxy.url}pair#123456`);
    await page.route("**/pair", (route) => route.abort());
    await button(page).click();
    await page.getByRole("alert").filter({ hasText: "The host cannot be reached." }).waitFor();
    assert.equal(await code(page).inputValue(), "123456");
    await page.context().close();
});

for (const [language, title] of [["de-AT", "Dieses Gerät koppeln"], ["es", "Emparejar este dispositivo"], ["fr-CA", "Associer cet appareil"]]) {
    test(`speaks ${language}, and stays within a telephone`, async () => {
        const page = await newPage(browser, { url: proxy.url }, { locale: language, ...phone });
        await page.goto(`${proxy.url}pair#forgotten`);
        await page.getByRole("heading", { level: 1, name: title }).waitFor();
        await page.getByRole("status").waitFor();
        assert.equal(await page.evaluate(() => document.documentElement.lang), language.slice(0, 2));
        assert.ok(await page.evaluate(() => document.scrollingElement.scrollWidth <= innerWidth));
        await page.context().close();
    });
}

for (const colorScheme of ["light", "dark"]) {
    test(`is usable by everybody, ${colorScheme}`, async () => {
        const page = await newPage(browser, { url: proxy.url }, { colorScheme, ...phone });
        await page.goto(`${proxy.url}pair#forgotten`);
        await code(page).fill("1");
        await page.evaluate(axe.source);
        const { violations } = await page.evaluate((values) => axe.run(document, { runOnly: { type: "tag", values } }),
            ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"]);
        assert.deepEqual(violations.map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.html).join(" | ")}`), []);
        await checkTargets(page, "the pairing page");
        onlyProblemsOf(page);
        await page.context().close();
    });
}

test("loads nothing from outside of what is open to everybody", async () => {
    const page = await newPage(browser, { url: proxy.url });
    proxy.asked = [];
    await page.goto(`${proxy.url}pair`);
    await button(page).waitFor();
    await page.waitForLoadState("networkidle");
    assert.ok(proxy.asked.length >= 3);
    assert.deepEqual(proxy.asked.filter((line) => !/^GET \/radio\/pair(\/|$)/.test(line)), []);
    await page.context().close();
});
