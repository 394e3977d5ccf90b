// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// The page in Firefox: what is most used, and what browsers do differently. It lies below a path, behind a proxy.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { expectEventually, Product } from "./support.mjs";
import { Firefox } from "./firefox.mjs";
import { Proxy } from "./proxy.mjs";

let product;
let proxy;
let firefox;
/** Answers to POST pair, in their order: status and body. */
const answers = [];

before(async () => {
    product = await Product.start();
    proxy = await Proxy.start(product.url, {
        prefix: "/radio",
        answer: (request, response, path) => {
            if (path !== "/pair" || request.method !== "POST")
                return false;
            const [status, answer] = answers.shift();
            request.resume();
            response.writeHead(status, { "Content-Type": "application/json" }).end(JSON.stringify(answer));
            return true;
        },
    });
    firefox = await Firefox.start();
});
after(async () => {
    await firefox?.end();
    await proxy?.end();
    await product?.end();
});

const heading = (title) => firefox.find("h1", title);

test("loads, browses and goes back", async () => {
    await firefox.goto(proxy.url);
    await heading("TuneIn");
    for (const name of ["By Location", "Europe", "Germany"]) {
        await firefox.click("a.body", name);
        await heading(name);
    }
    await firefox.click("button.back");
    await heading("Europe");
    await firefox.reload();
    await heading("Europe");
});

test("searches", async () => {
    await firefox.type("header input[type=search]", "jazz");
    await heading("Results for “jazz”");
    await firefox.find("button.audio");
});

test("plays, shows the picture, and tells the lock screen", async () => {
    // Another fragment alone would leave the old rows there until the page is loaded anew.
    await firefox.goto("about:blank");
    await firefox.goto(`${proxy.url}#TuneIn:browse/uri/Browse.ashx?c=local`);
    await firefox.click("button.audio");
    await firefox.find(".player .state", "Playing");
    await expectEventually(() => firefox.evaluate(() => {
        const picture = document.querySelector(".player img");
        return picture !== null && picture.complete && picture.naturalWidth > 0;
    }), "a picture");
    const { title } = await product.call("player.state");
    await expectEventually(() => firefox.evaluate((station) => {
        const { metadata, playbackState } = navigator.mediaSession;
        return playbackState === "playing" && metadata?.artist === station && metadata.artwork.length === 1;
    }, title), "the station on the lock screen");
});

test("has a quiet view, which a key enters and leaves", async () => {
    await firefox.press("q");
    await firefox.find(".quiet-view time");
    await firefox.find(".quiet-station", (await product.call("player.state")).title);
    await firefox.press("Escape");
    await firefox.find("button.audio");
    assert.ok([1, 2].includes((await product.call("player.state")).state), "plays, or reads on for a moment");
    await product.call("player.stop");
});

test("pairs", async () => {
    await firefox.goto("about:blank");
    await firefox.goto(`${proxy.url}pair#123456`);
    await heading("Pair this device");
    assert.equal(await firefox.url(), `${proxy.url}pair`);
    assert.deepEqual(await firefox.evaluate(() => [...document.querySelectorAll("input")].map((field) => field.value)), ["123456", "Firefox, Linux"]);
    answers.push([403, { error: "wrongCode", left: 4 }], [200, { device: { id: "1", name: "Firefox, Linux", role: "listener" } }]);
    await firefox.click("button", "Pair");
    await firefox.find("[role=alert]", "This is not the code. 4 attempts are left.");
    await firefox.type("input[name=code]", "654 321");
    assert.equal(await firefox.evaluate(() => document.querySelector("input[name=code]").value), "654321");
    await firefox.click("button", "Pair");
    await heading("TuneIn");
    assert.equal((await firefox.url()).replace(/#.*/, ""), proxy.url);
});

test("opens while the host is away, and has its rows when it is back", async () => {
    await expectEventually(() => firefox.evaluate(() => navigator.serviceWorker.controller !== null), "a service worker");
    proxy.isUp = false;
    proxy.breakOff();
    // The driver's own reload goes past service workers.
    await firefox.goto("about:blank");
    await firefox.goto(proxy.url);
    await firefox.find(".lost p", "The connection to the host is lost.");
    proxy.isUp = true;
    await firefox.find("a.body", "By Location");
});

test("logged no error", async () => {
    const { origin } = new URL(proxy.url);
    // What the host's absence makes browsers say is no error of the page.
    const isOwn = (error) => !/can.t establish a connection|was interrupted while|ServiceWorker/.test(error);
    assert.deepEqual((await firefox.errors(origin)).filter(isOwn), []);
    // One would have been seen.
    await firefox.evaluate(() => {
        const image = new Image();
        image.src = "data:image/png;base64,AAAA";
    });
    await expectEventually(async () => (await firefox.errors(origin)).some((error) => /Content.Security.Policy/.test(error)), "the policy's objection");
});
