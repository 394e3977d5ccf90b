// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// Devices in a house's network: they are paired with a host that listens beyond its own machine, listen, and are removed.
// The network is one of the test's own, which reaches nothing else.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { after, before, test } from "node:test";
import { connect } from "node:tls";
import { fileURLToPath } from "node:url";

import { expectEventually, launch, newPage, onlyProblemsOf, Product } from "./support.mjs";
import { Firefox } from "./firefox.mjs";

const address = "192.168.77.1";
const local = "TuneIn:browse/uri/Browse.ashx?c=local";

if (process.env.VESK_TEST_NETWORK !== address) {
    const network = `ip link set lo up && ip address add ${address}/24 dev lo && exec "$@"`;
    if (spawnSync("unshare", ["-rn", "true"]).status !== 0) {
        console.log("skipped: no network of the test's own can be made here");
        process.exit(0);
    }
    const again = [process.execPath, ...process.execArgv, fileURLToPath(import.meta.url)];
    const { status } = spawnSync("unshare", ["-rn", "sh", "-c", network, "sh", ...again],
        { stdio: "inherit", env: { ...process.env, VESK_TEST_NETWORK: address } });
    process.exit(status ?? 1);
}

let product;
let browser;
let owner;
/** Where devices find the host. */
let url;

before(async () => {
    product = await Product.start({ hostArgs: ["--listen", `${address}:0`] });
    url = `https://${address}:${product.port}/`;
    browser = await launch();
    owner = await newPage(browser, product);
    await owner.goto(`${product.url}#page:devices`);
    await owner.getByRole("button", { name: "Show a code" }).waitFor();
});
after(async () => {
    await browser?.close();
    await product?.end();
});

/** Lets the machine's own page show a code for a role, and returns it. */
async function showCode(role) {
    await owner.getByRole("region", { name: "Pair a device" }).getByRole("combobox").selectOption(role);
    await owner.getByRole("button", { name: "Show a code" }).click();
    return owner.locator(".pairing .code [aria-hidden]").textContent();
}

const newDevice = () => newPage(browser, { url }, { ignoreHTTPSErrors: true });
const code = (page) => page.getByRole("textbox", { name: "Code" });
const card = (name) => owner.getByRole("listitem").filter({ hasText: name });

function certificateFingerprint() {
    return new Promise((done, failed) => {
        const socket = connect({ host: address, port: product.port, rejectUnauthorized: false }, () => {
            done(socket.getPeerX509Certificate().fingerprint256);
            socket.destroy();
        });
        socket.on("error", failed);
    });
}

let tablet;

test("a device is asked for a code, whatever it wants to see", async () => {
    tablet = await newDevice();
    await tablet.goto(`${url}#${local}`);
    await tablet.getByRole("heading", { level: 1, name: "Pair this device" }).waitFor();
    assert.equal(tablet.url().replace(/#.*/, ""), `${url}pair`);
    await tablet.getByRole("heading", { name: "Did your browser warn you?" }).waitFor();
    for (const path of ["jsonrpc", "vesk.webmanifest", "worker.js", "artwork/0"]) {
        const { status } = await tablet.evaluate(async (each) => ({ status: (await fetch(each)).status }), path);
        assert.equal(status, 401, path);
    }
});

test("an owner is shown all that a device needs, and the certificate's fingerprint", async () => {
    await showCode("listener");
    await owner.getByText(url, { exact: true }).waitFor();
    const shown = await owner.locator(".fingerprint").textContent();
    assert.equal(shown, await certificateFingerprint());
    await owner.getByRole("button", { name: "Cancel" }).click();
});

test("a listener pairs by code, listens, and has no settings of the host's", async () => {
    const right = await showCode("listener");
    const wrong = right === "000000" ? "000001" : "000000";
    await tablet.getByRole("textbox", { name: "Name of this device" }).fill("Kitchen tablet");
    await code(tablet).fill(wrong);
    await tablet.getByRole("button", { name: "Pair" }).click();
    await tablet.getByText("This is not the code. 4 attempts are left.").waitFor();
    await code(tablet).fill(right);
    await tablet.getByRole("button", { name: "Pair" }).click();
    await tablet.getByRole("heading", { level: 1, name: "TuneIn" }).waitFor();
    await owner.getByText("Kitchen tablet is paired.").waitFor();
    await card("Kitchen tablet").getByText(`Listener · connected · ${address}`).waitFor();

    await tablet.goto(`${url}#${local}`);
    await tablet.locator("button.audio").first().click();
    const player = tablet.getByRole("region", { name: "Player" });
    await player.getByText("Playing").waitFor();
    await expectEventually(() => player.locator("img").evaluate((img) => img.complete && img.naturalWidth > 0), "a picture");
    await tablet.getByRole("link", { name: "Settings" }).click();
    await tablet.getByRole("combobox", { name: "Appearance" }).waitFor();
    assert.equal(await tablet.getByRole("combobox").count(), 1);
    await product.call("player.stop");
});

test("a listener becomes an owner, and has the settings at once", async () => {
    await owner.getByRole("button", { name: "Change Kitchen tablet" }).click();
    await card("Kitchen tablet").getByRole("combobox").selectOption("owner");
    await card("Kitchen tablet").getByRole("button", { name: "Save" }).click();
    await card("Kitchen tablet").getByText("Owner · connected").waitFor();
    await tablet.getByRole("combobox", { name: "Language" }).waitFor();
    await tablet.getByRole("link", { name: "Show the devices" }).click();
    await tablet.getByRole("listitem").filter({ hasText: "Kitchen tablet" }).getByText("This device").waitFor();
});

test("a device that is removed is out at once, and told so", async () => {
    await owner.getByRole("button", { name: "Change Kitchen tablet" }).click();
    await card("Kitchen tablet").getByRole("button", { name: "Remove …" }).click();
    await card("Kitchen tablet").getByRole("button", { name: "Remove", exact: true }).click();
    await tablet.getByText("The host does not know this device any more.").waitFor();
    await card("Kitchen tablet").waitFor({ state: "detached" });
    // A certificate that the browser does not trust by itself is no hindrance, but for the service worker.
    onlyProblemsOf(tablet, /occurred when fetching the script/);
    onlyProblemsOf(owner);
    await tablet.context().close();
});

test("five wrong codes end a pairing, and both sides are told", async () => {
    const right = await showCode("listener");
    const device = await newDevice();
    await device.goto(`${url}pair`);
    for (const left of ["4 attempts are", "3 attempts are", "2 attempts are", "1 attempt is"]) {
        await code(device).fill(right === "000000" ? "000001" : "000000");
        await device.getByRole("button", { name: "Pair" }).click();
        await device.getByText(`${left} left.`).waitFor();
    }
    await code(device).fill(right === "000000" ? "000001" : "000000");
    await device.getByRole("button", { name: "Pair" }).click();
    await device.getByText("The code was wrong too often").waitFor();
    await owner.getByText("The code was entered wrongly too often").waitFor();
    await code(device).fill(right);
    await device.getByRole("button", { name: "Pair" }).click();
    await device.getByText("No device can be paired right now").waitFor();
    await device.context().close();
});

test("Firefox pairs and listens, too", async () => {
    const firefox = await Firefox.start({ direct: [address] });
    try {
        const right = await showCode("listener");
        await firefox.goto(`${url}pair#${right}`);
        await firefox.find("h1", "Pair this device");
        await firefox.click("button", "Pair");
        await firefox.find("h1", "TuneIn");
        await card("Firefox, Linux").getByText("Listener · connected").waitFor();
        await firefox.goto("about:blank");
        await firefox.goto(`${url}#${local}`);
        await firefox.click("button.audio");
        await firefox.find(".player .state", "Playing");
        await owner.getByRole("button", { name: "Change Firefox, Linux" }).click();
        await card("Firefox, Linux").getByRole("button", { name: "Remove …" }).click();
        await card("Firefox, Linux").getByRole("button", { name: "Remove", exact: true }).click();
        await firefox.find(".forgotten", "The host does not know this device any more.");
    } finally {
        await firefox.end();
    }
});

test("without TLS the page says so, and does what browsers let it do then", async () => {
    const plain = await Product.start({ hostArgs: ["--listen", `${address}:0`, "--plain-http"] });
    try {
        const at = `http://${address}:${plain.port}/`;
        const page = await newPage(browser, { url: at });
        const { code: right } = await plain.call("pairing.start", {});
        await page.goto(`${at}pair#${right}`);
        await page.getByRole("heading", { name: "This connection is not encrypted" }).waitFor();
        await page.getByRole("button", { name: "Pair" }).click();
        await page.getByRole("heading", { level: 1, name: "TuneIn" }).waitFor();
        await page.goto(`${at}#${local}`);
        await page.locator("button.audio").first().click();
        const player = page.getByRole("region", { name: "Player" });
        await player.getByText("Playing").waitFor();
        assert.equal(await page.evaluate(() => isSecureContext), false);
        await expectEventually(() => player.locator("img").evaluate((img) => img.complete && img.naturalWidth > 0), "a picture");
        await page.getByRole("button", { name: "Share" }).click();
        await page.getByText(`${at}#${local}`).waitFor();
        await page.getByRole("button", { name: "Quiet view" }).click();
        await page.getByText("This browser lets the screen go off here.").waitFor();
        // Browsers tell each time that a header is of no use without TLS.
        onlyProblemsOf(page, /Cross-Origin-Opener-Policy header has been ignored/);
        await page.context().close();
    } finally {
        await plain.end();
    }
});
