// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Takes the screenshots in docs/images: VESK_BUILD=../build/release node screenshots.mjs
import { mkdir } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

import { launch, newPage, Product } from "./test/page/support.mjs";

const folder = join(dirname(fileURLToPath(import.meta.url)), "../docs/images");
const desktop = { viewport: { width: 1440, height: 900 } };
const tablet = { viewport: { width: 1024, height: 768 }, colorScheme: "dark" };
const phone = { viewport: { width: 390, height: 844 }, isMobile: true, hasTouch: true };

async function play(page, url, row) {
    await page.goto(`${url}#TuneIn:`);
    await page.getByRole("link", { name: "Local Radio" }).click();
    await page.locator("button.audio").nth(row).click();
    await page.getByRole("region", { name: "Player" }).getByText("Playing").waitFor();
    await page.mouse.move(0, 0);
}

const pictures = {
    "page-desktop": [desktop, (page, url) => play(page, url, 2)],
    "page-tablet": [tablet, async (page, url) => {
        await play(page, url, 0);
        await page.getByRole("searchbox").fill("jazz");
        await page.getByRole("heading", { name: "Results for" }).waitFor();
        await page.locator("button.audio").nth(8).waitFor();
    }],
    "page-phone": [phone, async (page, url) => {
        await play(page, url, 1);
        await page.getByRole("region", { name: "Player" }).locator("button.details").click();
        await page.getByRole("dialog").getByRole("link", { name: "Choose stream" }).waitFor();
    }],
    "page-phone-dark": [{ ...phone, colorScheme: "dark" }, async (page, url) => {
        await page.goto(`${url}#host:settings`);
        await page.getByRole("button", { name: "Link with a code" }).click();
        await page.locator(".qr").waitFor();
    }],
};

await mkdir(folder, { recursive: true });
const product = await Product.start();
const browser = await launch();
try {
    for (const [name, [options, steps]] of Object.entries(pictures)) {
        const page = await newPage(browser, product, options);
        // Each begins with the player stopped, so that "Playing" is about the row that was clicked.
        await product.call("player.stop");
        await steps(page, product.url);
        await page.waitForFunction(() => [...document.images].every((image) => image.complete));
        await page.evaluate(() => document.activeElement.blur());
        await page.screenshot({ path: join(folder, `${name}.png`) });
        await page.context().close();
    }
} finally {
    await browser.close();
    await product.end();
}
