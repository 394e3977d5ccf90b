// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// A directory that means harm: whatever it answers is text, and stays in its place.
import assert from "node:assert/strict";
import { createHash } from "node:crypto";
import { writeFile } from "node:fs/promises";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { between, expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";

const strings = [
    "<img src=x onerror=\"window.pwned=1\">",
    "<script>window.pwned=1</script>",
    "\"><svg onload=window.pwned=1>",
    "'-window.pwned=1-'",
    "javascript:window.pwned=1//",
    "data:text/html,<script>window.pwned=1</script>",
    "</title><iframe srcdoc='<script>parent.pwned=1</script>'>",
    "{{constructor.constructor('window.pwned=1')()}}",
    "%1 %n ${window.pwned=1} \\u003cscript\\u003e",
    "\u202Eright to left\u202C \u2028\u2029 \uFFFD",
    "e\u0301\u0302\u0303\u0304".repeat(200),
    "W".repeat(5000),
    "__proto__",
    "constructor",
    " ",
];
const svg = `<svg xmlns="http://www.w3.org/2000/svg" onload="window.pwned=1"><script>window.pwned=1</script></svg>`;
const svgUrl = "http://opml.radiotime.com/hostile.png";

function answer() {
    const body = strings.flatMap((evil) => [
        { element: "outline", type: "audio", text: evil, subtext: evil, image: evil, guide_id: "s1",
          URL: "http://opml.radiotime.com/Tune.ashx?id=s29001", item: "station", genre_id: evil,
          formats: evil, now_playing_id: evil, bitrate: evil, reliability: evil },
        { element: "outline", type: "link", text: evil, image: evil, key: evil,
          URL: `http://opml.radiotime.com/Browse.ashx?c=${encodeURIComponent(evil)}` },
        { element: "outline", type: "link", text: evil, subtext: evil, URL: evil },
        { element: "outline", type: evil, text: evil, subtext: evil, image: svgUrl },
    ]);
    body.unshift({ element: "outline", type: "audio", text: strings[0], subtext: strings[1], image: svgUrl,
        guide_id: "s29001", item: "station", URL: "http://opml.radiotime.com/Tune.ashx?id=s29001" });
    return JSON.stringify({ head: { title: strings[0], status: "200" }, body });
}

let product;
let browser;

before(async () => {
    product = await Product.start();
    browser = await launch();
    const file = join(product.folder, "hostile.json");
    const picture = join(product.folder, "hostile.svg");
    await writeFile(file, answer());
    await writeFile(picture, svg);
    await product.fault(`body@Browse.ashx:${file}`, `body@/hostile.png:${picture}`);
});
after(async () => {
    await browser?.close();
    await product?.end();
});

async function checkPage(page) {
    const found = await page.evaluate(() => ({
        pwned: window.pwned,
        injected: [...document.querySelectorAll("#app script, #app iframe, #app object, #app embed, #app svg[onload], #app [onerror]")].map((e) => e.outerHTML),
        pictures: [...document.images].map((image) => image.getAttribute("src")).filter((src) => !/^\.\/artwork\/[0-9a-f]{64}$/.test(src)),
        links: [...document.querySelectorAll("a[href]")].map((a) => a.href).filter((href) => !href.startsWith(location.origin + "/")),
        wide: document.scrollingElement.scrollWidth - innerWidth,
        tall: [...document.querySelectorAll(".rows li")].filter((li) => li.scrollHeight > li.clientHeight + 1).length,
    }));
    assert.deepEqual(found, {
        pwned: undefined, injected: [], pictures: [], links: [], wide: found.wide, tall: found.tall });
    assert.ok(found.wide <= 0, `${found.wide} pixels too wide`);
}

for (const width of [1280, 375]) {
    test(`hostile texts stay texts, ${width} pixels wide`, async () => {
        const page = await newPage(browser, product, { viewport: { width, height: 700 } });
        await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=music&veskDisplayName=${encodeURIComponent(strings[0])}`);
        await page.getByRole("heading", { level: 1, name: strings[0], exact: true }).waitFor();
        await page.locator(".rows li .title", { hasText: strings[0] }).first().waitFor();
        // Through the whole list, then one step on.
        for (let end = false; !end;) {
            await checkPage(page);
            end = await page.evaluate(() => {
                const before = scrollY;
                scrollBy(0, 400);
                return scrollY === before;
            });
        }
        await page.locator("a.body").last().click();
        // There are rows again, or words about why not.
        await page.locator(".rows li .title, .blank p").first().waitFor();
        await checkPage(page);
        onlyProblemsOf(page);
        await page.context().close();
    });
}

test("what plays is text as well", async () => {
    const page = await newPage(browser, product);
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=music`);
    await page.locator("button.audio").first().click();
    const player = page.getByRole("region", { name: "Player" });
    await player.getByText("Playing").waitFor();
    assert.equal(await player.locator(".title").textContent(), strings[0]);
    await player.getByRole("button", { name: /^More for/ }).click();
    await page.getByRole("dialog").getByRole("heading", { name: strings[0] }).waitFor();
    await checkPage(page);
    await page.keyboard.press("Escape");
    await product.call("player.stop");
    onlyProblemsOf(page);
    await page.context().close();
});

test("a document is no picture, and no address of a page's choice is fetched", async () => {
    const digest = (url) => createHash("sha256").update(url).digest("hex");
    await product.call("getRows", { path: "TuneIn:browse/uri/Browse.ashx?c=music" });
    const answers = await Promise.all([
        fetch(`${product.url}artwork/${digest(svgUrl)}`),
        fetch(`${product.url}artwork/${digest("http://opml.radiotime.com/logo/s29001q.png")}`),
        fetch(`${product.url}artwork/${encodeURIComponent(svgUrl)}`),
    ]);
    assert.deepEqual(answers.map((a) => a.status), [502, 404, 404]);
    for (const answer of answers) {
        assert.match(answer.headers.get("content-type"), /^text\/plain/);
        assert.equal(answer.headers.get("x-content-type-options"), "nosniff");
    }
    const asked = (await product.requestLines()).filter((line) => line.includes("/logo/"));
    assert.deepEqual(asked, []);
});

test("a hostile language catalogue key or setting does not break the texts", async () => {
    const page = await newPage(browser, product);
    await between(page, {
        answered: ({ method, params }, { result }) => {
            if (method === "getData" && params.path === "settings:ui/language")
                result.values = result.values.map((value) => (value?.string_ ? { ...value, string_: "__proto__" } : value));
        },
    });
    await page.goto(`${product.url}#host:settings`);
    await page.getByRole("heading", { level: 1, name: "Settings" }).waitFor();
    await expectEventually(async () => (await page.locator(".rows li").count()) > 3, "the settings");
    onlyProblemsOf(page);
    await page.context().close();
});
