// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Pages of another origin, which a listener's browser may show beside this one: whatever they try, no
// favorite is changed and nothing is reported.
import assert from "node:assert/strict";
import { createServer } from "node:http";
import { after, before, test } from "node:test";

import { expectEventually, launch, Product } from "./support.mjs";

const add = "TuneIn:browse/uri/Preset.ashx?c=add&id=s29001";
const harmful = [
    add,
    "TuneIn:browse/uri/preset.ASHX?c=add&id=s29001",
    "TuneIn:browse/uri/%50reset.ashx?c=add&id=s29001",
    "TuneIn:browse/uri/Pre/uriset.ashx?c=add&id=s29001",
    "TuneIn:browse/uri/x/../Preset.ashx?c=add&id=s29001",
    "TuneIn:browse?veskTuneInMethod=wizard&guideId=s29001",
];
const call = (method, params) => JSON.stringify({ jsonrpc: "2.0", id: 1, method, params });

let product;
let browser;
let foreign;
let origin;

/** Bodies of the foreign pages by their paths. */
const pages = new Map();

before(async () => {
    product = await Product.start();
    browser = await launch();
    foreign = createServer((request, response) => {
        response.setHeader("Content-Type", "text/html; charset=utf-8");
        response.end(`<!doctype html><title>Elsewhere</title>${pages.get(request.url) ?? ""}`);
    });
    await new Promise((listening) => foreign.listen(0, "127.0.0.1", listening));
    // The same machine by another name: another site, and another origin.
    origin = `http://localhost:${foreign.address().port}`;
});
after(async () => {
    await browser?.close();
    foreign?.close();
    await product?.end();
});

/** A page of the other origin with this body. */
async function visit(context, body) {
    const path = `/${pages.size}`;
    pages.set(path, body);
    const page = await context.newPage();
    await page.goto(origin + path);
    return page;
}

async function favorites() {
    const { rows } = await product.call("getRows", {
        path: "TuneIn:browse/uri/Browse.ashx?c=presets", roles: ["title"] });
    return rows.map(([title]) => title);
}

const changes = async () => (await product.requestLines())
    .filter((line) => /preset\.ashx|report\.ashx|account\.ashx/i.test(line));

/** What the host's page shows in place of the screen. */
const refusal = /chang\w* something/;
const shownText = (page) => page.locator("body").innerText();

async function attempt(name, body) {
    const context = await browser.newContext();
    const before = await favorites();
    try {
        await body(context);
        assert.deepEqual(await changes(), [], name);
        assert.deepEqual(await favorites(), before, name);
    } finally {
        await context.close();
    }
}

const link = (path) => `${product.url}#${path}`;
const escaped = (text) => text.replaceAll("&", "&amp;").replaceAll('"', "&quot;");

test("a link is refused, in words, however it is written", () => attempt("a link", async (context) => {
    for (const path of harmful) {
        const page = await visit(context, `<a href="${escaped(link(path))}">Free radio!</a>`);
        await page.getByText("Free radio!").click();
        await page.waitForURL((url) => url.origin === new URL(product.url).origin);
        await expectEventually(async () => refusal.test(await shownText(page)), "the refusal");
        await page.close();
    }
}));

test("so is the next one, after a list that would have offered it", () => attempt("two links", async (context) => {
    const [, wizard] = (await product.call("getRows", {
        path: "TuneIn:player_context?guideId=s29001", roles: ["path"] })).rows.flat().filter((path) => path?.includes("Method"));
    const page = await visit(context, `<a href="${escaped(link("TuneIn:player_context?guideId=s29001"))}">Menu</a>`);
    await page.getByText("Menu").click();
    await expectEventually(async () => (await shownText(page)).includes("Report a problem"), "the menu");
    const next = await visit(context, `<a href="${escaped(link(wizard))}">Report</a>`);
    await next.getByText("Report").click();
    await expectEventually(async () => refusal.test(await shownText(next)), "the refusal");
}));

test("a window that another page opens is refused as well, and cannot be led on", () => attempt("window.open", async (context) => {
    const page = await visit(context, "");
    const opened = context.waitForEvent("page");
    await page.evaluate((url) => { window.other = window.open(url, "radio"); }, link(add));
    const popup = await opened;
    await expectEventually(async () => refusal.test(await shownText(popup)), "the refusal");
    // The page keeps to itself: the one that opened it has no hold of it any more.
    const hold = await page.evaluate(() => window.other.closed);
    assert.equal(hold, true);
}));

test("a frame stays empty", () => attempt("a frame", async (context) => {
    const page = await visit(context, "");
    const sockets = [];
    page.on("websocket", (socket) => sockets.push(socket.url()));
    const answer = page.waitForResponse(product.url);
    await page.evaluate((url) => new Promise((loaded) => {
        const frame = document.createElement("iframe");
        frame.onload = loaded;
        frame.src = url;
        document.body.append(frame);
    }), link(add));
    // The page would have begun with a socket to the host.
    assert.match((await answer).headers()["content-security-policy"], /frame-ancestors 'none'/);
    assert.deepEqual(sockets, []);
    assert.equal(page.frames().length, 2);
    assert.ok(!page.frames().some((frame) => frame.url().startsWith(product.url)));
}));

test("forms, requests and sockets of another origin are not heard", () => attempt("requests", async (context) => {
    const enabled = { path: "settings:tunein/enabledFixItWizard", role: "value", value: false };
    const page = await visit(context, `
        <form method="post" enctype="text/plain" action="${product.url}jsonrpc" target="out">
            <input name='${call("setData", enabled).slice(0, -1)},"x":"' value='"}'></form>
        <iframe name="out"></iframe>`);
    const answered = page.waitForEvent("response", (response) => response.url().endsWith("/jsonrpc"));
    await page.evaluate(() => document.forms[0].submit());
    assert.equal((await answered).status(), 403);

    const heard = await page.evaluate(async ({ url, bodies }) => {
        const outcomes = {};
        const send = (name, options) => fetch(`${url}jsonrpc`, { method: "POST", ...options })
            .then((response) => { outcomes[name] = response.type; }, () => { outcomes[name] = "failed"; });
        for (const [at, body] of bodies.entries()) {
            await send(`no-cors ${at}`, { body, mode: "no-cors" });
            await send(`json ${at}`, { body, headers: { "Content-Type": "application/json" } });
            await send(`blob ${at}`, { body: new Blob([body], { type: "application/json" }), mode: "no-cors" });
            outcomes[`beacon ${at}`] = navigator.sendBeacon(`${url}jsonrpc`, body);
        }
        outcomes.socket = await new Promise((done) => {
            const socket = new WebSocket(`${url.replace("http", "ws")}ws`);
            socket.onopen = () => {
                for (const body of bodies)
                    socket.send(body);
                done("open");
            };
            socket.onerror = () => done("failed");
        });
        return outcomes;
    }, { url: product.url, bodies: [call("getRows", { path: add }), call("setData", enabled),
        call("player.play", { screen: "TuneIn:browse/uri/Search.ashx?query=jazz", row: 0 })] });
    assert.equal(heard.socket, "failed");
    for (const at of [0, 1, 2])
        assert.equal(heard[`json ${at}`], "failed");
    assert.equal((await product.call("player.state", {})).state, 0);
    const { values } = await product.call("getData", { path: enabled.path, roles: ["value"] });
    assert.equal(values[0].bool_, true);
}));

test("what the listener clicks works all the same", async () => {
    const context = await browser.newContext();
    const page = await context.newPage();
    await page.goto(`${product.url}#TuneIn:player_context?guideId=s29001&veskMatchingPath=${
        encodeURIComponent("TuneIn:browse?veskGuideId=s29001")}`);
    await page.getByText("Report a problem").click();
    await page.getByText("There is no sound").click();
    await page.getByText("Thank you. We will look into it.").waitFor();
    assert.equal((await changes()).length, 2);
    await context.close();
});
