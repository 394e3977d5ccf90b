// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// More than one service, of which the page knows nothing beforehand.
import assert from "node:assert/strict";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { build, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

let product;
let browser;
let page;

before(async () => {
    const plugin = (name) => ["--plugin", join(build, `tests/host/plugins/libvesk_cb_${name}.so`)];
    product = await Product.start({ hostArgs: [...plugin("good_too"), ...plugin("noentry")] });
    browser = await launch();
    page = await newPage(browser, product);
});
after(async () => {
    await browser?.close();
    await product?.end();
});

const heading = (name) => page.getByRole("heading", { level: 1, name, exact: true }).waitFor();

test("begins with the services, and says which of them are not there", async () => {
    await page.goto(product.url);
    await heading("Services");
    await page.getByRole("link", { name: "TuneIn", exact: true }).waitFor();
    await page.getByRole("link", { name: "Good plug-in" }).waitFor();
    const broken = page.locator(".unavailable", { hasText: "libvesk_cb_noentry.so could not be loaded" });
    await broken.getByText("Unavailable").waitFor();
});

test("browses another service like the first", async () => {
    await page.getByRole("link", { name: "Good plug-in" }).click();
    await heading("Good plug-in");
    await page.getByRole("heading", { level: 2, name: "Made by the plug-in" }).waitFor();
    const crumbs = page.getByRole("navigation", { name: "You are here" }).getByRole("link");
    assert.deepEqual(await crumbs.allTextContents(), ["Services"]);
});

test("searches all services, or one", async () => {
    const where = page.getByRole("combobox", { name: "Where to search" });
    assert.equal(await where.evaluate((select) => select.selectedOptions[0].text), "All services");
    await where.selectOption({ label: "Good plug-in" });
    await page.getByRole("searchbox").fill("a b");
    await page.getByRole("searchbox").press("Enter");
    await heading("Results for “a b”");
    assert.equal(new URL(page.url()).hash, "#Good:found?q=a%20b");
    await where.selectOption({ label: "TuneIn" });
    await page.getByRole("searchbox").fill("jazz");
    await page.getByRole("searchbox").press("Enter");
    await heading("Results for “jazz”");
    await page.getByRole("button", { name: /Hafenlicht Jazz/ }).first().waitFor();
});

test("shows accounts of those services only that have some", async () => {
    await page.getByRole("link", { name: "Settings" }).click();
    await page.getByRole("region", { name: "TuneIn account" }).waitFor();
    assert.equal(await page.locator(".account").count(), 1);
    onlyProblemsOf(page);
});
