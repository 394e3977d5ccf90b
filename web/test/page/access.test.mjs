// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The page for everybody: by keyboard alone, by a checker's rules, on a small screen.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import axe from "axe-core";

import { checkTargets, expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

const rules = ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"];
const phone = { viewport: { width: 375, height: 667 }, isMobile: true, hasTouch: true };

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

async function check(page, what, runOnly = { type: "tag", values: rules }) {
    await page.evaluate(axe.source);
    const { violations } = await page.evaluate((only) => axe.run(document, { runOnly: only }), runOnly);
    const found = violations.map(
        ({ id, help, nodes }) => `${what}: ${id}: ${help}: ${nodes.map((n) => n.html).join(" | ")}`);
    assert.deepEqual(found, []);
}

/** Nothing is wider than the screen. */
async function checkWidth(page, what) {
    const over = await page.evaluate(() => document.scrollingElement.scrollWidth - innerWidth);
    assert.ok(over <= 0, `${what} is ${over} pixels too wide`);
}

const rows = (page) => page.locator(".rows li [data-main]");

/** Each kind of screen, and how to get there. */
const screens = {
    "the services": async (page) => {
        await page.goto(`${product.url}#host:services`);
        await rows(page).first().waitFor();
    },
    "a menu of folders": async (page) => {
        await page.goto(`${product.url}#TuneIn:`);
        await rows(page).nth(3).waitFor();
    },
    "headers and folders": async (page) => {
        await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?id=r100346`);
        await page.locator("h2.header").first().waitFor();
    },
    "stations while one plays": async (page) => {
        await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=local`);
        await page.locator("button.audio").first().click();
        await page.getByRole("region", { name: "Player" }).getByText("Playing").waitFor();
    },
    "a context menu": async (page) => {
        await page.locator(".more").first().click();
        await page.getByRole("dialog").getByRole("button", { name: /Favorites/ }).waitFor();
    },
    "the player's menu with the streams": async (page) => {
        await page.keyboard.press("Escape");
        await page.getByRole("region", { name: "Player" }).locator("button.details").click();
        await page.getByRole("link", { name: "Choose stream" }).click();
        await page.getByRole("dialog").locator("button.audio").first().waitFor();
    },
    "search results": async (page) => {
        // The streams are two levels deep.
        await page.keyboard.press("Escape");
        await page.keyboard.press("Escape");
        await page.getByRole("dialog").waitFor({ state: "hidden" });
        await page.getByRole("searchbox").fill("jazz");
        await page.getByRole("heading", { name: "Results for “jazz”" }).waitFor();
        await page.locator("button.audio").first().waitFor();
    },
    "the list of searches": async (page) => {
        await page.goto(`${product.url}#TuneIn:searches`);
        await page.locator(".rows input[type=search]").waitFor();
    },
    "an empty screen": async (page) => {
        await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=presets`);
        await page.getByText("No stations or shows available").waitFor();
    },
    "an error": async (page) => {
        await page.goto(`${product.url}#TuneIn:nowhere`);
        await page.getByRole("button", { name: "Try again" }).waitFor();
    },
    "settings with a claim code": async (page) => {
        await page.goto(`${product.url}#host:settings`);
        await page.getByRole("button", { name: "Link with a code" }).click();
        await page.locator(".code").waitFor();
    },
    "the page's keys": async (page) => {
        await page.keyboard.press("?");
        await page.getByRole("dialog").getByText("Pause what plays").waitFor();
    },
    "settings with a password": async (page) => {
        await page.keyboard.press("Escape");
        await page.getByRole("dialog").waitFor({ state: "hidden" });
        await page.getByRole("button", { name: "Cancel" }).click();
        await page.getByRole("button", { name: /password/ }).click();
        await page.getByLabel("Password").waitFor();
    },
};

for (const [name, options] of Object.entries({
    "wide and light": {},
    "wide and dark": { colorScheme: "dark" },
    "narrow and light": phone,
    "narrow and dark": { ...phone, colorScheme: "dark" },
    "with more contrast, light": { contrast: "more" },
    "with more contrast, dark": { contrast: "more", colorScheme: "dark" },
})) {
    test(`every screen passes the checker, ${name}`, async () => {
        const page = await newPage(browser, product, options);
        for (const [what, open] of Object.entries(screens)) {
            await open(page);
            await check(page, what);
            await checkWidth(page, what);
            if (options.hasTouch)
                await checkTargets(page, what);
            if (options.contrast)
                await check(page, what, { type: "rule", values: ["color-contrast-enhanced"] });
        }
        onlyProblemsOf(page);
        await product.call("player.stop");
        await page.context().close();
    });
}

test("says what went wrong, and tries again", async () => {
    const page = await newPage(browser, product);
    await product.fault("http-status@Browse.ashx:500");
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=music`);
    await page.getByRole("alert")
        .getByText("The TuneIn service is out of order (HTTP 500). Please try again later.").waitFor();
    await product.noFaults();
    await page.getByRole("button", { name: "Try again" }).click();
    await page.getByRole("link", { name: "Jazz", exact: true }).waitFor();
    await page.context().close();
});

test("is used by keyboard alone", async () => {
    const page = await newPage(browser, product);
    await page.goto(product.url);
    await rows(page).nth(3).waitFor();
    const focused = () => page.evaluate(() => {
        const element = document.activeElement;
        return element.getAttribute("aria-label") ?? element.textContent.trim();
    });
    const tabTo = async (name, key = "Tab") => {
        for (let i = 0; i < 20; ++i) {
            await page.keyboard.press(key);
            if ((await focused()) === name)
                return;
        }
        throw new Error(`Tab never reaches ${name}`);
    };

    await page.keyboard.press("Tab");
    assert.equal(await focused(), "Skip to the content");
    await page.keyboard.press("Enter");
    assert.equal(await focused(), "TuneIn");

    // One row is in the tab order, the arrows lead to the others.
    await page.keyboard.press("Tab");
    assert.equal(await focused(), "Share");
    await page.keyboard.press("Tab");
    assert.equal(await focused(), "Favorites");
    await page.keyboard.press("ArrowDown");
    assert.equal(await focused(), "Local Radio");
    await page.keyboard.press("End");
    assert.equal(await focused(), "Podcasts");
    await page.keyboard.press("Home");
    await page.keyboard.press("ArrowDown");
    await page.keyboard.press("Enter");
    await page.getByRole("heading", { level: 1, name: "Local Radio" }).waitFor();
    assert.equal(await focused(), "Local Radio");

    // Back to the row that was opened.
    await tabTo("Back", "Shift+Tab");
    await page.keyboard.press("Enter");
    await page.getByRole("heading", { level: 1, name: "TuneIn" }).waitFor();
    await expectEventually(async () => (await focused()) === "Local Radio", "the row in focus");
    await page.keyboard.press("Enter");
    await page.locator("button.audio").first().waitFor();

    await tabTo("Share");
    await page.keyboard.press("Tab");
    await page.keyboard.press("ArrowDown");
    const station = await page.evaluate(() => document.activeElement.querySelector(".title").textContent);
    await page.keyboard.press("Enter");
    await page.getByRole("region", { name: "Player" }).getByText("Playing").waitFor();
    assert.equal((await product.call("player.state")).title, station);

    // The row's menu, and back to where it was opened.
    await page.keyboard.press("Tab");
    assert.equal(await focused(), `More for ${station}`);
    await page.keyboard.press("Enter");
    await page.getByRole("dialog").getByRole("button", { name: /Favorites/ }).waitFor();
    await page.keyboard.press("Escape");
    await page.getByRole("dialog").waitFor({ state: "hidden" });
    assert.equal(await focused(), `More for ${station}`);

    await tabTo("Pause");
    await page.keyboard.press("Enter");
    await page.getByRole("region", { name: "Player" }).getByText("Paused").waitFor();
    await tabTo("Stop");
    await page.keyboard.press("Enter");
    await page.getByRole("region", { name: "Player" }).waitFor({ state: "detached" });

    await page.keyboard.press("/");
    await page.keyboard.type("jazz");
    await page.keyboard.press("Enter");
    await page.getByRole("heading", { level: 1, name: "Results for “jazz”" }).waitFor();
    onlyProblemsOf(page);
    await page.context().close();
});

test("never hides what has the focus behind the player", async () => {
    const page = await newPage(browser, product, { viewport: { width: 375, height: 667 } });
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=local`);
    await page.locator("button.audio").first().click();
    await page.getByRole("region", { name: "Player" }).getByText("Playing").waitFor();
    for (let i = 0; i < 12; ++i) {
        await page.keyboard.press("ArrowDown");
        const isSeen = await page.evaluate(() => {
            const row = document.activeElement.getBoundingClientRect();
            const player = document.querySelector(".player").getBoundingClientRect();
            const header = document.querySelector("header").getBoundingClientRect();
            return row.top >= header.bottom && row.bottom <= player.top;
        });
        assert.ok(isSeen, `row ${i + 1} is in sight`);
    }
    await product.call("player.stop");
    await page.context().close();
});

test("keeps what is on and off apart in a system's own colours", async () => {
    const page = await newPage(browser, product, { forcedColors: "active" });
    await page.goto(`${product.url}#host:settings`);
    // The page's own settings are there before the host's.
    const one = page.getByRole("listitem").getByRole("switch").first();
    const look = () => one.evaluate((element) => [getComputedStyle(element).backgroundColor, getComputedStyle(element, "::before").transform]);
    const before = await look();
    await one.click();
    await expectEventually(async () => (await look())[0] !== before[0] && (await look())[1] !== before[1], "the other look");
    await one.click();
    await page.getByRole("button", { name: "Link with a code" }).click();
    await page.locator(".qr").waitFor();
    const qr = await page.locator(".qr").evaluate((element) => [getComputedStyle(element).backgroundColor, getComputedStyle(element).fill]);
    assert.deepEqual(qr, ["rgb(255, 255, 255)", "rgb(0, 0, 0)"]);
    await page.getByRole("button", { name: "Cancel" }).click();
    onlyProblemsOf(page);
    await page.context().close();
});
