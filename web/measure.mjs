// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Prints time and bytes of a first and a second visit, and of the bare getRows for comparison:
// VESK_BUILD=../build/release node measure.mjs
import { launch, newPage, Product } from "./test/page/support.mjs";

const visits = 15;
const median = (values) => [...values].sort((a, b) => a - b)[Math.floor(values.length / 2)];
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

function print(what, results) {
    const of = (name) => median(results.map((result) => result[name]));
    console.log(`${what.padEnd(28)} ${of("time").toFixed(1).padStart(8)} ms ${String(of("bytes")).padStart(9)} bytes ${String(of("requests")).padStart(4)} requests`);
}

const product = await Product.start();
const browser = await launch();
try {
    const bare = [];
    for (let i = 0; i < visits; ++i) {
        const start = performance.now();
        const answer = await fetch(product.url + "jsonrpc", {
            method: "POST",
            headers: { "Content-Type": "application/json" },
            body: JSON.stringify({ jsonrpc: "2.0", id: 1, method: "getRows", params: { path, roles } }),
        });
        const bytes = (await answer.arrayBuffer()).byteLength;
        bare.push({ time: performance.now() - start, bytes, requests: 1 });
    }
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
} finally {
    await browser.close();
    await product.end();
}
