// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Prints time and bytes of a first and a second visit, how long a click on a row takes until the hundred rows behind it are drawn, each
// beside the bare getRows, and how long frames take while ten thousand rows are scrolled past:
// VESK_BUILD=../build/release node measure.mjs
import { writeFile } from "node:fs/promises";
import { join } from "node:path";

import { launch, newPage, Product } from "./test/page/support.mjs";

const visits = 15;
const clicks = 60;
/** Milliseconds: a frame that takes longer has missed more than one refresh of the screen. */
const smooth = 34;
/** Pixels a frame: 18,000 a second, which is faster than a flick of a finger. */
const speed = 300;
const at = (values, percent) => [...values].sort((a, b) => a - b)[Math.floor((values.length * percent) / 100)];
const median = (values) => at(values, 50);
const path = "TuneIn:browse/uri/Browse.ashx?c=local";
const roles = ["title", "description", "icon", "type", "path", "context", "value", "query", "queryPath", "disabled", "preferred"];

/** Milliseconds until the first row is drawn, and the bytes and requests of the visit. */
async function visit(page, product) {
    const devtools = await page.context().newCDPSession(page);
    await devtools.send("Network.enable");
    let bytes = 0;
    let requests = 0;
    devtools.on("Network.loadingFinished", ({ encodedDataLength }) => {
        bytes += encodedDataLength;
        requests += 1;
    });
    devtools.on("Network.webSocketFrameReceived", ({ response }) => (bytes += response.payloadData.length));
    await page.addInitScript(() => {
        new MutationObserver((_, observer) => {
            if (!document.querySelector(".rows li .title"))
                return;
            observer.disconnect();
            requestAnimationFrame(() => setTimeout(() => (window.firstRows = performance.now())));
        }).observe(document, { childList: true, subtree: true });
    });
    await page.goto(`${product.url}#${path}`);
    const time = await (await page.waitForFunction(() => window.firstRows)).jsonValue();
    await page.waitForLoadState("networkidle");
    await devtools.detach();
    return { time, bytes, requests };
}

async function getRows(product, where) {
    const start = performance.now();
    const answer = await fetch(product.url + "jsonrpc", {
        method: "POST",
        headers: { "Content-Type": "application/json" },
        body: JSON.stringify({ jsonrpc: "2.0", id: 1, method: "getRows", params: { path: where, roles, first: 0, last: 99 } }),
    });
    const bytes = (await answer.arrayBuffer()).byteLength;
    return { time: performance.now() - start, bytes, requests: 1 };
}

/** Has the directory answer everything with so many rows, which lead to others like them. */
async function serve(product, count) {
    // The plug-in reads a megabyte at most.
    const row = (i) => ({ element: "outline", type: "link", text: `${count}: ${i}`, URL: `http://x/Browse.ashx?id=${i}` });
    const file = join(product.folder, `${count}.json`);
    await writeFile(file, JSON.stringify({ head: { status: "200" }, body: Array.from({ length: count }, (_, i) => row(i)) }));
    await product.noFaults();
    await product.fault(`body@Browse.ashx:${file}`);
}

/** Milliseconds from a click on each of some rows until the first of those behind it is drawn. */
function clickThrough(page) {
    return page.evaluate(async (many) => {
        const drawn = () => new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
        const times = [];
        for (let i = 0; i < many; ++i) {
            const before = location.href;
            const rows = [...document.querySelectorAll(".rows li [data-main]")];
            const start = performance.now();
            const old = rows[0];
            rows[i % 5].click();
            await new Promise((done) => {
                const observer = new MutationObserver(() => {
                    const first = document.querySelector(".rows li [data-main]");
                    if (!first || first === old || location.href === before)
                        return;
                    observer.disconnect();
                    done();
                });
                observer.observe(document, { childList: true, subtree: true, characterData: true });
            });
            await drawn();
            times.push(performance.now() - start);
            // What is done after the drawing is not to count for the next click, which takes a hand longer.
            await new Promise((later) => setTimeout(later, 150));
        }
        return times;
    }, clicks);
}

/** Milliseconds of each frame while the page is scrolled to its end. */
function scrollThrough(page) {
    return page.evaluate(async (pixels) => {
        const frame = () => new Promise((done) => requestAnimationFrame(done));
        const frames = [];
        let before = await frame();
        for (let y = 0; y < document.scrollingElement.scrollHeight - innerHeight; y += pixels) {
            scrollTo(0, y);
            const now = await frame();
            frames.push(now - before);
            before = now;
        }
        return frames;
    }, speed);
}

async function measurePage(product, browser) {
    const page = await newPage(browser, product);
    await serve(product, 100);
    await page.goto(`${product.url}#${path}`);
    await page.locator(`.rows li[data-row="0"] .title`).waitFor();
    const bare = [];
    for (let i = 0; i < clicks; ++i)
        bare.push((await getRows(product, `TuneIn:browse/uri/Browse.ashx?id=${i % 5}`)).time);
    const times = await clickThrough(page);
    console.log(`click to 100 rows drawn: p50 ${median(times).toFixed(1)} ms, p95 ${at(times, 95).toFixed(1)} ms; `
        + `the bare getRows: p50 ${median(bare).toFixed(1)} ms, p95 ${at(bare, 95).toFixed(1)} ms`);
    await page.context().close();

    const long = await newPage(browser, product);
    await serve(product, 10_000);
    await long.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=long`);
    await long.getByText("10000 entries").waitFor();
    const frames = await scrollThrough(long);
    console.log(`10,000 rows scrolled past in ${frames.length} frames: p50 ${median(frames).toFixed(1)} ms, `
        + `longest ${Math.max(...frames).toFixed(1)} ms, ${frames.filter((time) => time > smooth).length} over ${smooth} ms`);
    await long.context().close();
}

function print(what, results) {
    const of = (name) => median(results.map((result) => result[name]));
    console.log(`${what.padEnd(28)} ${of("time").toFixed(1).padStart(8)} ms ${String(of("bytes")).padStart(9)} bytes ${String(of("requests")).padStart(4)} requests`);
}

const product = await Product.start();
const browser = await launch();
try {
    const bare = [];
    for (let i = 0; i < visits; ++i)
        bare.push(await getRows(product, path));
    print("getRows alone", bare);
    const [first, second] = [[], []];
    for (let i = 0; i < visits; ++i) {
        const page = await newPage(browser, product);
        first.push(await visit(page, product));
        const again = await page.context().newPage();
        second.push(await visit(again, product));
        await page.context().close();
    }
    print("first visit, to first rows", first);
    print("second visit, to first rows", second);
    await measurePage(product, browser);
} finally {
    await browser.close();
    await product.end();
}
