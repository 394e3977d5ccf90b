// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The page as an app of its own: what installs it, what it has while its host is away, and how it becomes a new build.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";
import { Proxy } from "./proxy.mjs";

const local = "TuneIn:browse/uri/Browse.ashx?c=local";

let product;
let proxy;
let browser;
/** What the proxy answers in the host's place: body and type by path. */
const replaced = new Map();

before(async () => {
    product = await Product.start();
    proxy = await Proxy.start(product.url, {
        prefix: "/radio",
        answer: (_request, response, path) => {
            const { type, body } = replaced.get(path) ?? {};
            if (body === undefined)
                return false;
            response.writeHead(200, { "Content-Type": type, "Cache-Control": "no-cache" }).end(body);
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

/** The page, once its service worker has taken it over. */
async function openInstalled() {
    const page = await newPage(browser, { url: proxy.url });
    await page.goto(proxy.url);
    await page.evaluate(async () => {
        await navigator.serviceWorker.ready;
        if (!navigator.serviceWorker.controller)
            await new Promise((taken) => navigator.serviceWorker.addEventListener("controllerchange", taken, { once: true }));
    });
    return page;
}

const kept = (page) => page.evaluate(async () => {
    const names = await caches.keys();
    const requests = await Promise.all(names.map(async (name) => (await caches.open(name)).keys()));
    return { names, urls: requests.flat().map(({ url }) => url) };
});
const isLost = (page) => page.evaluate(() => document.documentElement.classList.contains("is-lost"));
const scriptOf = (page) => page.evaluate(() => document.querySelector("script[type=module]").getAttribute("src"));

test("is what browsers install", async () => {
    const page = await openInstalled();
    const devtools = await page.context().newCDPSession(page);
    const { installabilityErrors } = await devtools.send("Page.getInstallabilityErrors");
    // The tests' windows are like private ones, in which nothing is installed.
    assert.deepEqual(installabilityErrors.map(({ errorId }) => errorId).filter((id) => id !== "in-incognito"), []);
    const { url, data, errors } = await devtools.send("Page.getAppManifest");
    assert.equal(url, `${proxy.url}vesk.webmanifest`);
    assert.deepEqual(errors, []);
    const manifest = JSON.parse(data);
    assert.equal(new URL(manifest.start_url, url).href, proxy.url);
    assert.equal(new URL(manifest.scope, url).href, proxy.url);
    const pictures = manifest.icons.filter((icon) => icon.type === "image/png");
    assert.deepEqual(pictures.map(({ sizes, purpose }) => `${sizes} ${purpose ?? "any"}`), ["192x192 any", "512x512 any", "512x512 maskable"]);
    for (const { src, sizes } of pictures) {
        const answer = await fetch(new URL(src, url));
        const bytes = Buffer.from(await answer.arrayBuffer());
        assert.equal(answer.headers.get("content-type"), "image/png");
        assert.equal(`${bytes.readUInt32BE(16)}x${bytes.readUInt32BE(20)}`, sizes);
        const drawn = await page.evaluate(async (picture) => {
            const image = new Image();
            image.src = picture;
            await image.decode();
            return image.naturalWidth;
        }, new URL(src, url).href);
        assert.equal(`${drawn}x${drawn}`, sizes);
    }
    onlyProblemsOf(page);
    await page.context().close();
});

test("keeps its shell and nothing that the host says", async () => {
    const page = await openInstalled();
    await page.goto(`${proxy.url}#${local}`);
    await page.locator("button.audio").first().click();
    const player = page.getByRole("region", { name: "Player" });
    await expectEventually(() => player.locator("img").evaluate((img) => img.complete && img.naturalWidth > 0), "a picture");
    await page.goto(`${proxy.url}pair`);
    await page.getByRole("button", { name: "Pair" }).waitFor();
    const { names, urls } = await kept(page);
    assert.equal(names.length, 1);
    assert.ok(names[0].startsWith(`vesk ${proxy.url} `));
    const shell = /^$|^assets\/[\w-]+\.(js|css)$|^favicon\.svg$|^icon-[\w-]+\.png$|^vesk\.webmanifest$/;
    assert.ok(urls.length > 8);
    for (const url of urls)
        assert.match(url.slice(proxy.url.length), shell);
    await product.call("player.stop");
    await page.context().close();
});

test("opens while the host is away, without rows, and has them when it is back", async () => {
    const page = await openInstalled();
    await page.goto(`${proxy.url}#${local}`);
    await page.locator("button.audio").first().waitFor();
    proxy.isUp = false;
    proxy.breakOff();
    await page.reload();
    await page.getByText("The connection to the host is lost. Trying again …").waitFor();
    await page.getByText("This is shown once the host can be reached again.").waitFor();
    assert.equal(await page.locator("button.audio").count(), 0);
    // The pairing page is never one that was kept.
    const other = await page.context().newPage();
    await assert.rejects(other.goto(`${proxy.url}pair`));
    await other.close();
    proxy.isUp = true;
    await page.locator("button.audio").first().waitFor();
    assert.equal(await isLost(page), false);
    await page.context().close();
});

test("shows the host's page, not one that was kept, and becomes a new build at once", async () => {
    const page = await openInstalled();
    const old = await scriptOf(page);
    const [html, script, worker] = await Promise.all(["", old, "worker.js"].map(
        async (name) => (await fetch(product.url + name)).text()));
    const name = "assets/main-NEWBUILD.js";
    const worked = await kept(page);
    replaced.set("/", { type: "text/html", body: html.replace(old, name) });
    replaced.set(`/${name}`, { type: "text/javascript", body: script });
    const build = worked.names[0].split(" ").pop();
    replaced.set("/worker.js", { type: "text/javascript", body: worker.replaceAll(old, name).replaceAll(build, "newbuild") });

    // A page that stood open learns of it when the host is back.
    proxy.breakOff();
    await expectEventually(async () => (await scriptOf(page).catch(() => "")) === name, "the new build");
    await page.getByRole("heading", { level: 1, name: "TuneIn" }).waitFor();
    // What was kept of the old one goes.
    await expectEventually(async () => (await kept(page)).names.join() === `vesk ${proxy.url} newbuild`, "the new shell alone");
    assert.ok((await kept(page)).urls.includes(proxy.url + name));
    assert.ok(!(await kept(page)).urls.includes(proxy.url + old));

    // And a page that is opened is always the host's.
    replaced.clear();
    await page.goto(`${proxy.url}?again`);
    await page.goto(proxy.url);
    assert.equal(await scriptOf(page), old);
    await page.context().close();
});

test("a page that keeps coming back old is reloaded once", async () => {
    const page = await newPage(browser, { url: proxy.url }, { serviceWorkers: "block" });
    const html = await (await fetch(product.url)).text();
    await page.goto(proxy.url);
    await page.locator(".rows li [data-main]").first().waitFor();
    let loads = 0;
    page.on("load", () => ++loads);
    // Scripts are told another document than the window is shown.
    await page.route(proxy.url, (route) => (route.request().isNavigationRequest()
        ? route.continue()
        : route.fulfill({ contentType: "text/html", body: html.replace(/main-[^"]*\.js/, "main-OTHER.js") })));
    for (let i = 0; i < 3; ++i) {
        const looked = page.waitForRequest((request) => request.url() === proxy.url && !request.isNavigationRequest());
        // The reload has happened before the connection breaks off again.
        const loaded = i === 0 ? page.waitForEvent("load") : null;
        proxy.breakOff();
        await looked;
        await loaded;
        await expectEventually(async () => (await isLost(page).catch(() => true)) === false, "the host again");
        await page.locator(".rows li [data-main]").first().waitFor();
    }
    assert.equal(loads, 1);
    await page.context().close();
});
