// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Devices and roles, before a host whose answers about them are scripted.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import axe from "axe-core";

import { between, checkTargets, expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";
import { Proxy } from "./proxy.mjs";

const urls = ["https://192.168.1.5:8765/", "https://radio.local:8765/"];
const fingerprint = Array.from({ length: 32 }, (_, i) => (i * 7 + 16).toString(16).toUpperCase()).join(":");

let product;
let proxy;
let browser;
let isForgotten = false;

before(async () => {
    product = await Product.start();
    proxy = await Proxy.start(product.url, {
        answer: (request, response, path) => {
            if (path !== "/" || !isForgotten)
                return false;
            response.writeHead(303, { Location: "pair" }).end();
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

/** A page whose host has devices: `house.devices` are what it lists, `house.calls` what it was asked. */
async function openHouse({ role = "owner", options = {} } = {}) {
    const page = await newPage(browser, product, options);
    const house = {
        role, calls: [], refusal: null,
        devices: [
            { id: "a", name: "Kitchen tablet", role: "listener", paired: "2026-11-20T08:00:00Z", seen: "2026-11-22T11:30:00Z", address: "192.168.1.17", connected: true, current: false },
            { id: "b", name: "<b>Phone</b> of somebody with a name that is rather long", role: "owner", paired: "2026-11-21T08:00:00Z", seen: null, address: null, connected: false, current: true },
        ],
        state: { state: "closed", seconds: 0, device: null },
    };
    const find = (id) => house.devices.find((device) => device.id === id);
    const methods = {
        "access.info": () => ({ role: house.role, device: null, urls, fingerprint }),
        "devices.list": () => ({ devices: house.devices }),
        "pairing.state": () => house.state,
        "pairing.start": ({ role: wanted }) => {
            house.state = { state: "open", seconds: 120, device: null };
            return { code: "012345", role: wanted, seconds: 120, urls, fingerprint };
        },
        "pairing.stop": () => ((house.state = { state: "closed", seconds: 0, device: null }), {}),
        "devices.rename": ({ id, name }) => ((find(id).name = name), {}),
        "devices.setRole": ({ id, role: wanted }) => ((find(id).role = wanted), {}),
        "devices.revoke": ({ id }) => ((house.devices = house.devices.filter((device) => device.id !== id)), {}),
    };
    await between(page, {
        call: ({ method, params }, answer) => {
            if (!methods[method])
                return false;
            house.calls.push([method, params]);
            if (house.refusal && method !== "access.info")
                answer({ error: house.refusal });
            else
                answer({ result: methods[method](params) });
            if (/^devices\.(rename|setRole|revoke)$/.test(method) && !house.refusal)
                page.tell({ method: "devices.changed", params: {} });
            return true;
        },
    });
    house.tellPairing = (state, seconds = 0, device = null) => {
        house.state = { state, seconds, device };
        page.tell({ method: "pairing.changed", params: house.state });
    };
    return { page, house };
}

const card = (page, name) => page.getByRole("listitem").filter({ hasText: name });

test("an owner finds the devices in the settings", async () => {
    const { page } = await openHouse();
    await page.goto(`${product.url}#host:settings`);
    await page.getByRole("link", { name: "Show the devices" }).click();
    await page.getByRole("heading", { level: 1, name: "Devices" }).waitFor();
    assert.match(await page.title(), /^Devices – /);
    await card(page, "Kitchen tablet").getByText(/^Listener · connected · 192\.168\.1\.17$/).waitFor();
    await card(page, "<b>Phone</b>").getByText("This device").waitFor();
    await page.getByRole("navigation", { name: "You are here" }).getByRole("link", { name: "Settings" }).click();
    await page.getByRole("heading", { level: 1, name: "Settings" }).waitFor();
    onlyProblemsOf(page);
    await page.context().close();
});

test("pairs a device: code, QR code, address, fingerprint, and what became of it", async () => {
    const { page, house } = await openHouse();
    // However long this takes, the pairing is the same one, with as many seconds left.
    await page.clock.setFixedTime(new Date());
    await page.goto(`${product.url}#page:devices`);
    const pairing = page.getByRole("region", { name: "Pair a device" });
    await pairing.getByRole("combobox").selectOption("owner");
    await pairing.getByRole("button", { name: "Show a code" }).click();
    await pairing.getByText("012345").waitFor();
    assert.deepEqual(house.calls.find(([method]) => method === "pairing.start")[1], { role: "owner" });
    await pairing.getByText("It may then do everything.").waitFor();
    for (const text of [...urls, fingerprint])
        await pairing.getByText(text).waitFor();
    await pairing.getByRole("img", { name: /^QR code/ }).waitFor();
    await pairing.getByText(/^1[12]\d seconds left$/).waitFor();
    // The host's own word for the same pairing does not take the code away.
    house.tellPairing("open", 119);
    page.tell({ method: "devices.changed", params: {} });
    await pairing.getByText("012345").waitFor();
    house.tellPairing("paired", 0, { id: "c", name: "Wall" });
    await pairing.getByText("Wall is paired.").waitFor();
    await pairing.getByText("012345").waitFor({ state: "detached" });
    for (const [state, words] of [["failed", "The code was entered wrongly too often"], ["expired", "The two minutes are over"]]) {
        await pairing.getByRole("button", { name: "Show a code" }).click();
        await pairing.getByText("012345").waitFor();
        house.tellPairing(state);
        await pairing.getByText(words).waitFor();
    }
    await pairing.getByRole("button", { name: "Show a code" }).click();
    await pairing.getByRole("button", { name: "Cancel" }).click();
    await pairing.getByText("012345").waitFor({ state: "detached" });
    assert.equal(house.calls.filter(([method]) => method === "pairing.stop").length, 1);
    // One that somebody else began has no code here.
    house.tellPairing("open", 60);
    await pairing.getByText("A pairing that was started elsewhere is under way.").waitFor();
    await pairing.getByRole("button", { name: "Stop the pairing" }).click();
    onlyProblemsOf(page);
    await page.context().close();
});

test("says in the host's words why no device can be paired", async () => {
    const { page, house } = await openHouse();
    await page.goto(`${product.url}#page:devices`);
    await card(page, "Kitchen tablet").waitFor();
    house.refusal = { code: -32000, message: "This host listens on its own machine only." };
    await page.getByRole("button", { name: "Show a code" }).click();
    await page.getByRole("alert").filter({ hasText: "This host listens on its own machine only." }).waitFor();
    house.refusal = null;
    await page.getByRole("button", { name: "Show a code" }).click();
    await page.getByText("012345").waitFor();
    // The live region for an alarm that rings stands there empty.
    assert.equal(await page.locator('[role="alert"]:not(:empty)').count(), 0);
    await page.context().close();
});

test("renames a device, changes its role, and removes it after asking", async () => {
    const { page, house } = await openHouse();
    await page.goto(`${product.url}#page:devices`);
    await page.getByRole("button", { name: "Change Kitchen tablet" }).click();
    const tablet = card(page, "Kitchen tablet");
    await tablet.getByRole("textbox", { name: "Name" }).fill("Wall");
    await tablet.getByRole("combobox").selectOption("owner");
    house.refusal = { code: -32000, message: "Nothing was saved: the disk is full." };
    await tablet.getByRole("button", { name: "Save" }).click();
    await tablet.getByRole("alert").filter({ hasText: "the disk is full" }).waitFor();
    house.refusal = null;
    await tablet.getByRole("button", { name: "Save" }).click();
    await card(page, "Wall").getByText(/^Owner · connected/).waitFor();
    assert.deepEqual(house.calls.filter(([method]) => /rename|setRole/.test(method)).slice(-2), [
        ["devices.rename", { id: "a", name: "Wall" }], ["devices.setRole", { id: "a", role: "owner" }]]);
    await page.getByRole("button", { name: "Change Wall" }).click();
    await card(page, "Wall").getByRole("button", { name: "Remove …" }).click();
    await page.getByText("Remove Wall? It is out at once").waitFor();
    assert.ok(house.calls.every(([method]) => method !== "devices.revoke"));
    await page.getByRole("button", { name: "Remove", exact: true }).click();
    await card(page, "Wall").waitFor({ state: "detached" });
    // The focus went to something that can be operated.
    await expectEventually(() => page.evaluate(() => document.activeElement !== document.body), "a focus");
    onlyProblemsOf(page);
    await page.context().close();
});

test("a listener has no settings of the host's, no accounts and no devices", async () => {
    const { page, house } = await openHouse({ role: "listener" });
    await page.goto(`${product.url}#host:settings`);
    await page.getByRole("heading", { level: 1, name: "Settings" }).waitFor();
    await page.getByRole("combobox", { name: "Appearance" }).waitFor();
    await expectEventually(async () => (await page.getByRole("combobox").count()) === 1, "the page's own settings alone");
    assert.equal(await page.getByText("account").count(), 0);
    assert.equal(await page.getByRole("link", { name: "Show the devices" }).count(), 0);
    await page.goto(`${product.url}#page:devices`);
    await page.getByText("Only an owner of this host may do that.").waitFor();
    assert.ok(house.calls.every(([method]) => method === "access.info"));
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=local`);
    await page.locator("button.audio").first().waitFor();
    onlyProblemsOf(page);
    await page.context().close();
});

test("what only an owner may do is refused in words", async () => {
    const page = await newPage(browser, product);
    await between(page, {
        call: ({ method }, answer) => {
            if (method === "player.play")
                answer({ error: { code: -32007, message: "Only an owner of this host may do that.", data: { name: "notAllowed" } } });
            return method === "player.play";
        },
    });
    await page.goto(`${product.url}#TuneIn:browse/uri/Browse.ashx?c=local`);
    await page.locator("button.audio").first().click();
    await page.getByText("Only an owner of this host may do that.").waitFor();
    await page.context().close();
});

test("a device that was removed leaves for the pairing page, and says why", async () => {
    const page = await newPage(browser, { url: proxy.url });
    await page.goto(`${proxy.url}#TuneIn:browse/uri/Browse.ashx?c=local`);
    await page.locator("button.audio").first().waitFor();
    // A connection that breaks off comes back, and the page stays.
    proxy.isUp = false;
    proxy.breakOff();
    await expectEventually(() => page.evaluate(() => document.documentElement.classList.contains("is-lost")), "the loss");
    proxy.isUp = true;
    await expectEventually(() => page.evaluate(() => !document.documentElement.classList.contains("is-lost")), "the host again");
    isForgotten = true;
    proxy.isRefusing = true;
    proxy.breakOff();
    await page.getByText("The host does not know this device any more.").waitFor();
    assert.equal(page.url(), `${proxy.url}pair`);
    proxy.asked = [];
    isForgotten = false;
    proxy.isRefusing = false;
    onlyProblemsOf(page);
    await page.context().close();
});

const phone = { viewport: { width: 375, height: 667 }, isMobile: true, hasTouch: true };
for (const [name, options] of Object.entries({ "wide and light": {}, "narrow and dark": { ...phone, colorScheme: "dark" } })) {
    test(`the devices are usable by everybody, ${name}`, async () => {
        const { page } = await openHouse({ options });
        await page.goto(`${product.url}#page:devices`);
        await page.getByRole("button", { name: "Show a code" }).click();
        await page.getByRole("img", { name: /^QR code/ }).waitFor();
        await page.getByRole("button", { name: "Change Kitchen tablet" }).click();
        await page.evaluate(axe.source);
        const { violations } = await page.evaluate((values) => axe.run(document, { runOnly: { type: "tag", values } }),
            ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"]);
        assert.deepEqual(violations.map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.html).join(" | ")}`), []);
        if (options.hasTouch)
            await checkTargets(page, "the devices");
        assert.ok(await page.evaluate(() => document.scrollingElement.scrollWidth <= innerWidth));
        await page.context().close();
    });
}
