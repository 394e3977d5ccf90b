// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The page below a path, as behind a reverse proxy that serves other things as well.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";
import { Proxy } from "./proxy.mjs";

let product;
let proxy;
let browser;

before(async () => {
    product = await Product.start();
    proxy = await Proxy.start(product.url, { prefix: "/house/radio" });
    browser = await launch();
});
after(async () => {
    await browser?.close();
    await proxy?.end();
    await product?.end();
});

test("browses, plays and shows pictures, and asks for nothing beside its path", async () => {
    const page = await newPage(browser, { url: proxy.url });
    await page.goto(`${proxy.url}#TuneIn:browse/uri/Browse.ashx?c=local`);
    await page.locator("button.audio").first().click();
    const player = page.getByRole("region", { name: "Player" });
    await player.getByText("Playing").waitFor();
    await expectEventually(
        () => player.locator("img").evaluate((img) => img.complete && img.naturalWidth > 0), "a picture");
    await page.getByRole("link", { name: "Settings" }).click();
    const licenses = page.getByRole("link", { name: "Show the licenses" });
    const shown = await licenses.evaluate(async (link) => (await fetch(link.href)).status);
    assert.equal(shown, 200);
    await page.reload();
    await page.getByRole("heading", { level: 1, name: "Settings" }).waitFor();
    await page.getByRole("combobox", { name: "Language" }).selectOption({ label: "Deutsch" });
    await page.getByRole("heading", { level: 1, name: "Einstellungen" }).waitFor();
    await product.call("setData", { path: "settings:ui/language", role: "value", value: "en-US" });
    await product.call("player.stop");
    assert.deepEqual(proxy.asked.filter((line) => !line.includes(" /house/radio/")), []);
    onlyProblemsOf(page);
    await page.context().close();
});
