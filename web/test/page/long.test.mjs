// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// A list of ten thousand rows.
import assert from "node:assert/strict";
import { writeFile } from "node:fs/promises";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

const count = 10_000;
const maxElements = 1200;
const maxGrowth = 16 * 1024 * 1024;
const path = "TuneIn:browse/uri/Browse.ashx?c=long";

let product;
let browser;

before(async () => {
    product = await Product.start();
    browser = await launch();
    // The plug-in reads a megabyte at most.
    const row = (i) => ({ element: "outline", type: "link", text: `Row ${i}`, URL: `http://x/Browse.ashx?id=${i}` });
    const file = join(product.folder, "long.json");
    await writeFile(file, JSON.stringify({ head: { status: "200" }, body: Array.from({ length: count }, (_, i) => row(i)) }));
    await product.fault(`body@Browse.ashx:${file}`);
});
after(async () => {
    await browser?.close();
    await product?.end();
});

const title = (page, index) => page.locator(`.rows li[data-row="${index}"] .title`);

test("a list of ten thousand rows scrolls to its end, with few elements and little memory", async () => {
    const page = await newPage(browser, product);
    const devtools = await page.context().newCDPSession(page);
    const heap = async () => {
        await devtools.send("HeapProfiler.collectGarbage");
        return (await devtools.send("Runtime.getHeapUsage")).usedSize;
    };
    await page.goto(`${product.url}#${path}`);
    await title(page, 0).waitFor();
    await page.getByText(`${count} entries`).waitFor();
    const before = await heap();

    let elements = 0;
    const height = await page.evaluate(() => document.scrollingElement.scrollHeight);
    for (let y = 0; y < height; y += 40_000) {
        await page.evaluate((to) => scrollTo(0, to), y);
        // Rows are there for the place, not for all that was passed.
        await page.waitForFunction(() => {
            const rows = [...document.querySelectorAll(".rows li")].filter((li) => {
                const { top, bottom } = li.getBoundingClientRect();
                return bottom > 0 && top < innerHeight;
            });
            return rows.length > 5 && rows.every((li) => li.querySelector(".title")?.textContent === `Row ${li.dataset.row}`);
        });
        elements = Math.max(elements, await page.evaluate(() => document.querySelectorAll("*").length));
    }
    await page.evaluate(() => scrollTo(0, document.scrollingElement.scrollHeight));
    await title(page, count - 1).waitFor();
    assert.equal(await title(page, count - 1).textContent(), `Row ${count - 1}`);
    assert.ok(elements < maxElements, `${elements} elements`);
    const growth = (await heap()) - before;
    assert.ok(growth < maxGrowth, `${growth} bytes more`);
    onlyProblemsOf(page);
    await page.context().close();
});

test("the end is one key away, and the way back leads to the same place", async () => {
    const page = await newPage(browser, product);
    await page.goto(`${product.url}#${path}`);
    await title(page, 0).waitFor();
    await page.locator(".rows [data-main]").first().focus();
    await page.keyboard.press("End");
    await title(page, count - 1).waitFor();
    await expectEventually(
        () => page.evaluate((last) => document.activeElement.closest("li")?.dataset.row === last, String(count - 1)),
        "the last row in focus");
    const scrolled = await page.evaluate(() => scrollY);
    await page.keyboard.press("Enter");
    await title(page, 0).waitFor();
    await page.goBack();
    await title(page, count - 1).waitFor();
    await expectEventually(
        async () => Math.abs((await page.evaluate(() => scrollY)) - scrolled) < 200, "the old place");
    onlyProblemsOf(page);
    await page.context().close();
});

test("tells a screen reader how long the list is", async () => {
    const page = await newPage(browser, product);
    await page.goto(`${product.url}#${path}`);
    const row = page.locator('.rows li[data-row="3"]');
    await row.waitFor();
    assert.equal(await row.getAttribute("aria-setsize"), String(count));
    assert.equal(await row.getAttribute("aria-posinset"), "4");
    await page.context().close();
});
